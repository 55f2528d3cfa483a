#pragma once

#include <optional>

#include "link/Comm.h"
#include "link/cmd.h"
#include "measure/LiveDisplay.h"
#include "settings/LoggerSettings.h"
#include "setup/Programming.h"
#include "sim/SimulatedLogger.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeOutside.h"
#include "support/FakeSerialPort.h"
#include "support/SimulatedLine.h"

namespace tessmar::test {

inline constexpr std::uint8_t kWriteOpcode = 0x07;
inline constexpr std::uint8_t kReadOpcode = 0x08;
inline constexpr std::uint8_t kCommitOpcode = 0x0B;

/// A connected program with a simulated logger at the other end of its line, in virtual time, with
/// the settings read from the logger as they are when the setup screen opens.
class SetupRig {
 public:
  explicit SetupRig(const sim::LoggerOptions& options = {},
                    const QLocale& locale = QLocale(QLocale::English, QLocale::UnitedStates))
      : Logger(options), Locale(locale) {
    Link.TrapErrors = true;
    Link.Connected = true;
    Link.LinkTimeoutTicks = 10;
    Link.AnalogChannelCount = static_cast<std::int16_t>(options.AnalogChannels);
    Link.PulseChannelCount = static_cast<std::int16_t>(options.PulseChannels);
    Link.SampleOnDemandSupported = options.SampleOnDemand;
    Comm_.OpenPort(1, QStringLiteral("38400,N,8,1"));
    Programmer.RefreshFromLogger();
  }

  /// The adapter is pulled out, and the program has noticed.
  void LoseAdapter() {
    Port.Unplug();
    Link.Connected = false;
  }

  LinkState Link;
  FakeMessageLoop Loop{Link};
  FakeSerialPort Port;
  sim::SimulatedLogger Logger;
  SimulatedLine Line{Port, Loop, Logger};
  FakeClock Clock;
  SystemLocale Locale;
  FakeMainScreen Screen;
  FakeMessages Messages;
  FakeFileDialogs Dialogs;
  LoggerSettings Settings;
  LiveRing Ring;

 private:
  Comm Comm_{Port, Loop, Link};

 public:
  LoggerCommands Commands{Comm_, Link, Clock, Locale};
  LiveDisplay Display{Link, Settings, Ring, Screen, Locale};
  Programming Programmer{Commands, Link, Settings, Display};
};

}  // namespace tessmar::test
