#include "history/TableSeries.h"

#include <limits>

#include "measure/StampTime.h"

namespace tessmar {
namespace {

using Kind = HistoryColumn::Kind;

QString PlaceOf(const HistoryColumn& column) {
  return (column.Content == Kind::Pulse ? QLatin1Char('p') : QLatin1Char('a')) +
         QString::number(column.Channel + 1);
}

Series SeriesOfColumn(const HistoryTable& table, int column) {
  const HistoryColumn& content = table.Column(column);
  Series series{.Place = PlaceOf(content),
                .Unit = content.Heading,
                .Decimals = content.Decimals,
                .Values = {}};
  const std::int32_t count = table.Records().Count();
  series.Values.reserve(static_cast<std::size_t>(count));
  for (std::int32_t record = 0; record < count; ++record)
    series.Values.push_back(table.CellValue(table.Records().Record(record), column));
  return series;
}

}  // namespace

SeriesSet SeriesOf(const HistoryTable& table, const QString& loggerName) {
  SeriesSet set;
  set.LoggerName = loggerName;
  const std::int32_t count = table.Records().Count();
  set.Times.reserve(static_cast<std::size_t>(count));
  for (std::int32_t record = 0; record < count; ++record) {
    const LiveSample& sample = table.Records().Record(record);
    set.Times.push_back(sample.HasTime ? StampSeconds(sample.PackedTime)
                                       : std::numeric_limits<double>::quiet_NaN());
  }
  set.Stretches.push_back({.First = 0, .Interval = LoggedInterval(table.Settings())});
  for (int column = 1; column < table.ColumnCount(); ++column) {
    const Kind kind = table.Column(column).Content;
    if (kind == Kind::Analog || kind == Kind::Pulse)
      set.Channels.push_back(SeriesOfColumn(table, column));
  }
  return set;
}

}  // namespace tessmar
