#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "base/Clock.h"
#include "base/MessageLoop.h"
#include "base/SupportLog.h"
#include "base/SystemLocale.h"
#include "cli/Output.h"
#include "link/PortMap.h"
#include "link/SerialPort.h"

namespace tessmar {

/// What a command finds around it. All of it outlives the command.
struct CommandEnvironment {
  Output& Out;
  MessageLoop& Loop;
  const Clock& Time;
  const SystemLocale& Locale;
  const SupportLog& Log;  ///< That of the program with the window, too.
  PortMap Ports;
  QString StorePath;  ///< The file of the persisted settings.
  std::function<std::shared_ptr<SerialPort>(const PortMap&)> MakePort;
  /// True once Ctrl-C was pressed or the process was asked to end.
  std::function<bool()> StopWanted;
  /// Called every 100 ms by whoever runs the loop; a command puts its own work there.
  std::function<void()> OnTick = {};
  /// True while settings are on their way to the logger: nothing may end a wait then.
  std::function<bool()> IsUncut = {};
};

}  // namespace tessmar
