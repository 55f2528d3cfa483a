#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "archive/Checkpoint.h"
#include "archive/JournalQueue.h"
#include "archive/RecordMaker.h"
#include "archive/Store.h"

namespace tessmar {

/// Brings what waits in a queue into the archive. Everything throws ArchiveFault and then has
/// changed neither the file nor the queue.
class ArchiveWriter {
 public:
  /// @param storePath  of the archive. @param queue  outlives this.
  ArchiveWriter(const QString& storePath, JournalQueue& queue);
  ~ArchiveWriter();
  ArchiveWriter(const ArchiveWriter&) = delete;
  ArchiveWriter& operator=(const ArchiveWriter&) = delete;

  const QString& Path() const { return store_.Path(); }

  /// Opens the file if it is not open. One that was taken away since is given up, and what waits
  /// goes to its successor as a whole. What another process has left running, and is dead, is put
  /// at the head of the queue as interrupted.
  void Open();
  void Close();
  bool IsOpen() const { return store_.IsOpen(); }

  /// Writes all blocks, events and beginnings that are not in the file, in one transaction.
  void Write();

  /// Goes on with the records of the first upload that has ended, for as long as the caller lets
  /// it. With the last record the upload's state, channels and records are committed together, and
  /// it leaves the queue.
  /// @param goOn  asked after each block.
  /// @return true while there are uploads without their records.
  bool Fill(const std::function<bool()>& goOn);
  /// Breaks off what Fill has begun, to write something more urgent; it begins anew later.
  void StopFilling();
  bool IsFilling() const { return filling_ != nullptr; }

  /// Moves the file aside, with what belongs to it; closes it first.
  /// @return the path that it has now; nothing when it could not be moved.
  std::optional<QString> MoveAside(const QDateTime& now);

  /// For questions; open after Open.
  const Store& Reader() const { return store_; }

 private:
  /// One upload's records on their way into the file.
  struct Filling;

  void Recover();
  qint64 WriteUpload(KeptUpload& upload);
  void WriteBlocks(const KeptUpload& upload, qint64 id);
  void BeginFilling(KeptUpload& upload);
  void EndFilling();
  void Forget(qint64 id);

  Store store_;
  JournalQueue& queue_;
  std::unique_ptr<Filling> filling_;
  Checkpoint checkpoint_;
};

}  // namespace tessmar
