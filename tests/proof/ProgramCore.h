#pragma once

#include <QDateTime>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "archive/Journal.h"
#include "history/GetHistoryData.h"
#include "history/PullHistory.h"
#include "link/ConnectOperation.h"
#include "link/ModemDialogue.h"
#include "session/StatusLine.h"
#include "support/CoreRig.h"

namespace tessmar::test {

/// The computer's clock in the virtual time of a loop. It begins when a simulated logger's does.
class LoopClock final : public Clock {
 public:
  explicit LoopClock(const FakeMessageLoop& loop) : loop_(loop) {}
  QDateTime Now() const override { return start_.addMSecs(loop_.NowMs()); }
  qint64 SteadyMs() const override { return loop_.NowMs(); }

 private:
  const FakeMessageLoop& loop_;
  QDateTime start_{QDate(2026, 6, 15), QTime(14, 30), Qt::UTC};
};

struct ProgramOutside : CoreOutside {
  ProgramOutside(const QString& archive, std::int32_t room,
                 std::function<const LoggerAsRead&()> asRead)
      : History(room),
        Keeper(archive, {.Link = Link,
                         .Settings = Settings,
                         .Time = Time,
                         .Source = [] { return QStringLiteral("COM1"); },
                         .Program = QStringLiteral("proof"),
                         .AsRead = std::move(asRead)}) {}

  LoopClock Time{Loop};
  HistoryBuffer History;
  Journal Keeper;
};

/// The program without its windows, in virtual time and with its archive: what the program joins,
/// joined likewise. Only port, loop, clock, screen and messages are stand-ins.
class ProgramCore : public ProgramOutside, public JoinedCore {
 public:
  /// @param archive  the file. @param room  records that an upload may have.
  explicit ProgramCore(const QString& archive, std::int32_t room = 5000)
      : ProgramOutside(archive, room,
                       [this]() -> const LoggerAsRead& { return Configuration.AsRead(); }),
        JoinedCore(*this, Time, Keeper,
                   [this] {
                     Dialog.Run({byModem_, QStringLiteral("COM1"), QStringLiteral("9600")});
                   },
                   {[this] { GetHistory(); }, [this] { SetupScreen(); }, [] {}}) {
    Poll.KeepSamples(Keeper);
    Loop.OnTick = [this] { Tick(); };
  }

  /// Connects, over a modem where there is one. @return true when there is a session.
  bool Connect(bool byModem) {
    byModem_ = byModem;
    Actions.ConnectEntry();
    return Link.Connected;
  }

  /// Uploads the history as the menu's command does. @return its end; nothing when there was
  /// nothing to upload, or the logger did not say how much.
  std::optional<UploadEnd> UploadHistory(std::function<bool()> running) {
    running_ = std::move(running);
    end_.reset();
    Actions.GetHistory();
    return end_;
  }

  /// Runs on until the archive holds everything. @return false when it does not within a minute.
  bool LetArchiveFinish() {
    for (int tick = 0; tick < 600 && !Keeper.IsIdle(); ++tick) Loop.RunOnce();
    return Keeper.IsIdle();
  }

  std::optional<HistoryUpload> Upload;  ///< The last one.
  std::function<void()> AfterTick = [] {};
  qint64 MessagesShown = 0;

  StatusLine Status{Link, Settings, Locale, Screen, [this] { return Keeper.RecordsNotArchived(); }};
  ConnectionSettings Connection;
  ConnectOperation Dialog{
      Line, Commands, Link, Connection, Messages, Screen, [this] { return ConnectOverModem(); }};
  /// What is done in the setup screen.
  std::function<void()> SetupScreen = [] {};

 private:
  /// An operator loses patience with a call after so long.
  static constexpr qint64 kPatienceMs = 120'000;

  void Tick() {
    Poll.Timer1Tick();
    Status.Show();
    Poll.Timer2Tick();
    Keeper.Tick();
    Keeper.TakeLiveReport();
    AfterTick();
    // What the stand-ins note for tests would grow without an end.
    MessagesShown += static_cast<qint64>(Messages.All.size());
    Messages.All.clear();
    Screen.Written.clear();
    Port.Writes.clear();
    Port.Written.clear();
    Port.Log.clear();
  }

  void GetHistory() {
    GetHistoryData(
        Link, Commands, History, Messages, Screen, Loop,
        {.ShowUpload =
             [this](std::int32_t total) {
               Upload.emplace(Link, History, total);
               end_ = PullHistory(*Upload, Commands, Line, Link, {running_, [] {}}, Keeper);
               return QString(UploadStates::kOkay);
             },
         .ShowViewer = [] {},
         .ReportKept = [this] { Keeper.TakeReport(); }});
  }

  bool ConnectOverModem() {
    return ConnectModem({.Number = QStringLiteral("5551234")}, Line, Link, Connection, Messages,
                        [this](const QStringList& commands, const QString& number) {
                          return Dial(commands, number);
                        });
  }

  ModemResult Dial(const QStringList& commands, const QString& number) {
    bool over = false;
    const auto dialogue =
        std::make_shared<ModemDialogue>(Line, Link, commands, number,
                                        ModemDialogue::Window{.Append = [](const QString&) {},
                                                              .SetTextColour = [](Rgb) {},
                                                              .Hide = [&over] { over = true; }});
    Loop.After(kPatienceMs, [weak = std::weak_ptr(dialogue)] {
      if (const auto dialled = weak.lock()) dialled->Cancel();
    });
    dialogue->Start();
    while (!over) {
      Loop.RunOnce();
      dialogue->Tick();
    }
    return dialogue->Result();
  }

  bool byModem_ = false;
  std::function<bool()> running_;
  std::optional<UploadEnd> end_;
};

}  // namespace tessmar::test
