#include <gtest/gtest.h>

#include <QLabel>
#include <QPointer>

#include "base/TextTable.h"
#include "setup/SetupScreenRig.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using test::FakeMessages;
using test::SetupScreenRig;

/// Presses cmdCalibrate of a channel and lets a script run in the wizard that opens.
class CalibrateScreenTest : public testing::Test {
 protected:
  CalibrateScreenTest() {
    rig_.Open();
    rig_.ShowPage(0);
  }
  ~CalibrateScreenTest() override { SetTextLanguage(kLanguageEnglish); }

  /// @return true when a wizard opened. It is closed when the script leaves it open.
  bool Calibrate(int channel, const std::function<void()>& script) {
    bool opened = false;
    QTimer::singleShot(0, rig_.Form.get(), [&] {
      wizard_ = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (wizard_ == nullptr) return;
      opened = true;
      QApplication::setActiveWindow(wizard_);
      script();
      if (wizard_ != nullptr && wizard_->isVisible()) wizard_->reject();
    });
    rig_.Click(rig_.Button(ElementName("cmdCalibrate", channel).toLatin1().constData()));
    QCoreApplication::processEvents();
    return opened;
  }

  QLineEdit& Text() const { return *wizard_->findChild<QLineEdit*>(u"txtCalibrate"_s); }
  QPushButton& Button(const QString& name) const { return *wizard_->findChild<QPushButton*>(name); }
  void Press(const QString& name) const { SetupScreenRig::Click(Button(name)); }
  void Type(const QString& text) const { rig_.Type(Text(), text); }
  void Beat() const { SetupScreenRig::Beat(*wizard_); }
  bool TimerRuns() const { return wizard_->findChild<QTimer*>(u"Timer1"_s)->isActive(); }
  QString Label() const { return wizard_->findChild<QLabel*>(u"lblCalibrate"_s)->text(); }

  QStringList Boxes(int channel) const {
    QStringList texts;
    for (const char* array : {"txtHighEU", "txtLowEU", "txtHighRaw", "txtLowRaw"})
      texts.append(rig_.Field(ElementName(array, channel).toLatin1().constData()).text());
    return texts;
  }

  SetupScreenRig rig_;
  QPointer<QDialog> wizard_;
};

