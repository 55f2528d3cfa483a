#include "history/GetHistoryData.h"

#include <gtest/gtest.h>

#include "base/TextTable.h"
#include "history/UploadRig.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using sim::FailureMode;
using test::Bytes;
using test::UploadRig;

class GetHistory : public testing::Test {
 protected:
  void Make(const sim::LoggerOptions& options) { rig_.emplace(options, buffer_); }

  void Run() {
    GetHistoryData(rig_->Link, rig_->Commands, buffer_, messages_, screen_, rig_->Loop,
                   {[this](std::int32_t total) {
                      Note("dialog " + std::to_string(total));
                      busyInDialog_ = rig_->Link.Busy;
                      for (int i = 0; i < arriving_; ++i) buffer_.Append(LiveSample{});
                      return uploadState_;
                    },
                    [this] { Note("viewer"); }, reportKept_});
    Note("end");
  }

  // What happened so far: the opcodes that were sent since the last note, then the note.
  void Note(const std::string& what) {
    for (; written_ < rig_->Port.Writes.size(); ++written_) {
      const std::uint8_t opcode = rig_->Port.Writes[written_][2];
      events_.push_back(opcode == 0x0C ? "status" : opcode == 0x00 ? "clock" : "other");
    }
    events_.push_back(what);
  }

  HistoryBuffer buffer_;
  std::optional<UploadRig> rig_;
  test::FakeMessages messages_;
  test::FakeMainScreen screen_;
  QString uploadState_ = u"Okay"_s;
  int arriving_ = 3;
  std::function<void()> reportKept_;
  bool busyInDialog_ = false;
  std::vector<std::string> events_;
  std::size_t written_ = 0;
};

TEST_F(GetHistory, ReadsStatusUploadsShowsAndReadsStatusAndClockAgain) {
  Make({.Records = 25});
  Run();
  EXPECT_EQ(events_, (std::vector<std::string>{"status", "dialog 25", "status", "viewer", "status",
                                               "clock", "end"}));
  EXPECT_TRUE(busyInDialog_);
  EXPECT_FALSE(rig_->Link.Busy);
  EXPECT_EQ(rig_->Link.LoggerTimeText, u"6/15/26 14:30:00"_s);
  EXPECT_EQ(screen_.WaitCursor, 0);
  EXPECT_EQ(screen_.WaitCursorShown, 1);
  EXPECT_TRUE(messages_.All.empty());
}

TEST_F(GetHistory, WhatWasNotKeptIsToldRightBehindTheUpload) {
  for (const char* state : {"Okay", "Running"}) {
    Make({.Records = 25});
    written_ = 0;
    events_.clear();
    uploadState_ = QString::fromLatin1(state);
    reportKept_ = [this] { Note("report"); };
    Run();
    ASSERT_GT(events_.size(), 3U);
    EXPECT_EQ(events_[1], "dialog 25");
    EXPECT_EQ(events_[2], "report");
  }
}

TEST_F(GetHistory, ACancelledUploadReachesTheViewer) {
  Make({.Records = 25});
  uploadState_ = u"Cancel"_s;
  Run();
  EXPECT_EQ(events_, (std::vector<std::string>{"status", "dialog 25", "status", "viewer", "status",
                                               "clock", "end"}));
}

TEST_F(GetHistory, AFailedUploadSkipsTheViewerAlthoughRecordsArrived) {
  Make({.Records = 25});
  uploadState_ = u"Running"_s;
  Run();
  EXPECT_EQ(events_, (std::vector<std::string>{"status", "dialog 25", "status", "clock", "end"}));
  EXPECT_EQ(buffer_.Count(), 3);
}

TEST_F(GetHistory, NothingArrivedMeansNoViewer) {
  Make({.Records = 25});
  uploadState_ = u"Cancel"_s;
  arriving_ = 0;
  Run();
  EXPECT_EQ(events_, (std::vector<std::string>{"status", "dialog 25", "status", "clock", "end"}));
}

TEST_F(GetHistory, NoRecordsInTheLoggerIsSaidAtOnce) {
  Make({.Records = 0});
  Run();
  EXPECT_EQ(events_, (std::vector<std::string>{"status", "end"}));
  const std::vector<test::FakeMessages::Asked> expected{
      {u"No history in memory!"_s, 64, u"Get History Data"_s}};
  EXPECT_EQ(messages_.All, expected);
  EXPECT_FALSE(rig_->Link.Busy);
}

TEST_F(GetHistory, AStatusThatCannotBeReadIsSaidAtOnce) {
  Make({.Records = 25});
  rig_->Logger.AddFault(FailureMode::Silent);
  buffer_.Append(LiveSample{});
  Run();
  EXPECT_EQ(events_, (std::vector<std::string>{"status", "status", "status", "end"}));
  const std::vector<test::FakeMessages::Asked> expected{
      {u"Error: upload not successful!"_s, 16, u"Get History Data"_s}};
  EXPECT_EQ(messages_.All, expected);
  EXPECT_EQ(buffer_.Count(), 0);
  EXPECT_FALSE(rig_->Link.Busy);
}

TEST_F(GetHistory, DoesNothingUnlessTheLinkIsFree) {
  Make({.Records = 25});
  buffer_.Append(LiveSample{});
  rig_->Link.Connected = false;
  Run();
  rig_->Link.Connected = true;
  rig_->Link.SampleContinuously = true;
  Run();
  rig_->Link.SampleContinuously = false;
  rig_->Link.Busy = true;
  Run();
  EXPECT_EQ(events_, (std::vector<std::string>{"end", "end", "end"}));
  EXPECT_TRUE(rig_->Link.Busy);
  EXPECT_EQ(buffer_.Count(), 1);
}

TEST_F(GetHistory, OpensNoViewerWhenTheProgramIsEnding) {
  Make({.Records = 25});
  rig_->Loop.End();
  Run();
  for (const std::string& event : events_) EXPECT_NE(event, "viewer");
  EXPECT_FALSE(rig_->Link.Busy);
}

}  // namespace
}  // namespace tessmar
