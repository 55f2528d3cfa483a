#pragma once

#include <QString>

namespace tessmar {

/// The text of an entry of the logbook as the window shows it. The archive keeps these texts in
/// English; in German the sentences that the program writes are put into German, line by line. What
/// else stands there, such as a name, stays.
QString ShownDetails(const QString& text);

}  // namespace tessmar
