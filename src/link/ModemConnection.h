#pragma once

#include <QIODevice>
#include <QString>
#include <QStringList>
#include <array>
#include <functional>

#include "base/Messages.h"
#include "link/Comm.h"
#include "link/ConnectionSettings.h"
#include "link/LinkState.h"

namespace tessmar {

/// The result word of the modem's dialogue.
enum class ModemResult { Error, Cancel, Connect };

/// The commands of a modem command file: of each line its first word in capitals, without a
/// comment, which begins with ";". At most 256; empty lines do not count.
QStringList ReadModemCommands(QIODevice& file);

/// Puts a phone number at the front of the remembered ones. One that is already among the first
/// three moves there; otherwise the last falls out.
void RememberNumber(std::array<QString, 4>& numbers, const QString& number);

/// What the operator asked of the modem.
struct ModemRequest {
  QString Number = {};
  bool UseCommandFile = false;
  QString CommandFile = {};  ///< Path; empty is none.
};

/// Shows the modem's dialogue until it has ended.
/// @param commands  in sending order, the reset first.
using ModemDialogueShow =
    std::function<ModemResult(const QStringList& commands, const QString& number)>;

/// Dials on the open port. Whatever fails is told to the operator, who knows of a Cancel himself.
/// @return true when there is a carrier. On false the port is closed, but for a missing number.
bool ConnectModem(const ModemRequest& request, Comm& comm, const LinkState& link,
                  ConnectionSettings& settings, Messages& messages,
                  const ModemDialogueShow& showDialogue);

}  // namespace tessmar
