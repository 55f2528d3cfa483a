#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QLabel>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

// The operator's first minute: the dialog opens by itself with the port chosen, Connect is pressed,
// readings stand on the screen and move.
TEST(FirstUse, ShowsLiveReadingsThatMove) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    ASSERT_EQ(Robot::Text(u"frmConnect"_s, u"cmbPort1"_s), u"COM9 - Simulated logger"_s);
    desk.Connect();
    EXPECT_EQ(MainText(u"lblCommStatus"_s), u"Connected"_s);
    EXPECT_FALSE(MainText(u"lblLoggerName"_s).isEmpty());
    EXPECT_FALSE(MainText(u"lblRecordings"_s).isEmpty());

    Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
    const QString first = MainText(u"lblDateTime"_s);
    Robot::WaitFor(u"the clock of the samples to move"_s, [&] {
      const auto* label = qobject_cast<QLabel*>(Robot::Control(u"frmMain"_s, u"lblDateTime"_s));
      return !label->text().isEmpty() && label->text() != first;
    });
    Robot::WaitFor(u"older values"_s, [] {
      const auto* label = qobject_cast<QLabel*>(Robot::Control(u"frmMain"_s, u"lblHistory(0)"_s));
      return label->text().count(u'.') >= 2;
    });
    Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
    Robot::WaitFor(u"the buttons to come back"_s, [] {
      return qobject_cast<QWidget*>(Robot::Control(u"frmMain"_s, u"cmdSetup"_s))->isEnabled();
    });
  });
  EXPECT_EQ(trouble, QString());
}

TEST(FirstUse, TheLiveTrendIsThereBeforeTheLogger) {
  Desk desk;
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdCancel"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
    Robot::Trigger(u"frmMain"_s, u"mnuTrend"_s);
    Robot::WaitForForm(u"frmPlot"_s);
    Robot::Click(u"frmMain"_s, u"cmdConnect"_s);
    Robot::WaitForForm(u"frmConnect"_s);
    desk.Connect();
    Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
    Robot::WaitForText(u"frmPlot"_s, u"lblLink"_s, u"Following the readings"_s);
    Robot::WaitFor(u"channels in the trend"_s, [] {
      const auto* list =
          qobject_cast<QAbstractItemView*>(Robot::Control(u"frmPlot"_s, u"lstChannels"_s));
      return list->model()->rowCount() > 0;
    });
    Robot::Click(u"frmMain"_s, u"chkSampleContinuously"_s);
    Robot::WaitFor(u"the buttons to come back"_s, [] {
      return qobject_cast<QWidget*>(Robot::Control(u"frmMain"_s, u"cmdSetup"_s))->isEnabled();
    });
    Robot::Click(u"frmPlot"_s, u"cmdOK"_s);
    Robot::WaitForNoForm(u"frmPlot"_s);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(FirstUse, GermanThroughout) {
  Desk desk({}, {u"-l7"_s}, SystemLocale(QLocale(u"de_DE"_s)));
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::WaitForText(u"frmMain"_s, u"cmdConnect"_s, u"Trennen"_s);
    EXPECT_EQ(MainText(u"lblCommStatus"_s), u"Verbunden"_s);
    EXPECT_EQ(MainText(u"fraDateTime"_s), u"Loggerzeit"_s);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(BlankLogger, IsInitializedAfterTheQuestion) {
  Desk desk({u"--blank"_s});
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::WaitForForm(u"FMessage"_s);
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForText(u"frmMain"_s, u"lblLoggerName"_s, u"Tessmar Logger"_s, 60000);
    EXPECT_EQ(MainText(u"lblSampleInterval"_s), u"1 day"_s);
  });
  EXPECT_EQ(trouble, QString());
}

TEST(ASilentLogger, CancelEndsTheHandshakeAfterThePass) {
  Desk desk({u"--fault"_s, u"silent"_s});
  const QString trouble = desk.Work([&] {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    Robot::Pause(300);
    Robot::Click(u"frmConnect"_s, u"cmdCancel"_s);
    Robot::WaitForForm(u"FMessage"_s, 3000);
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForNoForm(u"frmConnect"_s);
    Robot::WaitForText(u"frmMain"_s, u"cmdConnect"_s, u"Connect"_s);
  });
  EXPECT_EQ(trouble, QString());
}

}  // namespace
}  // namespace tessmar::test
