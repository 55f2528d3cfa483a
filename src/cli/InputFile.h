#pragma once

#include <QByteArray>
#include <QString>

namespace tessmar {

/// Reads a whole file that the command line names. Throws CommandFailure, of wrong usage for a file
/// that is not there or is none.
QByteArray ReadInput(const QString& path, qint64 limit);

/// The same refusals for a file that is read piece by piece afterwards.
void CheckInput(const QString& path);

}  // namespace tessmar
