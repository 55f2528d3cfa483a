#pragma once

#include <QStringList>
#include <Qt>
#include <span>

namespace tessmar::test {

struct KeyRow {
  Qt::Key Key;
  Qt::KeyboardModifiers With = Qt::NoModifier;
};

/// Keys that somebody may press; those that are pressed more often stand there twice.
std::span<const KeyRow> Keys();

/// What somebody may type into a field.
QStringList Junk();

/// What somebody may take for a file: names that are there, new ones, and those that cannot be.
QStringList FileNames();

}  // namespace tessmar::test
