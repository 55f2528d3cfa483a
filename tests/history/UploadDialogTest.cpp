#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>

#include "base/TextTable.h"
#include "history/UploadRig.h"
#include "history/frmGetHistoryData.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using sim::FailureMode;
using test::UploadRig;

class UploadDialog : public testing::Test {
 protected:
  void Make(const sim::LoggerOptions& options) {
    rig_.emplace(options, buffer_);
    dialog_.emplace(buffer_, rig_->Commands, rig_->Channel(), rig_->Link, messages_, rig_->Sink,
                    static_cast<std::int32_t>(options.Records));
  }
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }

  // Shows the dialog; the upload runs to its end in virtual time.
  void Run() {
    dialog_->show();
    QApplication::processEvents();
  }

  template <typename Control>
  Control* Find(const QString& name) const {
    Control* const control = dialog_->findChild<Control*>(name);
    EXPECT_NE(control, nullptr) << name.toStdString();
    return control;
  }
  QString Text(const QString& label) const { return Find<QLabel>(label)->text(); }
  QProgressBar* Bar() const { return Find<QProgressBar>(u"ProgressBar1"_s); }
  QPushButton* Okay() const { return Find<QPushButton>(u"cmdOkay"_s); }
  QPushButton* Stop() const { return Find<QPushButton>(u"cmdCancel"_s); }

  HistoryBuffer buffer_;
  std::optional<UploadRig> rig_;
  test::FakeMessages messages_;
  std::optional<frmGetHistoryData> dialog_;
};

TEST_F(UploadDialog, StartsWithItsTextsAndWithStopAlone) {
  Make({.Records = 25});
  EXPECT_EQ(dialog_->objectName(), u"frmGetHistoryData"_s);
  EXPECT_EQ(dialog_->windowTitle(), u"Get History Data"_s);
  EXPECT_EQ(dialog_->UploadState(), u"Starting"_s);
  EXPECT_EQ(Okay()->text(), u"Okay"_s);
  EXPECT_EQ(Stop()->text(), u"Stop"_s);
  EXPECT_FALSE(Okay()->isEnabled());
  EXPECT_TRUE(Stop()->isEnabled());
  EXPECT_EQ(Text(u"lblGetHistoryData"_s), u""_s);
}

TEST_F(UploadDialog, UploadsByItselfAndWaitsForOkay) {
  Make({.Records = 25});
  Run();
  EXPECT_EQ(dialog_->UploadState(), u"Running"_s);
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_EQ(Text(u"lblGetHistoryData"_s), u"Upload complete: 25 records uploaded."_s);
  EXPECT_EQ(Text(u"lblRetries"_s), u""_s);
  EXPECT_EQ(Bar()->maximum(), 25);
  EXPECT_EQ(Bar()->value(), 25);
  EXPECT_TRUE(Okay()->isEnabled());
  EXPECT_FALSE(Stop()->isEnabled());
  EXPECT_EQ(dialog_->focusWidget(), Okay());

  Okay()->click();
  EXPECT_EQ(dialog_->UploadState(), u"Okay"_s);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(UploadDialog, StopCannotBePressedAfterCompletion) {
  Make({.Records = 25});
  Run();
  Stop()->click();
  EXPECT_EQ(dialog_->UploadState(), u"Running"_s);
  EXPECT_TRUE(dialog_->isVisible());
}

TEST_F(UploadDialog, ASecondActivationDoesNotUploadAgain) {
  Make({.Records = 25});
  Run();
  const std::size_t asked = rig_->Asked().size();
  dialog_->hide();
  Run();
  EXPECT_EQ(rig_->Asked().size(), asked);
}

TEST_F(UploadDialog, CountsTheRetries) {
  Make({.Records = 25});
  rig_->Logger.AddFault({.Mode = FailureMode::CorruptCheck, .Count = 3});
  Run();
  EXPECT_EQ(Text(u"lblRetries"_s), u"retries 3"_s);
  EXPECT_EQ(Text(u"lblGetHistoryData"_s), u"Upload complete: 25 records uploaded."_s);
}

TEST_F(UploadDialog, TheBarGrowsBeyondThePromise) {
  Make({.Records = 25});
  rig_->Logger.AddFault({.Mode = FailureMode::MoreRecords, .Count = 14});
  Run();
  EXPECT_EQ(Bar()->maximum(), 39);
  EXPECT_EQ(Bar()->value(), 39);
}

TEST_F(UploadDialog, StopInARetryWaitSaysWhatArrivedAndHides) {
  Make({.Records = 2500});
  // Nothing but silence from the fourth block on.
  rig_->Loop.OnTick = [this] {
    if (rig_->Link.WaitTicks > 0) --rig_->Link.WaitTicks;
    if (rig_->Loop.Ticks() == 12) Stop()->click();
  };
  rig_->Port.OnWrite = [this, answer = rig_->Port.OnWrite](const test::Bytes& bytes) {
    if (rig_->Asked().size() <= 3) answer(bytes);
  };
  Run();
  EXPECT_EQ(dialog_->UploadState(), u"Cancel"_s);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(rig_->Asked(), (std::vector{0, 1, 1, 1}));
  const std::vector<test::FakeMessages::Asked> expected{
      {u"Retrieve Cancelled by User.  Received 30 records of 2500 records."_s, 16,
       u"Get History Data"_s}};
  EXPECT_EQ(messages_.All, expected);
}

// Enter presses the button that has the focus, and the key that began the upload, which comes while
// the focus is on the bar, does not end it.
TEST_F(UploadDialog, EnterPressesTheButtonThatHasTheFocusAndNoOther) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    const auto enterOn = [&](QWidget* target) {
      target->setFocus();
      QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
      QApplication::sendEvent(target, &press);
    };
    Make({.Records = 25});
    bool ranOn = false;
    rig_->Port.OnWrite = [&, answer = rig_->Port.OnWrite](const test::Bytes& bytes) {
      if (rig_->Asked().size() == 2) {
        enterOn(Bar());
        ranOn = dialog_->UploadState() == u"Running"_s;
      }
      answer(bytes);
    };
    Run();
    EXPECT_TRUE(ranOn);
    EXPECT_EQ(Text(u"lblGetHistoryData"_s), u"Upload complete: 25 records uploaded."_s);
    enterOn(Okay());
    EXPECT_EQ(dialog_->UploadState(), u"Okay"_s);
    EXPECT_FALSE(dialog_->isVisible());

    Make({.Records = 2500});
    rig_->Port.OnWrite = [&, answer = rig_->Port.OnWrite](const test::Bytes& bytes) {
      if (rig_->Asked().size() == 3) enterOn(Stop());
      answer(bytes);
    };
    Run();
    EXPECT_EQ(dialog_->UploadState(), u"Cancel"_s);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_LE(rig_->Asked().size(), 4U);
  }
}

