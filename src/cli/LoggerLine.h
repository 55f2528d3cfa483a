#pragma once

#include <QDateTime>
#include <QString>
#include <memory>
#include <optional>

#include "archive/Journal.h"
#include "cli/CommandEnvironment.h"
#include "cli/CommandOptions.h"
#include "cli/JsonLine.h"
#include "cli/QuietScreen.h"
#include "link/Comm.h"
#include "link/cmd.h"
#include "measure/LiveDisplay.h"
#include "session/PollLoop.h"
#include "setup/Programming.h"

namespace tessmar {

/// True when an operand names a port: a COM name, or the path of a device.
bool NamesAPort(const QString& operand);

/// A logger on the line of one command: the port is open, the logger has shaken hands, its
/// identifier, settings, status and clock were read, and the logbook knows of the connection. The
/// port is closed when this dies, and what the archive is to keep is in it then; where it is not,
/// the operator was told.
class LoggerLine {
 public:
  /// Connects. Throws CommandFailure with the cause when that fails.
  LoggerLine(CommandEnvironment& environment, const QString& port, const CommandOptions& options);
  ~LoggerLine();
  LoggerLine(const LoggerLine&) = delete;
  LoggerLine& operator=(const LoggerLine&) = delete;

  const QString& PortName() const { return name_; }
  /// The configuration as it was read.
  const ConfigImage& Image() const { return image_; }
  /// The settings as they would be programmed.
  ConfigImage PackedSettings() const;
  /// What the logger's clock showed, without a time zone; nothing when it was not to be read.
  const std::optional<QDateTime>& ClockTime() const { return clock_; }
  /// Logger minus computer in seconds; positive is fast.
  const std::optional<std::int32_t>& ClockOffset() const { return Link.ClockOffsetS; }

  /// Reads status and clock anew. @return false when the status could not be read.
  bool ReadStatus();
  void ReadClock();

  /// The failure of an operation on this line: that the device is gone or that the command was
  /// broken off, when one of these is why, or else the given text.
  CommandFailure Failure(const TwoLanguages& text) const;

  /// Tells the logbook what was done to the logger.
  void Note(const LogbookEntry& entry);
  /// Writes what the archive is to keep, and waits for another program that has it locked, 5 s at
  /// most.
  void KeepAll();

  /// Puts name, model, firmware, analog and pulse into an object.
  void Describe(JsonLine& json) const;

  LinkState Link;
  LoggerSettings Settings;
  LiveRing Ring;
  QuietScreen Screen;

 private:
  QString Device() const;
  void Open(int baud);
  void ShakeHands();
  void ReadIdentifier();
  void ReadEverything();
  void TellOfLogbook();
  void Leave();

  CommandEnvironment& environment_;
  QString name_;
  PortMap ports_;
  std::int16_t number_ = 0;
  std::shared_ptr<SerialPort> port_;
  ConfigImage image_;
  std::optional<QDateTime> clock_;
  ConnectionWords words_;
  bool isKept_ = false;
  bool isChanged_ = false;  ///< The logbook was told of more than the connection.

 public:
  Comm Line;
  LoggerCommands Commands;
  LiveDisplay Display;
  Programming Programmer;
  Journal Archive;
  PollLoop Poll;
};

/// A time as the archive writes it: ISO 8601, of the computer's clock in UTC with "Z".
QString IsoUtc(const QDateTime& time);
/// The same of a logger's clock, bare.
QString IsoBare(const QDateTime& time);

}  // namespace tessmar
