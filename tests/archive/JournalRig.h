#pragma once

#include <optional>

#include "archive/ArchiveRig.h"
#include "archive/Journal.h"
#include "base/TextTable.h"
#include "history/Blocks.h"
#include "support/FakeOutside.h"

namespace tessmar::test {

/// A journal for a logger "Pond 7" of two analog channels and a pulse channel, 24 records a block.
class JournalRig : public ArchiveFolder {
 protected:
  static constexpr int kWords = 3;
  static constexpr int kFullBlock = 24;

  JournalRig() {
    SetTextLanguage(kLanguageEnglish);
    link_.TrapErrors = true;
    link_.AnalogChannelCount = 2;
    link_.PulseChannelCount = 1;
    link_.LoggerModelCode = 220;
    link_.FirmwareVersion = 5;
    link_.ClockOffsetS = -12;
    LoadDefaultSettings(settings_, 2);
    settings_.LoggerName = QStringLiteral("Pond 7");
    journal_.emplace(Path(), Context());
  }
  ~JournalRig() override { SetTextLanguage(kLanguageEnglish); }

  JournalContext Context() {
    return {.Link = link_,
            .Settings = settings_,
            .Time = clock_,
            .Source = [] { return QStringLiteral("COM3"); },
            .Program = QStringLiteral("2.1.9")};
  }
  Journal& TheJournal() { return *journal_; }

  /// Hands over blocks of so many records each, numbered on.
  void Take(std::initializer_list<int> counts) {
    for (const int count : counts) {
      journal_->TakeBlock(Block(count, kWords, next_));
      next_ += static_cast<std::uint32_t>(count);
    }
  }
  /// Time goes by, with a tick each tenth of a second.
  void Pass(qint64 ms) {
    for (; ms > 0; ms -= 100) {
      clock_.Present = clock_.Present.addMSecs(100);
      journal_->Tick();
    }
  }
  /// A whole upload, with its records in the file as far as that can be had.
  void Upload(std::initializer_list<int> counts, UploadEnd end = UploadEnd::Complete) {
    journal_->Begin({.Promised = 60});
    Take(counts);
    journal_->End(end);
    Pass(300);
  }
  /// Another start of the program, after one that was killed.
  void KillAndStart() {
    journal_.reset();
    OtherProgram file(Path());
    EXPECT_TRUE(
        file.Do(QStringLiteral("UPDATE upload SET owner = replace(owner, 'start=', 'start=1')")));
    journal_.emplace(Path(), Context());
  }

  QStringList Rows(const QString& sql) const {
    OtherProgram file(Path());
    return file.Rows(sql);
  }
  QString States() const {
    return Rows(QStringLiteral("SELECT state || ' ' || records FROM upload ORDER BY id"))
        .join(QStringLiteral(", "));
  }
  int BlockCount() const {
    return Rows(QStringLiteral("SELECT count(*) FROM block")).value(0).toInt();
  }

  LinkState link_;
  LoggerSettings settings_;
  FakeClock clock_;
  std::uint32_t next_ = 1;
  std::optional<Journal> journal_;
};

}  // namespace tessmar::test
