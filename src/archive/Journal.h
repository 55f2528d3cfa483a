#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>

#include "archive/ArchiveWriter.h"
#include "archive/IntegrityCheck.h"
#include "archive/JournalContext.h"
#include "archive/JournalQueue.h"
#include "base/Logbook.h"
#include "history/BlockSink.h"

namespace tessmar {

/// The upload that was told to the journal last.
struct JournalUpload {
  qint64 Id = 0;  ///< 0 while it is not in the file.
  QString Uuid = {};
  std::int32_t Records = 0;  ///< That its blocks hold.
  std::int32_t NotKept = 0;  ///< Records of them that are not in the file yet.
};

/// Keeps uploads and events in the archive while they happen.
///
/// What it is told goes into memory at once and to the file with the next ticks, never later than
/// 0.4 s, unless the file cannot be had: then it stays in memory, and the journal tries again until
/// it succeeds or the program ends. Nobody ever waits for it: a lock, a full disk, a damaged or
/// missing file cost the upload nothing. Records and channels follow in small pieces once an upload
/// has ended.
///
/// Tick has to be called from the message loop while the program runs, see JournalTimer, and Finish
/// once before its end. Each process has one journal for a file.
class Journal final : public BlockSink, public Logbook {
 public:
  /// How long a block waits in memory before a tick takes it to the file.
  static constexpr qint64 kWaitMs = 250;
  /// How long a tick works on the records of an ended upload.
  static constexpr qint64 kSliceMs = 8;

  /// Opens nothing yet. With an empty path nothing is kept, and nothing said. What stands in the
  /// context outlives the journal.
  Journal(const QString& path, JournalContext context);

  void Begin(const UploadStart& start) override;
  void TakeBlock(std::span<const std::uint8_t> block) override;
  void BeginAnew() override;
  void End(UploadEnd end) override;
  void Note(const LogbookEntry& entry) override;
  std::optional<KnownSettings> LastSettings() override;

  /// Does what is due: writes what waits, goes on with records, looks after what another process
  /// has left unfinished.
  /// @return true when there is more to do soon, so that the next call should come within 20 ms.
  bool Tick();

  /// Ends an upload that still runs as cancelled, writes everything that can be written, and closes
  /// the file.
  void Finish();

  /// Writes everything that can be written, the records too. @return true when nothing is left.
  bool WriteAll();

  /// True when nothing is left to do: all is in the file, and what another process has left running
  /// has been looked after.
  bool IsIdle() const { return lookedForLeft_ && queue_.Uploads.empty() && queue_.Events.empty(); }

  JournalUpload LastUpload() const;

  /// Entries of the logbook that are not in the file yet.
  std::size_t EventsWaiting() const { return queue_.Events.size(); }
  /// Why the last attempt to write failed; nothing where it did not.
  std::optional<ArchiveTrouble> Trouble() const { return trouble_; }

  /// How many of the connected logger's records are not in the archive: those beyond its longest
  /// upload with settings since its memory was cleared. Nothing where nobody can tell: the archive
  /// cannot be read now, the logger's settings could not be, or it has begun to overwrite its
  /// oldest records.
  std::optional<std::int32_t> RecordsNotArchived();

  /// What the operator should know after an upload, each thing once, in the language of the texts:
  /// what was not kept and why, a damaged archive that was moved aside. Empty when all is well.
  QString TakeReport();

  /// What the operator should know after a run of sampling: how many of its samples were not kept,
  /// once, when that is still so two seconds after its end; and a damaged archive that was moved
  /// aside. Empty when all is well.
  /// @param atEnd  the program ends: what is not kept by now will be lost.
  QString TakeLiveReport(bool atEnd = false);

  const QString& Path() const { return writer_.Path(); }

 private:
  KeptUpload* Running();
  void NoteUploaded(const KeptUpload& upload);
  std::int32_t RecordsArchived();
  bool Try(const std::function<void()>& work);
  bool WriteWaiting();
  bool FillFor(qint64 ms);
  void Suffer(ArchiveTrouble trouble);
  bool LookAtCheck();
  void Settle(IntegrityCheck::Result found);
  void DropOldest();

  JournalContext context_;
  JournalQueue queue_;
  ArchiveWriter writer_;
  std::optional<UploadStart> start_;  ///< Of the upload that runs.
  JournalUpload last_;
  qint64 liveEndedAt_ = -1;       ///< When a run of sampling has ended, until it is looked after.
  std::int32_t liveGivenUp_ = 0;  ///< Samples dropped for room before anybody was told.
  bool told_ = false;             ///< What was not kept of it has been told.
  qint64 waitsSince_ = -1;        ///< Of the oldest thing unwritten; -1 for none.
  qint64 retryAt_ = 0;
  bool lookedForLeft_ = false;             ///< What another process left has been looked for.
  std::optional<ArchiveTrouble> trouble_;  ///< Of the last attempt.
  std::optional<IntegrityCheck> check_;    ///< Of a damaged file; nothing is written meanwhile.
  QString movedTo_;                        ///< Where a damaged file went, until it is told.
};

}  // namespace tessmar
