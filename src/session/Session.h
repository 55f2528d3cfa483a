#pragma once

#include <QString>
#include <functional>

#include "base/MainScreen.h"
#include "base/MessageLoop.h"
#include "base/Messages.h"
#include "link/Comm.h"
#include "session/LiveLogger.h"
#include "session/PollLoop.h"

namespace tessmar {

/// What the first 8 bytes of a logger begin with once this program has initialised it. The
/// comparison is exact.
inline constexpr char16_t kIdentifierMark[] = u"TM2";

/// The identifier that this program gives a blank logger: the mark, a blank and the digits of the
/// program's version, 8 characters.
QString NewIdentifier();

/// The connect and disconnect action, and first contact with a logger.
///
/// A session ends only by a disconnect: there is no idle time-out, no keep-alive, and a silent
/// logger stays connected.
class Session {
 public:
  /// @param showConnectDialog  shows the connection dialog until it closes; success has set
  ///   Connected, with the port open.
  Session(const LiveLogger& logger, Comm& comm, PollLoop& pollLoop, MainScreen& screen,
          Messages& messages, MessageLoop& loop, std::function<void()> showConnectDialog);

  /// Connects, or disconnects when there is a session. Nothing happens while Busy or during
  /// continuous sampling.
  ///
  /// A logger without an identifier, or whose identifier cannot be read, is offered initialisation,
  /// which erases it. After any failure the port is closed and Connected is false. When the program
  /// ends in the middle the action just runs out, without a message.
  void Connect();

 private:
  enum class FirstContact { Ready, Abandoned, Failed };

  void ForgetLogger();
  void Leave();
  FirstContact MeetLogger();
  FirstContact InitializeLogger();
  bool InitializeMemory();
  void NoteConnected();

  LiveLogger logger_;
  LinkState& link_;
  Comm& comm_;
  PollLoop& pollLoop_;
  MainScreen& screen_;
  Messages& messages_;
  MessageLoop& loop_;
  std::function<void()> showConnectDialog_;
};

}  // namespace tessmar
