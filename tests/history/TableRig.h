#pragma once

#include <QLocale>
#include <initializer_list>

#include "base/SystemLocale.h"
#include "history/HistoryBuffer.h"
#include "history/HistoryTable.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar::test {

/// 26 December 2010, 15:47:29.
inline constexpr std::uint32_t kStamp = 0x20F4FBDD;
/// One minute in a packed time stamp.
inline constexpr std::uint32_t kMinute = 64;

inline SystemLocale American() {
  return SystemLocale(QLocale(QLocale::English, QLocale::UnitedStates));
}
inline SystemLocale German() {
  return SystemLocale(QLocale(QLocale::German, QLocale::Germany));
}

/// Records, settings and channel counts to build tables from.
struct TableRig {
  TableRig(int analog, int pulse) {
    Link.TrapErrors = true;
    Link.AnalogChannelCount = static_cast<std::int16_t>(analog);
    Link.PulseChannelCount = static_cast<std::int16_t>(pulse);
  }

  /// Enables an analog channel that shows its raw word divided by 100.
  void EnableAnalog(std::size_t channel, const QString& units, int decimals = 2) {
    AnalogChannelSettings& settings = Settings.Analog[channel];
    settings.Enable = 1;
    settings.EngUnits = units;
    settings.DecPlaces = static_cast<std::uint8_t>(decimals);
    settings.RawScaleLower = 0;
    settings.RawScaleUpper = 10000;
    settings.LowerLimit = 0;
    settings.UpperLimit = 100;
  }
  void EnablePulse(std::size_t channel, const QString& units, double unit, int decimals) {
    PulseChannelSettings& settings = Settings.Pulse[channel];
    settings.Enable = 1;
    settings.EngUnits = units;
    settings.PulseUnit = unit;
    settings.DecPlaces = static_cast<std::uint8_t>(decimals);
  }

  void Add(std::uint32_t time, std::initializer_list<std::int32_t> words) {
    LiveSample record;
    record.PackedTime = time;
    record.HasTime = true;
    std::copy(words.begin(), words.end(), record.Value.begin());
    Buffer.Append(record);
  }

  HistoryTable Table(bool relays = false) const {
    return HistoryTable(Buffer, Settings, Link, relays, Locale);
  }
  HistoryTable PackedTable() const {
    HistoryTable table = Table();
    table.Pack([](std::int32_t) {});
    return table;
  }

  LinkState Link;
  LoggerSettings Settings;
  HistoryBuffer Buffer;
  SystemLocale Locale = American();
};

/// All cells of a row.
inline QStringList Row(const HistoryTable& table, std::int32_t row) {
  QStringList cells;
  for (int column = 0; column < table.ColumnCount(); ++column)
    cells.append(table.CellText(row, column));
  return cells;
}

inline QStringList Headings(const HistoryTable& table) {
  QStringList headings;
  for (int column = 0; column < table.ColumnCount(); ++column)
    headings.append(table.Column(column).Heading);
  return headings;
}

}  // namespace tessmar::test
