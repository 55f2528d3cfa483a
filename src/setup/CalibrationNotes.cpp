#include "setup/CalibrationNotes.h"

#include <QStringList>
#include <algorithm>
#include <utility>

#include "base/Numbers.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"
#include "setup/SettingsChanges.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QByteArray Bytes(const ConfigImage& image) {
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

LoggerSettings Unpacked(const ConfigImage& image) {
  LinkState link;
  link.TrapErrors = true;
  link.AnalogChannelCount = kAnalogChannels;
  link.PulseChannelCount = kPulseChannels;
  LoggerSettings settings;
  UnpackConfigImage(link, image, settings);
  return settings;
}

/// "0 at 123, 100 at 60000": engineering values at raw counts.
QString ScaleText(const AnalogChannelSettings& channel) {
  return u"%1 at %2, %3 at %4"_s.arg(FormatInvariantNumber(channel.LowerLimit))
      .arg(channel.RawScaleLower)
      .arg(FormatInvariantNumber(channel.UpperLimit))
      .arg(channel.RawScaleUpper);
}

}  // namespace

LogbookEntry ProgrammedEntry(const ConfigImage& before, const ConfigImage& after) {
  if (before.empty())
    return {.Kind = EventKind::Programmed,
            .Text = u"the settings before could not be read"_s,
            .After = Bytes(after)};
  const std::size_t count = ChangesBetween(before, after).size();
  return {.Kind = EventKind::Programmed,
          .Text = count == 1 ? u"1 setting changed"_s : u"%1 settings changed"_s.arg(count),
          .Before = Bytes(before),
          .After = Bytes(after)};
}

void CalibrationNotes::Add(int channel, const Calibration::Texts& points) {
  std::erase_if(points_, [channel](const Point& point) { return point.Channel == channel; });
  points_.push_back({channel, points});
}

std::optional<LogbookEntry> CalibrationNotes::Take(const SetupControls& programmed,
                                                   const ConfigImage& before,
                                                   const ConfigImage& after) {
  std::vector<Point> points = std::exchange(points_, {});
  std::sort(points.begin(), points.end(),
            [](const Point& a, const Point& b) { return a.Channel < b.Channel; });
  const LoggerSettings old = Unpacked(before);
  const LoggerSettings now = Unpacked(after);
  QStringList lines;
  for (const auto& [channel, found] : points) {
    const auto place = static_cast<std::size_t>(channel);
    const AnalogColumnControls& column = programmed.Analog.at(place);
    const Calibration::Texts shown{column.txtHighEU, column.txtHighRaw, column.txtLowEU,
                                   column.txtLowRaw};
    if (shown != found) continue;
    const QString was = before.empty() ? u"unknown"_s : ScaleText(old.Analog.at(place));
    lines.append(u"Channel %1 (%2): %3; before: %4"_s.arg(channel + 1)
                     .arg(now.Analog.at(place).EngUnits, ScaleText(now.Analog.at(place)), was));
  }
  if (lines.isEmpty()) return std::nullopt;
  return LogbookEntry{.Kind = EventKind::Calibrated,
                      .Text = lines.join(u'\n'),
                      .Before = Bytes(before),
                      .After = Bytes(after)};
}

}  // namespace tessmar
