#pragma once

#include <QString>

#include "base/SupportLog.h"
#include "base/SystemLocale.h"
#include "link/LinkState.h"
#include "link/SerialPort.h"

namespace tessmar {

/// What whoever helps an operator wants to know first, as a text in English for the clipboard: the
/// program, the system, the language, the connection and the last lines of the log. No names of
/// loggers, no phone numbers.
/// @param title  of the main window, with the version.
QString SupportDetails(const QString& title, const SystemLocale& locale, const LinkState& link,
                       const SerialPort& port, const SupportLog& log);

}  // namespace tessmar
