#pragma once

#include <QString>

namespace tessmar {

/// The words of the main window for the connection, in the language of the texts.
struct ConnectionWords {
  QString Connect;
  QString Disconnect;
  QString Connected;
  QString Disconnected;
};

}  // namespace tessmar
