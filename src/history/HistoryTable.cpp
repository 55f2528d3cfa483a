#include "history/HistoryTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

#include "base/Fault.h"
#include "base/TextTable.h"
#include "measure/DerivedChannels.h"
#include "measure/RelayVoltage.h"
#include "measure/Sample.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Kind = HistoryColumn::Kind;

constexpr int kRelayChannel = 1;
constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();
constexpr std::int32_t kProgressStep = 4096;

int Write(char* out, std::string_view text) {
  std::copy(text.begin(), text.end(), out);
  return static_cast<int>(text.size());
}

/// The text of a cell as it was in the record before.
struct LastCell {
  std::array<char, HistoryTable::kCellSize> Text{};
  int Length = 0;

  // Gives true when the text was another one.
  bool Replace(const char* text, int length) {
    if (length == Length && std::memcmp(text, Text.data(), static_cast<std::size_t>(length)) == 0)
      return false;
    std::copy_n(text, length, Text.begin());
    Length = length;
    return true;
  }
};

}  // namespace

HistoryTable::HistoryTable(const HistoryBuffer& buffer, const LoggerSettings& settings,
                           const LinkState& link, bool showRelays, const SystemLocale& locale)
    : buffer_(buffer),
      settings_(settings),
      analogChannelCount_(link.AnalogChannelCount),
      pulseChannelCount_(link.PulseChannelCount),
      locale_(locale) {
  AddColumns(showRelays);
}

void HistoryTable::AddColumns(bool showRelays) {
  columns_.push_back({.Content = Kind::DateTime,
                      .Key = u"DateTime"_s,
                      .Heading = GetText(TextId::Date) + u" / "_s + GetText(TextId::Time),
                      .WidthTwips = 1500});
  for (int channel = 0; channel < analogChannelCount_; ++channel) {
    if (settings_.Analog[static_cast<std::size_t>(channel)].Enable == 0) continue;
    const bool own = QuantityShown(settings_.Do, channel) == ShownQuantity::OwnReading;
    AddChannel(Kind::Analog, channel, channel, channel, 1200, own);
  }
  for (int relay = 0; showRelays && relay < kRelayCount; ++relay) {
    columns_.push_back({.Content = Kind::Relay,
                        .Channel = relay,
                        .Heading = u"Relay %1"_s.arg(relay + 1),
                        .WidthTwips = 950,
                        .Centred = true});
  }
  for (int channel = 0; channel < pulseChannelCount_; ++channel) {
    if (settings_.Pulse[static_cast<std::size_t>(channel)].Enable == 0) continue;
    AddChannel(Kind::Pulse, channel, kAnalogChannels + channel, analogChannelCount_ + channel, 1440,
               true);
  }
}

// entry is the channel's place in the sequence of units and decimals, word the one in a record.
void HistoryTable::AddChannel(Kind kind, int channel, int entry, int word, int widthTwips,
                              bool ownReading) {
  columns_.push_back({.Content = kind,
                      .Channel = channel,
                      .Heading = settings_.EngUnits(entry),
                      .WidthTwips = widthTwips,
                      .Centred = true,
                      .Decimals = settings_.DecPlaces(entry),
                      .Word = word,
                      .OwnReading = ownReading});
}

// Done for each cell. Compiled as a part of a library, only what is inline becomes a part of its
// caller.
inline const HistoryColumn& HistoryTable::ColumnAt(int column) const {
  if (column < 0 || column >= ColumnCount()) throw RangeFault("no such column in the table");
  return columns_[static_cast<std::size_t>(column)];
}

inline double HistoryTable::ValueOf(const LiveSample& record, const HistoryColumn& content) const {
  const auto channel = static_cast<std::size_t>(content.Channel);
  double value = kNoValue;
  switch (content.Content) {
    case Kind::DateTime:
    case Kind::Relay:
      throw RangeFault("not a column of numbers");
    case Kind::Analog:
      value = content.OwnReading ? ScaleRaw(settings_.Analog[channel], record.Value[channel])
                                 : DerivedValue(record, content);
      break;
    case Kind::Pulse:
      value =
          record.Value[static_cast<std::size_t>(content.Word)] * settings_.Pulse[channel].PulseUnit;
      break;
  }
  return std::isfinite(value) ? value : kNoValue;
}

