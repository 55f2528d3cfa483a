#pragma once

#include <QString>
#include <QStringList>

#include "operators/Random.h"

namespace tessmar::test {

/// Puts what the operators find into the folder: the program's own with its help, an image, files
/// of junk, a pipe, links that lead nowhere, an archive with a logger of years, and settings with
/// the logger's port. Throws std::runtime_error when it cannot.
void FillDesk(const QString& folder, const QString& simulator, quint64 seed);

/// A logger as it may come: of any size, whole or failing, direct or behind a modem.
QStringList LoggerOptions(Random& random);

}  // namespace tessmar::test
