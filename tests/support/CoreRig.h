#pragma once

#include <functional>
#include <utility>

#include "app/MainActions.h"
#include "base/TextTable.h"
#include "link/Comm.h"
#include "session/PollLoop.h"
#include "session/Session.h"
#include "support/FakeMessageLoop.h"
#include "support/FakeOutside.h"
#include "support/FakeSerialPort.h"

namespace tessmar::test {

/// What stands around the core, in virtual time, and the state that it works on.
struct CoreOutside {
  LinkState Link;
  LoggerSettings Settings;
  LiveRing Ring;
  FakeMainScreen Screen;
  FakeMessages Messages;
  FakeMessageLoop Loop{Link};
  FakeSerialPort Port;
  SystemLocale Locale{QLocale(QLocale::English, QLocale::UnitedStates)};
};

/// The whole core behind the main window, joined as the program joins it.
struct JoinedCore {
  /// @param dialog  what the connection dialog does.
  JoinedCore(CoreOutside& outside, const Clock& time, Logbook& book, std::function<void()> dialog,
             MainActionScreens screens)
      : Line(outside.Port, outside.Loop, outside.Link),
        Commands(Line, outside.Link, time, outside.Locale),
        Display(outside.Link, outside.Settings, outside.Ring, outside.Screen, outside.Locale),
        Configuration(Commands, outside.Link, outside.Settings, Display),
        Live{outside.Link, outside.Settings, Commands, Configuration, Display, book},
        Poll(Live, outside.Screen, outside.Loop, Words),
        TheSession(Live, Line, Poll, outside.Screen, outside.Messages, outside.Loop,
                   std::move(dialog)),
        Actions(Live, TheSession, Poll, outside.Screen, outside.Messages, outside.Loop,
                std::move(screens)) {
    SetTextLanguage(kLanguageEnglish);
    outside.Link.TrapErrors = true;
    outside.Link.AnalogChannelCount = kAnalogChannels;
    outside.Link.PulseChannelCount = kPulseChannels;
    outside.Link.ModemTimeoutTicks = 4;
    Poll.SetUnderConstruction(false);
  }
  JoinedCore(const JoinedCore&) = delete;
  JoinedCore& operator=(const JoinedCore&) = delete;

  Comm Line;
  LoggerCommands Commands;
  LiveDisplay Display;
  Programming Configuration;
  ConnectionWords Words{QStringLiteral("Connect"), QStringLiteral("Disconnect"),
                        QStringLiteral("Connected"), QStringLiteral("Disconnected")};
  LiveLogger Live;
  PollLoop Poll;
  Session TheSession;
  MainActions Actions;
};

}  // namespace tessmar::test
