#include "archive/Calibrations.h"

#include <QHash>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <set>

#include "archive/RecordMaker.h"
#include "measure/Scaling.h"
#include "settings/config.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMoreDecimals = 2;
constexpr int kMostDecimals = 6;
constexpr int kCsvDigits = 10;
constexpr double kSecondsPerDay = 86400;

bool SameScale(const AnalogChannelSettings& a, const AnalogChannelSettings& b) {
  return a.LowerLimit == b.LowerLimit && a.UpperLimit == b.UpperLimit &&
         a.RawScaleLower == b.RawScaleLower && a.RawScaleUpper == b.RawScaleUpper;
}

/// The channels that an event names, from 0; one without a text those whose scale it changed.
std::set<int> ChannelsOf(const LogbookEntry& entry, const LoggerSettings& before,
                         const LoggerSettings& after) {
  static const QRegularExpression kLine(u"^Channel ([1-8]) \\("_s,
                                        QRegularExpression::MultilineOption);
  std::set<int> channels;
  QRegularExpressionMatchIterator lines = kLine.globalMatch(entry.Text);
  while (lines.hasNext()) channels.insert(lines.next().captured(1).toInt() - 1);
  if (!channels.empty()) return channels;
  for (std::size_t i = 0; i < after.Analog.size(); ++i)
    if (!SameScale(before.Analog[i], after.Analog[i])) channels.insert(static_cast<int>(i));
  return channels;
}

CalibrationPoint PointAt(double value, std::int32_t raw, const AnalogChannelSettings* before) {
  CalibrationPoint point{.Value = value, .Raw = raw, .OldScale = {}, .Drift = {}};
  if (before == nullptr) return point;
  point.OldScale = ScaleRaw(*before, raw);
  point.Drift = *point.OldScale - value;
  return point;
}

CalibrationRow RowOf(const EventRow& event, int channel, const AnalogChannelSettings& before,
                     const AnalogChannelSettings& after) {
  const bool comparable =
      before.EngUnits == after.EngUnits && before.RawScaleLower != before.RawScaleUpper;
  const AnalogChannelSettings* const old = comparable ? &before : nullptr;
  return {.At = event.At,
          .LoggerId = event.LoggerId,
          .Channel = channel + 1,
          .Unit = after.EngUnits,
          .Decimals = std::min<int>(after.DecPlaces, kMostDecimals),
          .Low = PointAt(after.LowerLimit, after.RawScaleLower, old),
          .High = PointAt(after.UpperLimit, after.RawScaleUpper, old),
          .DaysSince = {}};
}

QString Field(const QString& text) {
  static const QRegularExpression kSpecial(u"[\",\r\n]"_s);
  if (!text.contains(kSpecial)) return text;
  QString quoted = text;
  return u'"' + quoted.replace(u'"', u"\"\""_s) + u'"';
}

QString Number(const std::optional<double>& value) {
  // A sum of doubles: what lies behind the tenth digit says nothing.
  return value ? QString::number(*value + 0.0, 'g', kCsvDigits) : QString();
}

QStringList PointFields(const CalibrationPoint& point) {
  return {Number(point.Value), QString::number(point.Raw), Number(point.OldScale),
          Number(point.Drift)};
}

}  // namespace

std::vector<CalibrationRow> CalibrationsIn(const std::vector<EventRow>& events) {
  std::vector<CalibrationRow> rows;
  for (const EventRow& event : events) {
    const LogbookEntry& entry = event.Entry;
    // What was there before may not have been read.
    const bool hasBefore = entry.Before.isEmpty() || entry.Before.size() == kConfigImageSize;
    if (entry.Kind != EventKind::Calibrated || !hasBefore || entry.After.size() != kConfigImageSize)
      continue;
    const LoggerSettings before = SettingsOfImage(entry.Before, kAnalogChannels, kPulseChannels);
    const LoggerSettings after = SettingsOfImage(entry.After, kAnalogChannels, kPulseChannels);
    for (const int channel : ChannelsOf(entry, before, after)) {
      const auto place = static_cast<std::size_t>(channel);
      rows.push_back(RowOf(event, channel, before.Analog.at(place), after.Analog.at(place)));
    }
  }
  std::ranges::stable_sort(rows, std::ranges::less{}, &CalibrationRow::At);
  QHash<std::pair<qint64, int>, QDateTime> last;
  for (CalibrationRow& row : rows) {
    QDateTime& previous = last[{row.LoggerId, row.Channel}];
    if (previous.isValid())
      row.DaysSince = static_cast<double>(previous.secsTo(row.At)) / kSecondsPerDay;
    previous = row.At;
  }
  std::ranges::stable_sort(rows, std::ranges::greater{}, &CalibrationRow::At);
  return rows;
}

QString DriftText(const std::optional<double>& drift, int decimals) {
  if (!drift) return {};
  const QString text = FormatValue(*drift, std::min(decimals + kMoreDecimals, kMostDecimals));
  const bool isZero = std::ranges::none_of(text, [](QChar c) { return c >= u'1' && c <= u'9'; });
  return isZero || text.startsWith(u'-') ? text : u'+' + text;
}

QByteArray CalibrationsCsv(const std::vector<CalibrationRow>& rows,
                           const std::function<QString(qint64 logger)>& nameOf) {
  QString text =
      u"time,logger,channel,unit,low_point,low_raw,low_before,low_drift,"
      "high_point,high_raw,high_before,high_drift,days_since\r\n"_s;
  for (const CalibrationRow& row : rows) {
    QStringList fields{UtcText(row.At), Field(nameOf(row.LoggerId)), QString::number(row.Channel),
                       Field(row.Unit)};
    fields += PointFields(row.Low);
    fields += PointFields(row.High);
    fields.append(Number(row.DaysSince));
    text += fields.join(u',') + u"\r\n"_s;
  }
  return text.toUtf8();
}

}  // namespace tessmar
