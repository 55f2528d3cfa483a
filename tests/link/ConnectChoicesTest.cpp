#include "link/ConnectChoices.h"

#include <gtest/gtest.h>

#include "base/Fault.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

TEST(ExtractPort, GivesThePortNameInCapitals) {
  EXPECT_EQ(ExtractPort(u"com3 - USB Serial Port"_s), u"COM3"_s);
  EXPECT_EQ(ExtractPort(u"COM12"_s), u"COM12"_s);
  EXPECT_EQ(ExtractPort(u"  Com1  "_s), u"COM1"_s);
  EXPECT_EQ(ExtractPort(u"  com4 x"_s), u"COM4"_s);
}

TEST(ExtractPort, IsEmptyForBlanks) {
  EXPECT_EQ(ExtractPort(u"   "_s), QString());
  EXPECT_EQ(ExtractPort(QString()), QString());
}

TEST(PortNumber, IsWhatStandsBehindTheThirdCharacter) {
  EXPECT_EQ(PortNumber(u"COM3"_s), 3);
  EXPECT_EQ(PortNumber(u"COM16"_s), 16);
}

TEST(PortNumber, FaultsWithoutANumber) {
  for (const QString& name : {u"COM"_s, u"COMX"_s, u"COM3X"_s, QString(), u"3"_s, u"COM99999"_s}) {
    EXPECT_THROW(PortNumber(name), ConversionFault);
  }
}

TEST(PortItems, AlwaysOffersComOneToEight) {
  EXPECT_EQ(PortItems({}), (QStringList{u"COM1"_s, u"COM2"_s, u"COM3"_s, u"COM4"_s, u"COM5"_s,
                                        u"COM6"_s, u"COM7"_s, u"COM8"_s}));
}

TEST(PortItems, ListsAnEnumeratedCom12BehindCom8AndNoPortBetween) {
  EXPECT_EQ(PortItems({u"COM12 - X"_s}),
            (QStringList{u"COM1"_s, u"COM2"_s, u"COM3"_s, u"COM4"_s, u"COM5"_s, u"COM6"_s,
                         u"COM7"_s, u"COM8"_s, u"COM12 - X"_s}));
}

TEST(PortItems, ListsInNumericOrderWithTheFriendlyNames) {
  EXPECT_EQ(PortItems({u"COM16 - Last"_s, u"COM3 - USB Serial Port"_s, u"COM9 - Nine"_s}),
            (QStringList{u"COM1"_s, u"COM2"_s, u"COM3 - USB Serial Port"_s, u"COM4"_s, u"COM5"_s,
                         u"COM6"_s, u"COM7"_s, u"COM8"_s, u"COM9 - Nine"_s, u"COM16 - Last"_s}));
}

TEST(PortItems, TakesTheFirstOfTwoEntriesOfAPort) {
  EXPECT_EQ(PortItems({u"COM2 - First"_s, u"COM2 - Second"_s}).at(1), u"COM2 - First"_s);
}

TEST(PortItems, PassesOverEntriesOfAnotherForm) {
  EXPECT_EQ(PortItems({u"COM17 - Beyond"_s, u"com9 - Small"_s, u"COM10-X"_s, u" - "_s}).size(), 8);
}

TEST(BaudItems, AreThoseOfTheLine) {
  EXPECT_EQ(DirectBaudItems(),
            (QStringList{u"9600"_s, u"19200"_s, u"28800"_s, u"38400"_s, u"57600"_s, u"115200"_s}));
  EXPECT_EQ(ModemBaudItems(), (QStringList{u"9600"_s, u"19200"_s}));
}

TEST(InitialPortIndex, IsThatOfTheLastPort) {
  const QStringList items = PortItems({u"COM3 - USB Serial Port"_s, u"COM12 - X"_s});
  EXPECT_EQ(InitialPortIndex(items, u"COM3"_s), 2);
  EXPECT_EQ(InitialPortIndex(items, u"COM12"_s), 8);
}

TEST(InitialPortIndex, FallsToTheFirstItemForAnotherSpellingOrAPortThatIsNotThere) {
  const QStringList items = PortItems({});
  EXPECT_EQ(InitialPortIndex(items, u"Com1"_s), 0);
  EXPECT_EQ(InitialPortIndex(items, u"Com5"_s), 0);
  EXPECT_EQ(InitialPortIndex(items, u"COM9"_s), 0);
}

TEST(InitialBaudIndex, IsThatOfTheLastSpeedOrTheUsualOne) {
  EXPECT_EQ(InitialDirectBaudIndex(u"115200"_s), 5);
  EXPECT_EQ(InitialDirectBaudIndex(u"4800"_s), 3);
  EXPECT_EQ(InitialDirectBaudIndex(QString()), 3);
  EXPECT_EQ(InitialModemBaudIndex(u"19200"_s), 1);
  EXPECT_EQ(InitialModemBaudIndex(u"38400"_s), 0);
}

}  // namespace
}  // namespace tessmar::test
