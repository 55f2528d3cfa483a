#include "SimulatorOptions.h"

#include <QCommandLineParser>
#include <algorithm>

namespace tessmar::sim {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMostRecords = 16777215;
constexpr int kLongestDelayMs = 600000;
constexpr qsizetype kLongestName = 32;

/// A wrong option; the text is for the operator.
class WrongOption {
 public:
  explicit WrongOption(const QString& text) : Text(text) {}
  QString Text;
};

QString TextOf(std::string_view text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

QList<QCommandLineOption> AllOptions() {
  return {
      {u"link"_s, u"Serve on a pseudo-terminal that PATH leads to."_s, u"PATH"_s},
      {u"image"_s, u"Write an image of the logger's flash to FILE and end."_s, u"FILE"_s},
      {u"records"_s, u"Stored records (960)."_s, u"N"_s},
      {u"live-records"_s, u"A record is added every 15 minutes."_s},
      {u"clock-stops-at"_s, u"From record N on (0 is the first) all are equal."_s, u"N"_s},
      {u"records-on-signal"_s, u"SIGUSR1 adds N records, with a sequence of times of their own."_s,
       u"N"_s},
      {u"analog"_s, u"Analog channels, 1 to 8 (8)."_s, u"N"_s},
      {u"pulse"_s, u"Pulse channels, 0 to 2 (2)."_s, u"N"_s},
      {u"model"_s, u"Model code, 0 to 255 (208)."_s, u"N"_s},
      {u"firmware"_s, u"Firmware version, 0 to 255 (21)."_s, u"N"_s},
      {u"sample-on-demand"_s, u"The logger can sample on demand."_s},
      {u"blank"_s, u"The flash was never initialized."_s},
      {u"past-handshake"_s, u"Deaf to the handshake letters; answers frames."_s},
      {u"name"_s, u"Name of the logger (Mill Pond 3)."_s, u"TEXT"_s},
      {u"clock"_s, u"\"yyyy-MM-dd HH:mm:ss\" on the logger's clock (now)."_s, u"TIME"_s},
      {u"twelve-hour"_s, u"The clock keeps 12-hour time."_s},
      {u"baud"_s, u"Throttle both directions to 10 bits a byte."_s, u"N"_s},
      {u"seed"_s, u"Choose the weather and the faults' luck (1)."_s, u"N"_s},
      {u"fault"_s, u"Fail in a way listed below; may be given several times."_s,
       u"NAME[@OPCODE][:COUNT|:RATE]"_s},
      {u"stuck-address"_s, u"Memory address that stuck-byte keeps (40)."_s, u"N"_s},
      {u"modem"_s, u"Put a modem ahead of the logger."_s},
      {u"modem-answer"_s, u"What the modem does, listed below (connect)."_s, u"NAME"_s},
      {u"modem-echo"_s, u"on or off (on)."_s, u"STATE"_s},
      {u"modem-delay"_s, u"Delay of the modem's answers (50)."_s, u"MS"_s},
      {u"modem-dial-time"_s, u"Time that dialling takes (2000)."_s, u"MS"_s},
      {u"modem-split"_s, u"The modem's answers come in pieces."_s},
      {{u"h"_s, u"help"_s}, u"Show this text."_s},
  };
}

/// Values of options, checked.
class OptionReader {
 public:
  explicit OptionReader(const QCommandLineParser& parser) : parser_(parser) {}

  bool Has(const QString& name) const { return parser_.isSet(name); }
  QString Text(const QString& name) const { return parser_.value(name); }

  int Number(const QString& name, int usual, int least, int most) const {
    if (!Has(name)) return usual;
    bool good = false;
    const qlonglong value = Text(name).toLongLong(&good);
    if (!good || value < least || value > most)
      throw WrongOption(u"--%1: a number from %2 to %3 is wanted, not \"%4\""_s.arg(name)
                            .arg(least)
                            .arg(most)
                            .arg(Text(name)));
    return static_cast<int>(value);
  }

  bool Switch(const QString& name, bool usual) const {
    if (!Has(name)) return usual;
    if (Text(name) == "on"_L1) return true;
    if (Text(name) == "off"_L1) return false;
    throw WrongOption(u"--%1: on or off is wanted, not \"%2\""_s.arg(name, Text(name)));
  }

 private:
  const QCommandLineParser& parser_;
};

std::string ReadName(const OptionReader& reader, const std::string& usual) {
  if (!reader.Has(u"name"_s)) return usual;
  const QString name = reader.Text(u"name"_s);
  const bool latin1 = std::ranges::all_of(name, [](QChar c) { return c.unicode() < 256; });
  if (!latin1 || name.size() > kLongestName)
    throw WrongOption(u"--name: up to 32 Latin-1 characters are wanted"_s);
  return name.toLatin1().toStdString();
}

CivilSeconds ReadClock(const OptionReader& reader, const QDateTime& now) {
  QDateTime clock = now;
  if (reader.Has(u"clock"_s)) {
    clock = QDateTime::fromString(reader.Text(u"clock"_s), u"yyyy-MM-dd HH:mm:ss"_s);
    if (!clock.isValid() || clock.date().year() < 2000 || clock.date().year() > 2099)
      throw WrongOption(u"--clock: a time from 2000 to 2099 is wanted, as 2026-06-15 14:30:00"_s);
  }
  const QDate date = clock.date();
  const QTime time = clock.time();
  return ToCivilSeconds(
      {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()});
}

LoggerOptions ReadLogger(const OptionReader& reader, const QDateTime& now) {
  LoggerOptions logger;
  logger.AnalogChannels = reader.Number(u"analog"_s, logger.AnalogChannels, 1, 8);
  logger.PulseChannels = reader.Number(u"pulse"_s, logger.PulseChannels, 0, 2);
  logger.Firmware = reader.Number(u"firmware"_s, logger.Firmware, 0, 255);
  logger.ModelCode = reader.Number(u"model"_s, logger.ModelCode, 0, 255);
  logger.SampleOnDemand = reader.Has(u"sample-on-demand"_s);
  logger.Records = reader.Number(u"records"_s, logger.Records, 0, kMostRecords);
  logger.LiveRecords = reader.Has(u"live-records"_s);
  logger.ClockStopsAt = reader.Number(u"clock-stops-at"_s, -1, 0, kMostRecords);
  logger.RecordsOnSignal = reader.Number(u"records-on-signal"_s, 0, 1, kMostRecords);
  logger.BlankFlash = reader.Has(u"blank"_s);
  logger.TwelveHourClock = reader.Has(u"twelve-hour"_s);
  logger.PastHandshake = reader.Has(u"past-handshake"_s);
  logger.BaudRate = reader.Number(u"baud"_s, 0, 300, 4'000'000);
  logger.Seed =
      static_cast<std::uint32_t>(reader.Number(u"seed"_s, 1, 0, std::numeric_limits<int>::max()));
  logger.Name = ReadName(reader, logger.Name);
  logger.ClockAtStart = ReadClock(reader, now);
  return logger;
}

std::vector<Fault> ReadFaults(const QStringList& texts) {
  std::vector<Fault> faults;
  for (const QString& text : texts) {
    const std::optional<Fault> fault = ParseFault(text.toStdString());
    if (!fault) throw WrongOption(u"--fault: \"%1\" is none; --help lists them"_s.arg(text));
    faults.push_back(*fault);
  }
  return faults;
}

ModemOptions ReadModem(const OptionReader& reader) {
  ModemOptions modem;
  if (reader.Has(u"modem-answer"_s)) {
    const std::string name = reader.Text(u"modem-answer"_s).toStdString();
    const auto known = std::ranges::find(ModemBehaviours(), name, &ModemBehaviourName::Name);
    if (known == ModemBehaviours().end())
      throw WrongOption(u"--modem-answer: \"%1\" is none; --help lists them"_s.arg(
          reader.Text(u"modem-answer"_s)));
    modem.Behaviour = known->Behaviour;
  }
  const auto delay = [&](const QString& name, Micros usual) {
    using std::chrono::milliseconds;
    const auto usualMs = std::chrono::duration_cast<milliseconds>(usual).count();
    return milliseconds(reader.Number(name, static_cast<int>(usualMs), 0, kLongestDelayMs));
  };
  modem.Echo = reader.Switch(u"modem-echo"_s, modem.Echo);
  modem.SplitReplies = reader.Has(u"modem-split"_s);
  modem.ReplyDelay = delay(u"modem-delay"_s, modem.ReplyDelay);
  modem.DialTime = delay(u"modem-dial-time"_s, modem.DialTime);
  return modem;
}

SimulatorOptions ReadOptions(const QCommandLineParser& parser, const QDateTime& now) {
  const OptionReader reader(parser);
  SimulatorOptions options;
  options.Help = reader.Has(u"help"_s);
  if (options.Help) return options;
  if (!parser.positionalArguments().isEmpty())
    throw WrongOption(u"\"%1\" is no option"_s.arg(parser.positionalArguments().constFirst()));
  options.Logger = ReadLogger(reader, now);
  options.Faults = ReadFaults(parser.values(u"fault"_s));
  if (reader.Has(u"stuck-address"_s))
    options.StuckAddress =
        static_cast<std::uint32_t>(reader.Number(u"stuck-address"_s, 0, 0, 65535));
  options.Modem = reader.Has(u"modem"_s);
  options.ModemSetup = ReadModem(reader);
  options.LinkPath = reader.Text(u"link"_s);
  options.ImagePath = reader.Text(u"image"_s);
  if (options.LinkPath.isEmpty() == options.ImagePath.isEmpty())
    throw WrongOption(u"either --link or --image is wanted"_s);
  return options;
}

}  // namespace

ParsedOptions ParseSimulatorOptions(const QStringList& arguments, const QDateTime& now) {
  QCommandLineParser parser;
  parser.addOptions(AllOptions());
  if (!parser.parse(arguments)) return {{}, parser.errorText()};
  try {
    return {ReadOptions(parser, now), {}};
  } catch (const WrongOption& wrong) {
    return {{}, wrong.Text};
  }
}

QString SimulatorHelp() {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      u"A simulated logger at a pond, for programs to connect to.\n"
      u"It serves until it gets SIGINT or SIGTERM."_s);
  parser.addOptions(AllOptions());
  QString text = parser.helpText();
  text += u"\nFaults, for the next COUNT requests, at a RATE such as 0.05, or for good:\n"_s;
  for (const FailureModeName& mode : FailureModes())
    text += u"  %1 %2\n"_s.arg(TextOf(mode.Name), -20).arg(TextOf(mode.Meaning));
  text += u"\nAnswers of the modem:\n"_s;
  for (const ModemBehaviourName& behaviour : ModemBehaviours())
    text += u"  %1 %2\n"_s.arg(TextOf(behaviour.Name), -20).arg(TextOf(behaviour.Meaning));
  return text;
}

}  // namespace tessmar::sim
