#pragma once

#include <QString>
#include <QStringList>

namespace tessmar {

/// Where a file dialog starts.
struct FileDialogStart {
  QString Folder;  ///< Empty when the name says none.
  QString Name;    ///< Empty when the name was a pattern.
  bool operator==(const FileDialogStart&) const = default;
};

/// Splits an initial name such as "*.set", "/home/x/*.csv" or "/home/x/pond.set". A name with "*"
/// or
/// "?" in it is a pattern and chooses nothing.
FileDialogStart StartOfFileDialog(const QString& initialName);

/// The filters in a text such as "Setup Files (*.set)|*.set|All Files|*.*": one entry for each
/// pair, in the form "Setup Files (*.set)", several patterns of one pair separated by blanks.
QStringList FileFilters(const QString& filter);

/// The extension of the files of a part of such a filter, from 0, as ".set"; empty for a part with
/// several patterns, or one that is not "*." and an extension.
QString ExtensionOfFilter(const QString& filter, int part);

/// A file name with the extension added when its last part has none.
/// @param extension  with its point, such as ".csv"; empty adds nothing.
QString WithDefaultExtension(const QString& name, const QString& extension);

/// Where file dialogs start at first: the program's folder, or the user's documents where the user
/// may not put a file into it.
QString FirstFolderOfDialogs(const QString& appPath);

}  // namespace tessmar
