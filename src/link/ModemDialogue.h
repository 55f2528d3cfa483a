#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "base/MainScreen.h"
#include "link/Comm.h"
#include "link/LinkState.h"
#include "link/ModemConnection.h"

namespace tessmar {

/// The dialogue with a modem in clear text: its commands one after the other, then dialling.
///
/// It does something only in Tick, which is called every tenth of a second. A command without an
/// "OK" is sent again and again, and a modem that does not get through is listened to without an
/// end: that is the operator's to cancel. A tick waits for replies, and runs the message loop for
/// that.
class ModemDialogue {
 public:
  /// What shows the dialogue.
  struct Window {
    std::function<void(const QString& text)> Append;
    std::function<void(Rgb colour)> SetTextColour;
    std::function<void()> Hide;  ///< The dialogue has ended; see Result.
  };

  ModemDialogue(Comm& comm, LinkState& link, QStringList commands, QString number, Window window);

  /// Prepares the line and the window. Throws PortFault when the port is closed.
  void Start();
  void Tick();
  /// Ends the dialogue at its next check, with the result Cancel.
  void Cancel();

  ModemResult Result() const { return result_; }

 private:
  enum class Next { Tick, End };

  Next Advance();
  Next SendCommand();
  Next Dial();
  void SendLine(const QString& line);
  QString ReadReply(std::int16_t ticks);
  void Pause(std::int16_t ticks);
  void RunLoop();
  QString TakeArrived();
  bool IsStopped() const;

  Comm& comm_;
  LinkState& link_;
  QStringList commands_;
  QString number_;
  Window window_;

  ModemResult result_ = ModemResult::Error;
  qsizetype nextCommand_ = 0;
  bool isCancelled_ = false;
  bool isTicking_ = false;  ///< Stays set once the dialogue has ended.
};

}  // namespace tessmar
