#include "archive/ProcessOwner.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QSysInfo>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString Changed(const QString& field, const QString& value) {
  return OwnOwner().replace(QRegularExpression(field + u"=[^ ]*"_s), field + u'=' + value);
}

TEST(ProcessOwner, NamesProcessStartBootAndHost) {
  static const QRegularExpression kShape(u"^pid=%1 start=[0-9]+ boot=[0-9a-f]{8} host=[^ ]+$"_s.arg(
      QCoreApplication::applicationPid()));
  EXPECT_TRUE(kShape.match(OwnOwner()).hasMatch()) << OwnOwner().toStdString();
}

TEST(ProcessOwner, TheProcessItselfHasNotEnded) {
  EXPECT_FALSE(OwnerHasEnded(OwnOwner()));
}

TEST(ProcessOwner, ANumberThatIsFreeOrAnothersHasEnded) {
  EXPECT_TRUE(OwnerHasEnded(Changed(u"pid"_s, u"4194999"_s)));
  EXPECT_TRUE(OwnerHasEnded(Changed(u"start"_s, u"1"_s)));
}

TEST(ProcessOwner, AnotherBootOfThisComputerHasEndedAndAnotherComputerNobodyKnows) {
  EXPECT_TRUE(OwnerHasEnded(Changed(u"boot"_s, u"00000000"_s)));
  EXPECT_FALSE(OwnerHasEnded(
      Changed(u"boot"_s, u"00000000"_s).replace(QSysInfo::machineHostName(), u"elsewhere"_s)));
}

TEST(ProcessOwner, WhatNamesNoProcessHasEnded) {
  EXPECT_TRUE(OwnerHasEnded(QString()));
  EXPECT_TRUE(OwnerHasEnded(u"somebody"_s));
}

}  // namespace
}  // namespace tessmar
