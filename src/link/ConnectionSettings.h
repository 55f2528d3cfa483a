#pragma once

#include <QString>
#include <array>
#include <cstdint>

namespace tessmar {

/// What the connection dialog remembers. All but the last two members are kept between runs.
struct ConnectionSettings {
  QString DirectPort;  ///< Port name in capitals, such as "COM3".
  QString DirectBaud;
  QString ModemPort;
  QString ModemBaud;
  std::array<QString, 4> ModemNumbers;  ///< Phone numbers, latest first.
  QString ModemInit;                    ///< Path of the modem command file.
  std::int16_t UseModemInit = 0;        ///< 0 or 1.

  QString CurrentPhoneNumber;  ///< What cmbNumber held when the dialog last closed.
  bool ConnectionIsModem = false;
};

}  // namespace tessmar
