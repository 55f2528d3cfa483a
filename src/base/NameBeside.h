#pragma once

#include <QByteArray>

namespace tessmar {

/// The folder of a file, both as the system spells them; "." for a name alone.
QByteArray FolderOf(const QByteArray& file);

/// A new name in the folder of a file, for what is to take its place, short enough for every disk.
QByteArray NameBeside(const QByteArray& file);

/// Removes files of the user's own that have such a name in this folder and were not written to for
/// a day: a process was killed before it could give them the name that they were made for. What
/// cannot be removed stays.
void RemoveLeftovers(const QByteArray& folder);

}  // namespace tessmar
