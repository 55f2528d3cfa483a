#include "plot/PlotCsv.h"

#include <array>

#include "base/TextTable.h"
#include "measure/Scaling.h"
#include "plot/TimeTicks.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QByteArray Head(const PlotData& data, const PlotCsvView& view, const SystemLocale& locale) {
  QString head = data.Set().LoggerName + u',' + locale.ShortDate(view.Saved.date()) + u',' +
                 locale.ShortTime(view.Saved.time()) + u"\r\n"_s;
  head += GetText(TextId::Date) + (view.SingleColumn ? u" "_s : u", "_s) + GetText(TextId::Time);
  if (data.ShowsCorrectedTimes()) head += u" (UTC)"_s;
  for (const int channel : view.Channels) head += u", "_s + data.Channel(channel).Unit;
  return (head + u"\r\n"_s).toUtf8();
}

void AddRow(const PlotData& data, const PlotCsvView& view, const SystemLocale& locale,
            std::size_t record, QByteArray& text) {
  QString time = TimeOnAxis(data.Times()[record], locale);
  if (!view.SingleColumn) time.replace(time.indexOf(u' '), 1, u", "_s);
  text += time.toUtf8();
  std::array<char, kFormattedValueSize> cell;
  for (const int channel : view.Channels) {
    text += ", ";
    text.append(cell.data(), FormatValueTo(cell.data(), data.Value(channel, record),
                                           data.Channel(channel).Decimals));
  }
  text += "\r\n";
}

}  // namespace

QByteArray PlotCsv(const PlotData& data, const PlotCsvView& view, const SystemLocale& locale) {
  QByteArray text = Head(data, view, locale);
  for (const RecordSpan& run : data.Runs()) {
    const RecordSpan inside = data.InRange(run, view.Range);
    for (std::size_t record = inside.First; record < inside.End; ++record)
      AddRow(data, view, locale, record, text);
  }
  return text;
}

}  // namespace tessmar