TEST_F(CalibrateScreenTest, FinishingUntouchedWritesTheEndsOfTheRawRange) {
  rig_.Field("txtHighRaw(1)").setText(u"111"_s);
  EXPECT_TRUE(Calibrate(1, [this] {
    EXPECT_EQ(wizard_->objectName(), u"frmCalibrate"_s);
    EXPECT_EQ(wizard_->windowTitle(), u"Calibrate Channel 2 (Temp C)"_s);
    EXPECT_TRUE(rig_.Link.Busy);
    for (int page = 0; page < 4; ++page) Press(u"cmdNext"_s);
    EXPECT_FALSE(wizard_->isVisible());
  }));
  EXPECT_EQ(Boxes(1), (QStringList{u"50"_s, u"-10"_s, u"65535"_s, u"0"_s}));
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(CalibrateScreenTest, PagesShowTheirSentencesButtonsAndReading) {
  Calibrate(0, [this] {
    EXPECT_EQ(Label(), u"Enter the highest value in engineering units:"_s);
    EXPECT_FALSE(Button(u"cmdBack"_s).isEnabled());
    EXPECT_FALSE(TimerRuns());
    EXPECT_TRUE(Button(u"cmdNext"_s).isDefault());
    Press(u"cmdNext"_s);
    EXPECT_EQ(Label(), u"Press Next when the value is settled:"_s);
    EXPECT_TRUE(Button(u"cmdBack"_s).isEnabled());
    EXPECT_TRUE(TimerRuns());
    Press(u"cmdNext"_s);
    EXPECT_EQ(Label(), u"Enter the lowest value in engineering units:"_s);
    EXPECT_FALSE(TimerRuns());
    Press(u"cmdNext"_s);
    EXPECT_EQ(Button(u"cmdNext"_s).text(), u"Finish"_s);
    EXPECT_TRUE(TimerRuns());
    Press(u"cmdBack"_s);
    EXPECT_EQ(Button(u"cmdNext"_s).text(), u"Next >"_s);
    EXPECT_FALSE(TimerRuns());
  });
}

TEST_F(CalibrateScreenTest, CancelOnAnyPageLeavesTheFourBoxes) {
  const QStringList before = Boxes(2);
  for (int pages = 0; pages < 4; ++pages) {
    EXPECT_TRUE(Calibrate(2, [&] {
      for (int page = 0; page < pages; ++page) {
        Type(u"7"_s);
        Press(u"cmdNext"_s);
      }
      Press(u"cmdCancel"_s);
      EXPECT_FALSE(wizard_->isVisible());
    }));
    EXPECT_EQ(Boxes(2), before);
    EXPECT_FALSE(rig_.Link.Busy);
  }
}

TEST_F(CalibrateScreenTest, BackAndNextAgainShowsTheKeptReadingAndNotTheOneReadBefore) {
  Calibrate(0, [this] {
    Press(u"cmdNext"_s);
    Type(u"41000"_s);
    Press(u"cmdNext"_s);
    Press(u"cmdBack"_s);
    Type(u"222"_s);
    Press(u"cmdBack"_s);
    Press(u"cmdNext"_s);
    EXPECT_EQ(Text().text(), u"41000"_s);
  });
}

TEST_F(CalibrateScreenTest, AValueTooLargeIsRefusedWithItsMessage) {
  Calibrate(0, [this] {
    Type(u"1234567"_s);
    Press(u"cmdNext"_s);
    EXPECT_EQ(rig_.Messages.All,
              (std::vector<FakeMessages::Asked>{
                  {u"Value must be a floating point number in the range -999999 to 999999!"_s, 48,
                   u"Bad Number"_s}}));
    EXPECT_EQ(Text().text(), u"1234567"_s);
    EXPECT_TRUE(Text().hasFocus());
    EXPECT_EQ(Label(), u"Enter the highest value in engineering units:"_s);
  });
}

TEST_F(CalibrateScreenTest, AValueIsShownAsTheLoggerWillHoldIt) {
  Calibrate(0, [this] {
    Type(u"12.34567"_s);
    Press(u"cmdNext"_s);
    Press(u"cmdBack"_s);
    EXPECT_EQ(Text().text(), u"12.3457"_s);
  });
}

TEST_F(CalibrateScreenTest, ARawCountTooLargeIsRefusedWithItsMessage) {
  Calibrate(0, [this] {
    Press(u"cmdNext"_s);
    Type(u"70000"_s);
    Press(u"cmdNext"_s);
    EXPECT_EQ(rig_.Messages.All,
              (std::vector<FakeMessages::Asked>{
                  {u"Value must be an integer between 0 and 65535!"_s, 48, u"Bad Number"_s}}));
    EXPECT_TRUE(Text().hasFocus());
    Press(u"cmdBack"_s);
    EXPECT_EQ(rig_.Messages.All.size(), 2U);
    EXPECT_EQ(Label(), u"Press Next when the value is settled:"_s);
  });
}

TEST_F(CalibrateScreenTest, AReadingOverwritesWhatWasTyped) {
  Calibrate(0, [this] {
    Press(u"cmdNext"_s);
    Type(u"70000"_s);
    for (int tick = 0; tick < 8; ++tick) {
      Beat();
      rig_.Loop.RunFor(250);
    }
    EXPECT_NE(Text().text(), u"70000"_s);
    EXPECT_NE(Text().text(), u"65535"_s);
    Press(u"cmdNext"_s);
    EXPECT_TRUE(rig_.Messages.All.empty());
    EXPECT_EQ(Label(), u"Enter the lowest value in engineering units:"_s);
  });
}

TEST_F(CalibrateScreenTest, CancelDoesNotCheck) {
  EXPECT_TRUE(Calibrate(0, [this] {
    Type(u"nonsense"_s);
    Press(u"cmdCancel"_s);
    EXPECT_FALSE(wizard_->isVisible());
  }));
  EXPECT_TRUE(rig_.Messages.All.empty());
}

TEST_F(CalibrateScreenTest, TabToCancelDoesNotCheckAndTabToAnotherButtonDoes) {
  Calibrate(0, [this] {
    Type(u"nonsense"_s);
    QTest::keyClick(&Text(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Button(u"cmdCancel"_s).hasFocus());
    EXPECT_TRUE(rig_.Messages.All.empty());
    Text().setFocus();
    QTest::keyClick(&Text(), Qt::Key_Tab);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Text().hasFocus());
    EXPECT_EQ(rig_.Messages.All.size(), 1U);
  });
}

TEST_F(CalibrateScreenTest, EnterPressesNextAndChecksFirst) {
  Calibrate(0, [this] {
    Type(u"nonsense"_s);
    QTest::keyClick(&Text(), Qt::Key_Return);
    EXPECT_EQ(rig_.Messages.All.size(), 1U);
    EXPECT_EQ(Label(), u"Enter the highest value in engineering units:"_s);
    Type(u"30"_s);
    QTest::keyClick(&Text(), Qt::Key_Return);
    EXPECT_EQ(rig_.Messages.All.size(), 1U);
    EXPECT_EQ(Label(), u"Press Next when the value is settled:"_s);
  });
}

TEST_F(CalibrateScreenTest, ADisabledChannelCanBeCalibrated) {
  rig_.Check("chkEnable(4)").setChecked(false);
  EXPECT_TRUE(Calibrate(4, [this] {
    for (int page = 0; page < 4; ++page) Press(u"cmdNext"_s);
  }));
  EXPECT_EQ(Boxes(4)[2], u"65535"_s);
}

TEST_F(CalibrateScreenTest, DoesNotStartWhileBusySamplingOrDisconnected) {
  rig_.Link.Busy = true;
  EXPECT_FALSE(Calibrate(0, [] {}));
  EXPECT_TRUE(rig_.Link.Busy);
  rig_.Link.Busy = false;
  rig_.Link.SampleContinuously = true;
  EXPECT_FALSE(Calibrate(0, [] {}));
  rig_.Link.SampleContinuously = false;
  rig_.Link.Connected = false;
  EXPECT_FALSE(Calibrate(0, [] {}));
  EXPECT_TRUE(rig_.Messages.All.empty());
}

TEST_F(CalibrateScreenTest, AnAdapterLostInTheMiddleKeepsTheTextAndTheWizard) {
  EXPECT_TRUE(Calibrate(0, [this] {
    Press(u"cmdNext"_s);
    Beat();
    rig_.LoseAdapter();
    for (int tick = 0; tick < 4; ++tick) Beat();
    EXPECT_EQ(Text().text(), u"65535"_s);
    for (int page = 1; page < 4; ++page) Press(u"cmdNext"_s);
    EXPECT_FALSE(wizard_->isVisible());
  }));
  EXPECT_FALSE(rig_.Link.Busy);
}

TEST_F(CalibrateScreenTest, ACancelInTheMiddleOfAReadingIsSafe) {
  EXPECT_TRUE(Calibrate(0, [this] {
    Press(u"cmdNext"_s);
    Beat();
    rig_.Logger.AddFault(sim::FailureMode::Silent);
    rig_.Loop.After(50, [this] {
      EXPECT_TRUE(rig_.Link.Busy);
      wizard_->reject();
    });
    Beat();
  }));
  EXPECT_FALSE(rig_.Link.Busy);
  EXPECT_EQ(Boxes(0)[2], u"65535"_s);
}

TEST_F(CalibrateScreenTest, TheProgramEndingInTheMiddleOfAReadingTakesBothWindowsDown) {
  EXPECT_TRUE(Calibrate(0, [this] {
    Press(u"cmdNext"_s);
    rig_.Logger.AddFault(sim::FailureMode::Silent);
    rig_.Loop.After(50, [this] {
      rig_.Loop.End();
      rig_.Port.Close();
      wizard_->reject();
      rig_.Form->reject();
    });
    Beat();
  }));
  EXPECT_FALSE(rig_.Form->isVisible());
}

TEST_F(CalibrateScreenTest, SpeaksGerman) {
  rig_.Form.reset();
  SetTextLanguage(kLanguageGerman);
  rig_.Open();
  rig_.ShowPage(0);
  Calibrate(1, [this] {
    EXPECT_EQ(wizard_->windowTitle(), u"Kalibrieren Kanal 2 (Temp C)"_s);
    EXPECT_EQ(Label(), u"Höchsten ST-Wert eingeben:"_s);
    EXPECT_EQ(Button(u"cmdBack"_s).text(), u"< Zurück"_s);
    EXPECT_EQ(Button(u"cmdNext"_s).text(), u"Weiter >"_s);
    EXPECT_EQ(Button(u"cmdCancel"_s).text(), u"Abbrechen"_s);
  });
}

TEST_F(CalibrateScreenTest, EnterPressesTheButtonThatHasTheFocus) {
  const QStringList before = Boxes(0);
  const auto enterOn = [this](const QString& name) {
    Button(name).setFocus();
    QTest::keyClick(&Button(name), Qt::Key_Return);
  };
  Calibrate(0, [&] {
    for (int page = 0; page < 3; ++page) enterOn(u"cmdNext"_s);
    EXPECT_EQ(Button(u"cmdNext"_s).text(), u"Finish"_s);
    enterOn(u"cmdBack"_s);
    EXPECT_EQ(Label(), u"Enter the lowest value in engineering units:"_s);
    enterOn(u"cmdNext"_s);
    enterOn(u"cmdCancel"_s);
    EXPECT_FALSE(wizard_->isVisible());
  });
  EXPECT_EQ(Boxes(0), before);
}

}  // namespace
}  // namespace tessmar
