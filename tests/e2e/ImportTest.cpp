#include <gtest/gtest.h>

#include <QProcess>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const QString kChoice = u"frmImportSetup"_s;

TEST(ImageRoad, ShowsTheRecordsAndLetsTheScreenLiveOn) {
  Desk desk({}, {u"-i"_s});
  const QString image = desk.Path(u"flash.bin"_s);
  ASSERT_EQ(QProcess::execute(QStringLiteral(TESSMAR_SIM),
                              {u"--image"_s, image, u"--records"_s, u"77"_s}),
            0);
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdCancel"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
    Robot::Trigger(u"frmMain"_s, u"mnuLoadLoggerImageFile"_s);
    Robot::WaitForForm(kChoice);
    // Three analog channels and both digital ones take 14 bytes, which do not fill a page.
    Robot::Choose(kChoice, u"cmbNumDigitalChannels"_s, u"2"_s);
    Robot::Click(kChoice, u"cmdOK"_s);
    Robot::Answer(u"Error: the selected values for number of analog channels"_s);
    Robot::WaitForForm(kChoice);
    Robot::Choose(kChoice, u"cmbNumAnalogChannels"_s, u"8"_s);
    Robot::Tick(kChoice, u"chkLaunchSetup"_s);
    Robot::Click(kChoice, u"cmdOK"_s);
    Robot::TakeFile(image);

    Robot::WaitForForm(u"frmSetup"_s);
    EXPECT_EQ(Robot::Text(u"frmSetup"_s, u"txtName"_s), u"Mill Pond 3"_s);
    EXPECT_FALSE(Robot::IsEnabled(u"frmSetup"_s, u"cmdOK"_s));
    EXPECT_FALSE(Robot::IsEnabled(u"frmSetup"_s, u"mnuDownload"_s));
    Robot::Click(u"frmSetup"_s, u"cmdCancel"_s);

    Robot::Answer(u"77 records recovered"_s);
    Robot::WaitForForm(u"frmHistory"_s);
    EXPECT_EQ(Robot::Text(u"frmHistory"_s, u"lblNumRecords"_s), u"77"_s);
    EXPECT_EQ(Robot::Text(u"frmHistory"_s, u"lblLoggerName"_s), u"Mill Pond 3"_s);
    Robot::Click(u"frmHistory"_s, u"cmdOK"_s);
    Robot::WaitForNoForm(u"frmHistory"_s);
    // The timer that stood still during the import takes the name of no connected logger away.
    Robot::WaitForText(u"frmMain"_s, u"lblLoggerName"_s, QString());
    Robot::Click(u"frmMain"_s, u"cmdConnect"_s);
    desk.Connect();
  });
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
