#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace tessmar {

/// The questions of ArchiveParts as dialogs over the active window. Nothing when the operator
/// cancels.
std::optional<QString> AskArchiveText(const QString& title, const QString& prompt,
                                      const QString& present);
std::optional<int> AskArchiveChoice(const QString& title, const QString& prompt,
                                    const QStringList& choices);

}  // namespace tessmar
