#include "base/FileNames.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/SmallDisk.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

TEST(StartOfFileDialog, TakesAPatternForItsFolderOnly) {
  EXPECT_EQ(StartOfFileDialog(u"*.set"_s), (FileDialogStart{u""_s, u""_s}));
  EXPECT_EQ(StartOfFileDialog(u"/home/x/*.csv"_s), (FileDialogStart{u"/home/x"_s, u""_s}));
  EXPECT_EQ(StartOfFileDialog(u"/home/x/well?.csv"_s), (FileDialogStart{u"/home/x"_s, u""_s}));
}

TEST(StartOfFileDialog, SplitsAFullName) {
  EXPECT_EQ(StartOfFileDialog(u"/home/x/pond 1.set"_s),
            (FileDialogStart{u"/home/x"_s, u"pond 1.set"_s}));
  EXPECT_EQ(StartOfFileDialog(u"/pond.set"_s), (FileDialogStart{u"/"_s, u"pond.set"_s}));
  EXPECT_EQ(StartOfFileDialog(u"pond.set"_s), (FileDialogStart{u""_s, u"pond.set"_s}));
}

TEST(StartOfFileDialog, TakesAFolderAlone) {
  EXPECT_EQ(StartOfFileDialog(u"/home/x/"_s), (FileDialogStart{u"/home/x"_s, u""_s}));
  EXPECT_EQ(StartOfFileDialog(QString()), FileDialogStart());
}

TEST(FileFilters, AreMadeOfPairs) {
  EXPECT_EQ(FileFilters(u"Setup Files (*.set)|*.set"_s), QStringList{u"Setup Files (*.set)"_s});
  EXPECT_EQ(FileFilters(u"Modem-Befehlsdatei (*.txt)|*.txt"_s),
            QStringList{u"Modem-Befehlsdatei (*.txt)"_s});
  EXPECT_EQ(FileFilters(u"Pictures|*.png;*.jpg|All Files|*"_s),
            (QStringList{u"Pictures (*.png *.jpg)"_s, u"All Files (*)"_s}));
}

TEST(FileFilters, LeaveOutAPairWithoutItsPattern) {
  EXPECT_TRUE(FileFilters(QString()).isEmpty());
  EXPECT_TRUE(FileFilters(u"Setup Files"_s).isEmpty());
}

TEST(ExtensionOfFilter, IsThatOfOnePlainPattern) {
  const QString filter = u"Table (*.csv)|*.csv|NetCDF (*.nc)|*.nc|Pictures|*.png;*.svg|All|*.*"_s;
  EXPECT_EQ(ExtensionOfFilter(filter, 0), u".csv"_s);
  EXPECT_EQ(ExtensionOfFilter(filter, 1), u".nc"_s);
  EXPECT_EQ(ExtensionOfFilter(filter, 2), QString());
  EXPECT_EQ(ExtensionOfFilter(filter, 3), QString());
  EXPECT_EQ(ExtensionOfFilter(filter, 4), QString());
}

TEST(WithDefaultExtension, AddsItToANameWithoutOne) {
  EXPECT_EQ(WithDefaultExtension(u"/home/x.y/pond"_s, u".csv"_s), u"/home/x.y/pond.csv"_s);
  EXPECT_EQ(WithDefaultExtension(u"pond"_s, u".dat"_s), u"pond.dat"_s);
  EXPECT_EQ(WithDefaultExtension(u".pond"_s, u".dat"_s), u".pond.dat"_s);
}

TEST(WithDefaultExtension, KeepsAnyOther) {
  EXPECT_EQ(WithDefaultExtension(u"/home/x/pond.set"_s, u".dat"_s), u"/home/x/pond.set"_s);
  EXPECT_EQ(WithDefaultExtension(u"pond.CSV"_s, u".csv"_s), u"pond.CSV"_s);
  EXPECT_EQ(WithDefaultExtension(u"/home/x/"_s, u".csv"_s), u"/home/x/"_s);
  EXPECT_EQ(WithDefaultExtension(u"pond"_s, QString()), u"pond"_s);
}

TEST(FirstFolderOfDialogs, IsTheProgramsOrElseTheDocumentsOrElseHome) {
  const test::OrdinaryUser user;
  const QTemporaryDir folder;
  const QByteArray config = folder.filePath(u"config"_s).toLocal8Bit();
  const QByteArray before = qgetenv("XDG_CONFIG_HOME");
  qputenv("XDG_CONFIG_HOME", config);
  QDir(folder.path()).mkpath(u"config"_s);
  QDir(folder.path()).mkpath(u"papers"_s);
  EXPECT_EQ(FirstFolderOfDialogs(folder.path()), folder.path());
  QFile places(folder.filePath(u"config/user-dirs.dirs"_s));
  ASSERT_TRUE(places.open(QIODevice::WriteOnly));
  places.write("XDG_DOCUMENTS_DIR=\"" + folder.filePath(u"papers"_s).toLocal8Bit() + "\"\n");
  places.close();
  EXPECT_EQ(FirstFolderOfDialogs(u"/usr"_s), folder.filePath(u"papers"_s));
  ASSERT_TRUE(QDir(folder.path()).rmdir(u"papers"_s));
  EXPECT_EQ(FirstFolderOfDialogs(u"/usr"_s), QDir::homePath());
  if (before.isEmpty()) {
    qunsetenv("XDG_CONFIG_HOME");
  } else {
    qputenv("XDG_CONFIG_HOME", before);
  }
}

}  // namespace
}  // namespace tessmar
