#include "archive/RecordMaker.h"

#include "measure/DerivedChannels.h"
#include "measure/DerivedMethod.h"
#include "measure/Scaling.h"
#include "settings/config.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Kind = HistoryColumn::Kind;

constexpr int kDateShift = 17;

LinkState LinkOf(int analog, int pulse) {
  LinkState link;
  // A cut record is one without a time, not the end of all the others.
  link.TrapErrors = true;
  link.AnalogChannelCount = static_cast<std::int16_t>(analog);
  link.PulseChannelCount = static_cast<std::int16_t>(pulse);
  return link;
}

QString QuantityName(ShownQuantity quantity, int channel) {
  switch (quantity) {
    case ShownQuantity::Salinity:
      return u"Salinity"_s;
    case ShownQuantity::Saturation:
      return u"Oxygen saturation"_s;
    case ShownQuantity::Concentration:
      return u"Oxygen concentration"_s;
    case ShownQuantity::OwnReading:
      break;
  }
  return u"Channel %1"_s.arg(channel + 1);
}

int PlaceOf(const HistoryColumn& column) {
  return column.Content == Kind::Pulse ? kAnalogChannels + column.Channel : column.Channel;
}

void AppendTwoDigits(QString& text, char before, int value) {
  text.append(QLatin1Char(before));
  text.append(QLatin1Char(static_cast<char>('0' + value / 10)));
  text.append(QLatin1Char(static_cast<char>('0' + value % 10)));
}

}  // namespace

RecordMaker::RecordMaker(const LoggerSettings& settings, int analog, int pulse)
    : link_(LinkOf(analog, pulse)),
      settings_(settings),
      locale_(QLocale::c()),
      none_(0),
      table_(none_, settings_, link_, false, locale_),
      words_(analog + pulse),
      recordSize_(RecordSize(analog, pulse)) {}

std::vector<ChannelRow> RecordMaker::Channels() const {
  std::vector<ChannelRow> channels;
  for (int i = 1; i < table_.ColumnCount(); ++i) {
    const HistoryColumn& column = table_.Column(i);
    const bool pulse = column.Content == Kind::Pulse;
    channels.push_back(
        {.Place = PlaceOf(column),
         .Name = pulse ? u"Pulse %1"_s.arg(column.Channel + 1)
                       : QuantityName(QuantityShown(settings_.Do, column.Channel), column.Channel),
         .Unit = column.Heading,
         .Decimals = column.Decimals,
         .Method = pulse ? QString() : MethodText(settings_, column.Channel)});
  }
  return channels;
}

int RecordMaker::CountOf(std::span<const std::uint8_t> block) const {
  return RecordsOfBlock(block, link_.AnalogChannelCount, link_.PulseChannelCount);
}

void RecordMaker::Make(std::span<const std::uint8_t> block, int index, RecordRow& row) {
  LiveSample record;
  DecodeRecord(link_, block, index * recordSize_ + 1, words_, record);
  row.Stamp.reset();
  row.LoggerTime.clear();
  if (record.HasTime) {
    row.Stamp = record.PackedTime;
    row.LoggerTime = TimeOf(record.PackedTime);
  }
  row.Raw.resize(qsizetype{2} * words_);
  for (int word = 0; word < words_; ++word) {
    const std::int32_t value = record.Value[static_cast<std::size_t>(word)];
    row.Raw[qsizetype{2} * word] = static_cast<char>(value & 0xFF);
    row.Raw[qsizetype{2} * word + 1] = static_cast<char>(value >> 8 & 0xFF);
  }
  row.Values.fill(std::nullopt);
  for (int i = 1; i < table_.ColumnCount(); ++i)
    row.Values[static_cast<std::size_t>(PlaceOf(table_.Column(i)))] = ShownValue(record, i);
}

std::optional<double> RecordMaker::ShownValue(const LiveSample& record, int channel) const {
  return ShownNumber(table_.CellValue(record, channel), table_.Column(channel).Decimals);
}

// Only the date is carried over, the time is shown as it is stored: as the table does it.
QString RecordMaker::TimeOf(std::uint32_t stamp) {
  const TimeStampFields fields = UnpackTimeStamp(stamp);
  if (dateText_.isEmpty() || stamp >> kDateShift != date_) {
    date_ = stamp >> kDateShift;
    dateText_ = CarriedDate(fields.Year, fields.Month, fields.Day).toString(Qt::ISODate);
  }
  QString text;
  text.reserve(dateText_.size() + 9);
  text.append(dateText_);
  AppendTwoDigits(text, 'T', fields.Hour);
  AppendTwoDigits(text, ':', fields.Minute);
  AppendTwoDigits(text, ':', fields.Second);
  return text;
}

int RecordsOfBlock(std::span<const std::uint8_t> block, int analog, int pulse) {
  const int size = RecordSize(analog, pulse);
  if (block.empty() || block[0] > RecordsPerArea(size)) return 0;
  return block[0];
}

LoggerSettings SettingsOfImage(const QByteArray& image, int analog, int pulse) {
  LoggerSettings settings;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(image.constData());
  UnpackConfigImage(LinkOf(analog, pulse), {bytes, static_cast<std::size_t>(image.size())},
                    settings);
  return settings;
}

}  // namespace tessmar