TEST_F(UploadDialog, StopWithTheLastBlockInTheHandHidesTheCompletedUploadAtOnce) {
  Make({.Records = 7});
  // The press is handled when the block has arrived and before it is looked at.
  rig_->Port.OnWrite = [this, answer = rig_->Port.OnWrite](const test::Bytes& bytes) {
    answer(bytes);
    rig_->Loop.At(rig_->Loop.NowMs(), [this] { Stop()->click(); });
  };
  Run();
  EXPECT_EQ(dialog_->UploadState(), u"Cancel"_s);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(Text(u"lblGetHistoryData"_s), u"Upload complete: 7 records uploaded."_s);
  EXPECT_EQ(buffer_.Count(), 7);
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(UploadDialog, StopInTheMiddleOfABlockDoesNotWaitForItsEnd) {
  Make({.Records = 7, .BaudRate = 9600});
  rig_->Loop.At(100, [this] { Stop()->click(); });
  Run();
  EXPECT_EQ(dialog_->UploadState(), u"Cancel"_s);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_LE(rig_->Loop.NowMs(), 200);
  const std::vector<test::FakeMessages::Asked> expected{
      {u"Retrieve Cancelled by User.  Received 0 records of 7 records."_s, 16,
       u"Get History Data"_s}};
  EXPECT_EQ(messages_.All, expected);
}

TEST_F(UploadDialog, SaysThatItWaitsForLateAnswersAndNothingOfItAfterwards) {
  Make({.Records = 25});
  rig_->Logger.AddFault({.Mode = FailureMode::Silent, .Count = 1});
  QStringList shown;
  rig_->Loop.OnTick = [this, &shown] {
    if (rig_->Link.WaitTicks > 0) --rig_->Link.WaitTicks;
    const QString text = Text(u"lblRetries"_s);
    if (shown.isEmpty() || shown.last() != text) shown.append(text);
  };
  Run();
  EXPECT_EQ(shown,
            (QStringList{QString(), u"retries 1"_s, u"retries 1, waiting for late answers"_s}));
  EXPECT_EQ(Text(u"lblRetries"_s), u"retries 1"_s);
}

TEST_F(UploadDialog, SaysHowManyOfHowManyCameBeforeOkay) {
  Make({.Records = 25});
  dialog_.emplace(buffer_, rig_->Commands, rig_->Channel(), rig_->Link, messages_, rig_->Sink, 95);
  Run();
  EXPECT_EQ(Text(u"lblGetHistoryData"_s), u"Upload complete: 25 records uploaded."_s);
  EXPECT_EQ(Text(u"lblRetries"_s), u"only 25 of 95 records received"_s);
  EXPECT_TRUE(Okay()->isEnabled());
  EXPECT_EQ(dialog_->UploadState(), u"Running"_s);
}

TEST_F(UploadDialog, SaysSoInGermanToo) {
  SetTextLanguage(kLanguageGerman);
  Make({.Records = 25});
  dialog_.emplace(buffer_, rig_->Commands, rig_->Channel(), rig_->Link, messages_, rig_->Sink, 95);
  rig_->Logger.AddFault({.Mode = FailureMode::CorruptCheck, .Count = 1});
  Run();
  EXPECT_EQ(Text(u"lblRetries"_s), u"Wiederholversuche 1, nur 25 von 95 Datensätzen erhalten"_s);
}

TEST_F(UploadDialog, BeginsAnewWhenTheFirstRequestWasLostAndShowsTheWhole) {
  Make({.Records = 95});
  Run();
  dialog_.emplace(buffer_, rig_->Commands, rig_->Channel(), rig_->Link, messages_, rig_->Sink, 95);
  rig_->Logger.AddFault({.Mode = FailureMode::RequestLost, .Count = 1, .Opcode = 0x0D});
  Run();
  EXPECT_EQ(Text(u"lblGetHistoryData"_s), u"Upload complete: 95 records uploaded."_s);
  EXPECT_EQ(Text(u"lblRetries"_s), u"retries 1, begun anew"_s);
  EXPECT_EQ(Bar()->maximum(), 95);
  EXPECT_EQ(Bar()->value(), 95);
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(UploadDialog, TheMessageStandsInFrontOfTheDialogNotBehindIt) {
  Make({.Records = 25});
  rig_->Logger.AddFault(FailureMode::IllegalBlockCount);
  bool visible = false;
  messages_.OnMessage = [&] { visible = dialog_->isVisible(); };
  Run();
  EXPECT_TRUE(visible);
}

TEST_F(UploadDialog, AFailureLeavesTheStateRunningAndHides) {
  Make({.Records = 25});
  rig_->Logger.AddFault(FailureMode::CorruptCheck);
  Run();
  EXPECT_EQ(dialog_->UploadState(), u"Running"_s);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(Text(u"lblRetries"_s), u"retries 100"_s);
  const std::vector<test::FakeMessages::Asked> expected{
      {u"Error During Retrieval.  Received 0 records of 25 records."_s, 16, u"Get History Data"_s}};
  EXPECT_EQ(messages_.All, expected);
}

TEST_F(UploadDialog, AFullBufferIsSaidAlthoughTheLoggerHasNoMore) {
  Make({.AnalogChannels = 1, .PulseChannels = 0, .Records = 200000});
  Run();
  EXPECT_EQ(dialog_->UploadState(), u"Cancel"_s);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(Text(u"lblGetHistoryData"_s), u"Records 200000"_s);
  const std::vector<test::FakeMessages::Asked> expected{
      {u"History buffer full: upload terminated."_s, 64, u"Get History Data"_s}};
  EXPECT_EQ(messages_.All, expected);
}

TEST_F(UploadDialog, ClosingTheWindowWhileItRunsIsStop) {
  Make({.Records = 2500});
  rig_->Logger.AddFault(FailureMode::CorruptCheck);
  rig_->Loop.At(450, [this] { dialog_->close(); });
  Run();
  EXPECT_EQ(dialog_->UploadState(), u"Cancel"_s);
  EXPECT_FALSE(dialog_->isVisible());
  ASSERT_EQ(messages_.All.size(), 1U);
}

TEST_F(UploadDialog, ClosingTheWindowAfterCompletionIsOkay) {
  Make({.Records = 25});
  Run();
  dialog_->close();
  EXPECT_EQ(dialog_->UploadState(), u"Okay"_s);
  EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(UploadDialog, TheEndOfTheProgramEndsIt) {
  Make({.Records = 2500});
  rig_->Logger.AddFault(FailureMode::CorruptCheck);
  rig_->Loop.At(450, [this] {
    rig_->Loop.End();
    rig_->Port.Close();
    dialog_->reject();
  });
  Run();
  EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(UploadDialog, MayBeGoneWhenTheWaitIsOver) {
  Make({.Records = 2500});
  rig_->Logger.AddFault(FailureMode::CorruptCheck);
  rig_->Loop.At(450, [this] { dialog_.reset(); });
  Run();
  EXPECT_FALSE(dialog_.has_value());
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(UploadDialog, SpeaksGerman) {
  SetTextLanguage(kLanguageGerman);
  Make({.Records = 25});
  rig_->Logger.AddFault({.Mode = FailureMode::CorruptCheck, .Count = 1});
  EXPECT_EQ(dialog_->windowTitle(), u"Speicherdaten abrufen"_s);
  EXPECT_EQ(Okay()->text(), u"OK"_s);
  Run();
  EXPECT_EQ(Text(u"lblRetries"_s), u"Wiederholversuche 1"_s);
  EXPECT_EQ(Text(u"lblGetHistoryData"_s), u"Upload vollständig: 25 Datensätze hochgeladen"_s);
}

}  // namespace
}  // namespace tessmar
