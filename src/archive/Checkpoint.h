#pragma once

#include <QString>
#include <memory>

class QThread;

namespace tessmar {

/// Brings what was committed from the archive's side file ("-wal") into the file itself.
///
/// SQLite does this at a commit, and the disk then holds up whoever committed: for a full history
/// that is tens of megabytes and a window that stands still. Here it is done in a thread of its
/// own, over a connection of its own; the two share nothing but the file, and SQLite keeps them
/// apart. Nothing is lost when it does not come about: what is committed is safe where it is, and
/// the next time takes all of it.
class Checkpoint {
 public:
  /// A side file of this size is worth it.
  static constexpr qint64 kWorthBytes = qint64{4} * 1024 * 1024;

  Checkpoint();
  /// Waits for one under way.
  ~Checkpoint();
  Checkpoint(const Checkpoint&) = delete;
  Checkpoint& operator=(const Checkpoint&) = delete;

  /// Begins one when there is so much to do that it is worth it and none is under way.
  void BeginIfWorth(const QString& path);
  /// Waits for one under way.
  void Wait();

  /// Asks the system to take what stands in the side file to the disk already, without waiting for
  /// it, so that the commit to come has little left to wait for. Where the system offers no such
  /// thing nothing is done.
  static void StartWritingOut(const QString& path);

 private:
  std::unique_ptr<QThread> thread_;
};

}  // namespace tessmar