void HistoryTable::Pack(const Progress& progress) {
  packed_ = true;
  packedRows_.clear();
  std::vector<LastCell> cells(columns_.size());
  std::array<char, kCellSize> text;
  for (std::int32_t r = 0; r < buffer_.Count(); ++r) {
    if (r % kProgressStep == 0) progress(r);
    const LiveSample& record = buffer_.Record(r);
    bool changed = false;
    for (int column = 1; column < ColumnCount(); ++column) {
      const auto place = static_cast<std::size_t>(column);
      if (r > 0 && SameSources(columns_[place], record, buffer_.Record(r - 1))) continue;
      const int length = WriteCell(text.data(), record, column);
      if (cells[place].Replace(text.data(), length)) changed = true;
    }
    if (changed) packedRows_.push_back(static_cast<std::uint32_t>(r));
  }
}

std::int32_t HistoryTable::RowCount() const {
  return packed_ ? static_cast<std::int32_t>(packedRows_.size()) : buffer_.Count();
}

const HistoryColumn& HistoryTable::Column(int column) const {
  return ColumnAt(column);
}

const LiveSample& HistoryTable::Record(std::int32_t row) const {
  if (!packed_) return buffer_.Record(row);
  if (row < 0 || row >= RowCount()) throw RangeFault("no such row in the table");
  return buffer_.Record(static_cast<std::int32_t>(packedRows_[static_cast<std::size_t>(row)]));
}

QString HistoryTable::CellText(std::int32_t row, int column) const {
  const LiveSample& record = Record(row);
  if (Column(column).Content == Kind::DateTime) return TimeText(record, locale_);
  std::array<char, kCellSize> text;
  const int length = WriteCell(text.data(), record, column);
  return QString::fromLatin1(text.data(), length);
}

int HistoryTable::WriteCell(char* out, const LiveSample& record, int column) const {
  const HistoryColumn& content = ColumnAt(column);
  if (content.Content == Kind::Relay) return WriteRelay(out, record, content.Channel);
  return FormatValueTo(out, ValueOf(record, content), content.Decimals);
}

double HistoryTable::CellValue(const LiveSample& record, int column) const {
  return ValueOf(record, Column(column));
}

std::int32_t HistoryTable::RowOf(std::int32_t record) const {
  if (record < 0 || record >= buffer_.Count()) return -1;
  if (!packed_) return record;
  const auto above =
      std::upper_bound(packedRows_.begin(), packedRows_.end(), static_cast<std::uint32_t>(record));
  return static_cast<std::int32_t>(above - packedRows_.begin()) - 1;
}

double HistoryTable::DerivedValue(const LiveSample& record, const HistoryColumn& column) const {
  // What counts as available here is Enable alone: a channel that is enabled but that the logger
  // does not have reads 0.
  std::array<ChannelReading, kAnalogChannels> readings;
  for (int source = 0; source < kAnalogChannels; ++source) {
    const auto place = static_cast<std::size_t>(source);
    readings[place] = {ChannelValue(record, source), settings_.Analog[place].Enable != 0};
  }
  try {
    const ChannelReading shown = ShownReading(settings_.Do, column.Channel, readings);
    return shown.Available ? shown.Value : kNoValue;
  } catch (const Fault&) {
    // A cell is made while the table is painted, where a fault has nowhere to go.
    return kNoValue;
  }
}

int HistoryTable::WriteRelay(char* out, const LiveSample& record, int relay) const {
  const QByteArray text =
      RelayCellText(ChannelValue(record, kRelayChannel), static_cast<std::int16_t>(relay))
          .toLatin1();
  return Write(out, {text.data(), static_cast<std::size_t>(text.size())});
}

// 0 for a channel that is disabled or that the logger does not have.
double HistoryTable::ChannelValue(const LiveSample& record, int channel) const {
  const auto place = static_cast<std::size_t>(channel);
  const AnalogChannelSettings& settings = settings_.Analog[place];
  if (channel >= analogChannelCount_ || settings.Enable == 0) return 0;
  return ScaleRaw(settings, record.Value[place]);
}

// Equal words give equal texts, so that most cells of a steady history need not be made to be
// compared.
bool HistoryTable::SameSources(const HistoryColumn& column, const LiveSample& a,
                               const LiveSample& b) const {
  if (!column.OwnReading) return a.Value == b.Value;
  const auto word = static_cast<std::size_t>(column.Word);
  return a.Value[word] == b.Value[word];
}

}  // namespace tessmar
