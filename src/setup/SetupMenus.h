#pragma once

#include <QString>

namespace tessmar {

/// The caption of a menu or a menu entry of the setup screen, in the language of the texts; empty
/// for one that has none of its own, such as a separator or a recent file.
/// @param name  its object name.
QString SetupMenuCaption(const QString& name);

}  // namespace tessmar
