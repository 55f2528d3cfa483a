#pragma once

#include <cstdint>

#include "base/MainScreen.h"
#include "session/ConnectionWords.h"

namespace tessmar {

/// Sets the captions of the main window and shows the Action menu of the language: imnuAction for
/// German (7), mnuAction for every other. The menu that is not shown keeps the captions it has.
///
/// Texts other than those of the menus come from GetText, so SetTextLanguage goes ahead of it.
///
/// @return the words that the window keeps for the connection.
ConnectionWords LocalizeMainScreen(MainScreen& screen, std::int16_t language);

}  // namespace tessmar
