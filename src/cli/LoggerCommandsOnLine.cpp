// ports, status, sample, clock, clear.

#include <algorithm>
#include <vector>

#include "base/TextTable.h"
#include "cli/Commands.h"
#include "cli/LoggerLine.h"
#include "link/enumerate.h"
#include "measure/Scaling.h"
#include "session/LogbookEntries.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// The time that a clock may be off after it was set, in seconds: one for the second that is cut
/// off, one for the way there and back.
constexpr qint64 kClockTolerance = 2;
constexpr qint64 kMsPerTick = 100;
/// Half a second: Ctrl-C is looked for between two waits.
constexpr qint64 kLongestWaitTicks = 5;

void Row(Output& out, const TwoLanguages& name, const QString& value) {
  constexpr qsizetype kWidth = 16;
  out.Data((name.Text() + u':').leftJustified(kWidth) + u' ' + value);
}

QString OffsetText(const std::optional<qint64>& offset) {
  if (!offset) return {};
  if (*offset == 0) return TwoLanguages{u"right", u"geht richtig"}.Text();
  const TwoLanguages words = *offset > 0 ? TwoLanguages{u"%1 s fast", u"%1 s vor"}
                                         : TwoLanguages{u"%1 s slow", u"%1 s nach"};
  return words.Text().arg(std::abs(*offset));
}

void AddClock(JsonLine& json, const LoggerLine& logger) {
  if (logger.ClockTime()) {
    json.Text("logger_time", IsoBare(*logger.ClockTime()));
  } else {
    json.Null("logger_time");
  }
  if (logger.ClockOffset()) {
    json.Number("clock_offset_s", *logger.ClockOffset());
  } else {
    json.Null("clock_offset_s");
  }
}

QString ClockText(const LoggerLine& logger) {
  if (!logger.ClockTime()) return TwoLanguages{u"not readable", u"nicht lesbar"}.Text();
  return IsoBare(*logger.ClockTime()) + u" ("_s + OffsetText(logger.ClockOffset()) + u')';
}

/// One line of a sample: of a channel that is switched on.
struct SampleField {
  QString Key;    ///< "a1" to "a8", "p1", "p2".
  QString Value;  ///< With the channel's decimals; empty for no sample.
  QString Unit;
};

std::vector<SampleField> SampleFields(const LoggerLine& logger) {
  std::vector<SampleField> fields;
  const bool any = logger.Ring.Count > 0;
  for (int channel = 0; channel < logger.Link.AnalogChannelCount; ++channel) {
    const AnalogChannelSettings& analog = logger.Settings.Analog[static_cast<std::size_t>(channel)];
    if (analog.Enable == 0) continue;
    const ChannelView& view = logger.Display.View(channel);
    const bool valid = any && view.ShownValid[0];
    fields.push_back({u"a%1"_s.arg(channel + 1),
                      valid ? FormatValue(view.Shown[0], analog.DecPlaces) : QString(),
                      analog.EngUnits});
  }
  for (int channel = 0; channel < logger.Link.PulseChannelCount; ++channel) {
    const PulseChannelSettings& pulse = logger.Settings.Pulse[static_cast<std::size_t>(channel)];
    if (pulse.Enable == 0) continue;
    fields.push_back({u"p%1"_s.arg(channel + 1),
                      any ? logger.Display.PulseValueText(channel) : QString(), pulse.EngUnits});
  }
  return fields;
}

void ShowSample(CommandEnvironment& environment, const CommandOptions& options,
                const LoggerLine& logger) {
  const std::vector<SampleField> fields = SampleFields(logger);
  const QString time = IsoUtc(environment.Time.Now());
  if (options.Json) {
    JsonLine json;
    json.Text("name", logger.Settings.LoggerName).Text("at", time);
    for (const SampleField& field : fields)
      json.Written(field.Key.toLatin1().constData(), field.Value);
    environment.Out.Data(json.Line());
    return;
  }
  QString line = time;
  for (const SampleField& field : fields) {
    const QString value = field.Value.isEmpty() ? GetText(TextId::NoSample) : field.Value;
    line += u"  "_s + field.Key + u' ' + value + u' ' + field.Unit;
  }
  environment.Out.Data(line.trimmed());
}

/// Waits on the line until a time of the computer's clock. @return false when that ended early.
bool WaitUntil(CommandEnvironment& environment, LoggerLine& logger, qint64 dueMs) {
  while (!environment.StopWanted() && !environment.Loop.Ending() && logger.Line.IsPortOpen()) {
    const qint64 left = dueMs - environment.Time.Now().toMSecsSinceEpoch();
    if (left <= 0) return true;
    const qint64 ticks = std::clamp(left / kMsPerTick, qint64{1}, kLongestWaitTicks);
    logger.Line.WaitForBytes(static_cast<std::int16_t>(ticks), 0);
  }
  return false;
}

}  // namespace

CommandStatus RunPorts(CommandEnvironment& environment, const CommandOptions& options) {
  for (const NamedPort& port : ListPorts(environment.Ports)) {
    if (options.Json) {
      JsonLine json;
      if (port.Port.isEmpty()) {
        json.Null("port");
      } else {
        json.Text("port", port.Port);
      }
      json.Text("device", port.Device).Text("name", port.Name);
      environment.Out.Data(json.Line());
      continue;
    }
    const QString name = port.Port.isEmpty() ? u"-"_s : port.Port;
    environment.Out.Data(u"%1  %2  %3"_s.arg(name, -6).arg(port.Device, port.Name).trimmed());
  }
  return kCommandDone;
}

