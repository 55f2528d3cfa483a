#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

#include "archive/Store.h"

namespace tessmar {

// What the operator changes in the archive by hand. Each is one transaction, throws ArchiveFault,
// and leaves the records as they are.

/// Gives a logger another name in the archive. Its uploads to come find it by its own name still.
void RenameLogger(Store& store, qint64 logger, const QString& name, const QDateTime& now);

/// Makes two loggers one: the uploads and the logbook of the first belong to the second from now
/// on, uploads to come too. The first one's row stays, as what leads to the second.
void MergeLoggers(Store& store, qint64 from, qint64 into, const QDateTime& now);

/// Takes uploads from their loggers and gives them to a new one of this name: two loggers had the
/// same name. @return the new logger.
qint64 SplitLogger(Store& store, const std::vector<qint64>& uploads, const QString& name,
                   const QDateTime& now);

/// Puts uploads into the bin; what lies in it already stays there.
void PutIntoBin(Store& store, const std::vector<qint64>& uploads, const QDateTime& now);
void TakeFromBin(Store& store, const std::vector<qint64>& uploads);
/// Deletes these uploads for good, those of them that lie in the bin.
void EmptyBin(Store& store, const std::vector<qint64>& uploads);
/// What lies in the bin: the newest first, without settings.
std::vector<UploadRow> UploadsInBin(const Store& store);

/// The loggers that stand for something of their own: not those that were merged into others.
std::vector<LoggerRow> ShownLoggers(const Store& store);

}  // namespace tessmar
