#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "base/MainScreen.h"
#include "base/MessageLoop.h"
#include "base/Messages.h"
#include "session/LiveLogger.h"
#include "session/PollLoop.h"
#include "session/Session.h"

namespace tessmar {

/// What the actions show that is made elsewhere. Each returns when it is over.
struct MainActionScreens {
  std::function<void()> GetHistory;           ///< Guards itself and holds Busy.
  std::function<void()> ShowSetup;            ///< Shows the setup screen until it is closed.
  std::function<void()> LoadLoggerImageFile;  ///< Needs no connection.
};

/// The operator's commands on the main window: its buttons, and the menu entries that repeat them.
///
/// An action that may not run (no session, Busy, continuous sampling) does nothing, silently. A
/// logger's failure is not reported: the operator sees the old values stay. Busy is cleared on
/// every path. What a question answers once the program is ending is not acted upon.
class MainActions {
 public:
  MainActions(const LiveLogger& logger, Session& session, PollLoop& pollLoop, MainScreen& screen,
              Messages& messages, MessageLoop& loop, MainActionScreens screens);

  void Connect();          ///< cmdConnect: connects, or disconnects when there is a session.
  void ConnectEntry();     ///< mnuConnect: only connects.
  void DisconnectEntry();  ///< mnuDisconnect: only disconnects.

  void SampleContinuouslyClicked();  ///< chkSampleContinuously; Timer1 starts and stops sampling.
  void SampleContinuouslyEntry();    ///< mnuSampleContinuously: flips the box in a session.

  void GetSample();
  void GetHistory();
  void ClearHistory();     ///< Asks first.
  void SynchronizeTime();  ///< Asks even when it may not run, and does nothing then.
  void Setup();
  void ResetPulseAccumulators();  ///< The shown totals fall to zero even if the logger failed.
  void LoadLoggerImageFile();
  void FirmwareVersion();  ///< Shows what the connection read; no logger traffic.

 private:
  void ReadStatusAndClock();

  LiveLogger logger_;
  LinkState& link_;
  Session& session_;
  PollLoop& pollLoop_;
  MainScreen& screen_;
  Messages& messages_;
  MessageLoop& loop_;
  MainActionScreens screens_;
};

}  // namespace tessmar