CommandStatus RunStatus(CommandEnvironment& environment, const CommandOptions& options) {
  const LoggerLine logger(environment, options.Operands[0], options);
  Output& out = environment.Out;
  if (options.Json) {
    JsonLine json;
    json.Text("port", logger.PortName());
    logger.Describe(json);
    json.Number("records", logger.Link.RecordCount)
        .Flag("logging", IsLogging(logger.Link.LoggerStatusWord))
        .Number("status", logger.Link.LoggerStatusWord);
    AddClock(json, logger);
    json.Text("interval", logger.Settings.SampleInterval);
    out.Data(json.Line());
    return kCommandDone;
  }
  Row(out, {u"Name", u"Name"}, logger.Settings.LoggerName);
  Row(out, {u"Model", u"Modell"}, QString::number(logger.Link.LoggerModelCode));
  Row(out, {u"Firmware", u"Firmware"}, QString::number(logger.Link.FirmwareVersion));
  Row(out, {u"Channels", u"Kanäle"},
      TwoLanguages{u"%1 analog, %2 pulse", u"%1 analog, %2 Impuls"}
          .Text()
          .arg(logger.Link.AnalogChannelCount)
          .arg(logger.Link.PulseChannelCount));
  Row(out, {u"Records", u"Datensätze"}, QString::number(logger.Link.RecordCount));
  Row(out, {u"State", u"Zustand"}, logger.Link.LoggingStateText);
  Row(out, {u"Interval", u"Intervall"}, logger.Screen.Caption(u"lblSampleInterval"_s));
  Row(out, {u"Clock", u"Uhr"}, ClockText(logger));
  return kCommandDone;
}

CommandStatus RunSample(CommandEnvironment& environment, const CommandOptions& options) {
  LoggerLine logger(environment, options.Operands[0], options);
  const bool again = options.Every.has_value() || options.Count.has_value();
  const int count = again ? options.Count.value_or(0) : 1;
  const qint64 everyMs = options.Every.value_or(0) * qint64{1000};
  qint64 due = environment.Time.Now().toMSecsSinceEpoch();
  for (int taken = 0; count == 0 || taken < count; ++taken) {
    if (taken > 0 && !WaitUntil(environment, logger, due)) break;
    if (!logger.Poll.AwaitSample()) {
      if (environment.StopWanted()) break;
      throw logger.Failure({u"no sample came; check the cable and try again",
                            u"kein Messwert kam; Kabel prüfen und neu versuchen"});
    }
    ShowSample(environment, options, logger);
    due += everyMs;
  }
  if (!logger.Line.IsPortOpen()) throw logger.Failure({u"", u""});
  // Without a count, being broken off is how it ends.
  const bool brokenOff = environment.StopWanted() && count != 0;
  if (brokenOff) throw logger.Failure({u"", u""});
  return kCommandDone;
}

CommandStatus RunClock(CommandEnvironment& environment, const CommandOptions& options) {
  LoggerLine logger(environment, options.Operands[0], options);
  if (options.Sync) {
    const std::optional<std::int32_t> before = logger.ClockOffset();
    // What the clock shows afterwards counts, and not the answer, which may be lost on its way.
    logger.Commands.SetLoggerTime(logger.Commands.ClockText());
    logger.ReadClock();
    if (!logger.ClockOffset() || std::abs(*logger.ClockOffset()) > kClockTolerance)
      throw logger.Failure({u"the clock was not set, or it cannot be proved; try again",
                            u"die Uhr wurde nicht gestellt oder es ist nicht zu belegen; neu "
                            u"versuchen"});
    logger.Note(SyncedEntry(before, logger.ClockOffset()));
  }
  if (!logger.ClockTime())
    throw logger.Failure(
        {u"the clock could not be read; try again", u"die Uhr ist nicht lesbar; neu versuchen"});
  if (options.Json) {
    JsonLine json;
    json.Text("port", logger.PortName()).Text("name", logger.Settings.LoggerName);
    AddClock(json, logger);
    json.Flag("synced", options.Sync);
    environment.Out.Data(json.Line());
    return kCommandDone;
  }
  environment.Out.Data(ClockText(logger));
  return kCommandDone;
}

CommandStatus RunClear(CommandEnvironment& environment, const CommandOptions& options) {
  LoggerLine logger(environment, options.Operands[0], options);
  const std::int32_t before = logger.Link.RecordCount;
  const bool answered = logger.Commands.ClearHistory();
  // The answer may be lost where the logger did what it was told; its status then tells.
  const bool read = logger.ReadStatus();
  const std::int32_t after = logger.Link.RecordCount;
  const bool cleared = answered || (read && (after < before || after == 0));
  if (!cleared)
    throw logger.Failure(
        {u"the records were not erased, or it cannot be proved; look at the status",
         u"die Datensätze wurden nicht gelöscht oder es ist nicht zu belegen; "
         u"Zustand ansehen"});
  logger.Note(ClearedEntry(before));
  if (options.Json) {
    JsonLine json;
    json.Text("port", logger.PortName())
        .Text("name", logger.Settings.LoggerName)
        .Number("cleared", before);
    if (read) {
      json.Number("records", logger.Link.RecordCount);
    } else {
      json.Null("records");
    }
    environment.Out.Data(json.Line());
    return kCommandDone;
  }
  environment.Out.Data(
      TwoLanguages{u"%1 records erased", u"%1 Datensätze gelöscht"}.Text().arg(before));
  return kCommandDone;
}

}  // namespace tessmar
