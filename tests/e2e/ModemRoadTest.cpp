#include <gtest/gtest.h>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

TEST(ModemRoad, DialsUploadsAndLeaves) {
  Desk desk({u"--modem"_s, u"--modem-dial-time"_s, u"300"_s, u"--records"_s, u"50"_s}, {u"-w8"_s});
  const QString trouble = desk.Work([&] {
    desk.Dial();
    desk.WaitForReading();
    EXPECT_EQ(desk.TheProgram().Link().LinkTimeoutTicks, 8);
    desk.OpenViewer();
    EXPECT_EQ(Robot::Text(u"frmHistory"_s, u"lblNumRecords"_s), u"50"_s);
    Robot::Click(u"frmHistory"_s, u"cmdOK"_s);
    Robot::WaitForNoForm(u"frmHistory"_s);
    desk.Disconnect();
    EXPECT_EQ(MainText(u"cmdConnect"_s), u"Connect"_s);
    desk.CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_EQ(desk.StoredValue(u"ModemNumber0"_s), u"5551234"_s);
  EXPECT_EQ(desk.StoredValue(u"ModemPort"_s), u"COM9"_s);
}

TEST(ModemRoad, CancelLeavesADeadModemAtOnce) {
  Desk desk({u"--modem"_s, u"--modem-answer"_s, u"silent"_s});
  const QString trouble = desk.Work([&] {
    desk.Dial();
    Robot::WaitForForm(u"frmModem"_s);
    Robot::Click(u"frmModem"_s, u"cmdCancel"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
    EXPECT_EQ(MainText(u"lblCommStatus"_s), u"Disconnected"_s);
  });
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
