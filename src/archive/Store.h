#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "archive/ArchiveFault.h"
#include "archive/ArchiveRows.h"

namespace tessmar {

/// One connection to the archive's file: opening and upgrading it, transactions, and its rows.
///
/// Several stores, in this and in other programs, may be open on the same file; readers never wait
/// for a writer. Nothing here ever waits for a lock: what cannot be had at once throws an
/// ArchiveFault of Busy, and whoever wants it tries again later. Every function but Close throws
/// ArchiveFault; after one of Damaged the store should be closed.
///
/// While a store is open no other code of the process may open and close the file itself: that
/// would take this connection's locks away, for the system keeps them by process.
class Store {
 public:
  enum class Access {
    Read,   ///< The file has to be there; nothing is made, upgraded or moved.
    Write,  ///< The file is made when there is none, and upgraded when it is of an older version.
  };

  /// Opens nothing yet.
  explicit Store(QString path);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  /// TESSMAR_ARCHIVE, or else Tessmar/archive.sqlite in the user's data folder.
  static QString DefaultPath();
  const QString& Path() const { return path_; }

  /// Opens the file; nothing happens when it is open. Whatever stands in its place and is no
  /// archive of this version or an older one is left as it is.
  void Open(Access access);
  void Close();
  bool IsOpen() const { return database_.isOpen(); }
  /// False when the file that is open no longer stands at its path: removed, moved or replaced.
  bool FileIsThere() const;

  /// What SQLite's own check finds: empty for a sound file, otherwise its complaints, at most 100.
  QStringList IntegrityComplaints();

  /// Moves the file, which must not be open, aside under a name with the time in it, with what
  /// belongs to it. @return the new path; empty when it could not be moved.
  QString MoveAside(const QDateTime& now) const;

  /// Runs one statement with its values in place of the question marks.
  QSqlQuery Run(const QString& sql, const QVariantList& values = {}) const;
  /// Prepares a statement that runs many times.
  QSqlQuery Prepare(const QString& sql) const;
  /// Runs a prepared statement whose values are bound.
  static void Execute(QSqlQuery& query);

  // Reading.

  std::vector<LoggerRow> Loggers() const;
  std::optional<LoggerRow> Logger(qint64 id) const;
  /// The row of the logger that calls itself so, also when it was renamed in the archive, or of the
  /// one that it was merged into.
  std::optional<LoggerRow> LoggerFor(const QString& name, std::optional<int> model) const;
  /// Of one logger, or of all for 0: the newest first. Without their settings, to be quick; Upload
  /// has them. What is in the bin is left out.
  std::vector<UploadRow> Uploads(qint64 loggerId = 0) const;
  std::optional<UploadRow> Upload(qint64 id) const;
  /// Hands over the blocks of an upload in their order.
  void ForEachBlock(qint64 uploadId,
                    const std::function<void(std::span<const std::uint8_t>)>& take) const;
  /// Hands over the records of an upload in their order; none while it runs.
  void ForEachRecord(qint64 uploadId, const std::function<void(const RecordRow&)>& take) const;
  /// The same with stamp and words alone, which is several times as quick.
  void ForEachStored(qint64 uploadId, const std::function<void(std::optional<std::uint32_t> stamp,
                                                               const QByteArray& raw)>& take) const;
  std::vector<ChannelRow> Channels(qint64 uploadId) const;
  /// Of one logger, or of all for 0: the newest first.
  std::vector<EventRow> Events(qint64 loggerId = 0) const;

  // Writing; each within a Transaction of the caller's where more than one row is meant.

  /// Finds or makes the row of a logger, and notes that it was seen. For an image, whose model
  /// nobody knows, the logger of that name that was seen last.
  qint64 SeeLogger(const QString& name, std::optional<int> model, std::optional<int> firmware,
                   const QDateTime& at);
  qint64 AddUpload(const UploadRow& upload);
  /// An entry that is there already stays as it is: it is one whose commit seemed to have failed.
  void AddEvent(const EventRow& event);

 private:
  void Connect(Access access);
  void SetUp(Access access);

  QString path_;
  QString connection_;  ///< Qt's name for it.
  QSqlDatabase database_;
  quint64 device_ = 0;  ///< Together with file_ what stat knows the open file by.
  quint64 file_ = 0;
};

/// A write transaction, taken at construction and rolled back at destruction unless committed.
/// Throws ArchiveFault of Busy when another writer is at work.
class Transaction {
 public:
  explicit Transaction(Store& store);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();

 private:
  Store& store_;
  bool open_ = true;
};

}  // namespace tessmar
