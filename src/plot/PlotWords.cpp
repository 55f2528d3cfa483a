#include "plot/PlotWords.h"

#include <QStringList>
#include <algorithm>
#include <span>

#include "measure/Scaling.h"
#include "plot/PlotTexts.h"
#include "plot/Statistics.h"
#include "plot/TimeTicks.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

// More would hide the plot.
constexpr std::size_t kMarksNamed = 3;

QString Counted(std::size_t count, PlotTextId one, PlotTextId many) {
  return count == 1 ? PlotText(one) : PlotText(many).arg(count);
}

// How many of some records are in view.
std::size_t CountedIn(const PlotData& data, std::span<const std::size_t> records, TimeRange view) {
  return static_cast<std::size_t>(std::ranges::count_if(
      records, [&](std::size_t record) { return view.Contains(data.Times()[record]); }));
}

QString MarkNotes(const PlotData& data, TimeRange view, const SystemLocale& locale) {
  QStringList named;
  std::size_t count = 0;
  for (const SeriesMark& mark : data.Set().Marks) {
    if (!view.Contains(data.TimeOf(mark))) continue;
    if (++count <= kMarksNamed)
      named.append(TimeOnAxis(data.TimeOf(mark), locale) + u' ' + mark.Text);
  }
  if (count == 0) return {};
  const QString note = Counted(count, PlotTextId::OneMark, PlotTextId::Marks);
  return count > kMarksNamed ? note : note + u": "_s + named.join(u", "_s);
}

}  // namespace

QString RecordWords(const PlotData& data, const std::vector<int>& channels,
                    std::optional<std::size_t> record, const SystemLocale& locale) {
  if (!record || *record >= data.RecordCount()) return {};
  QString text = TimeOnAxis(data.Times()[*record], locale);
  for (const int channel : channels) {
    const Series& series = data.Channel(channel);
    text += u"   "_s + ChannelName(series) + u' ' +
            FormatValue(data.Value(channel, *record), series.Decimals);
  }
  return text;
}

QString ViewNotes(const PlotData& data, TimeRange view, const SystemLocale& locale) {
  QStringList notes;
  if (data.Runs().empty()) notes.append(PlotText(PlotTextId::NoRecords));
  if (const QString marks = MarkNotes(data, view, locale); !marks.isEmpty()) notes.append(marks);
  const std::size_t disputes = CountedIn(data, data.DisputedPlaces(), view);
  if (disputes > 0) notes.append(Counted(disputes, PlotTextId::OneDispute, PlotTextId::Disputes));
  const std::size_t stepsBack = CountedIn(data, data.StepsBack(), view);
  if (stepsBack > 0)
    notes.append(Counted(stepsBack, PlotTextId::OneStepBack, PlotTextId::StepsBack));
  if (data.JoinsAnyDistance()) notes.append(PlotText(PlotTextId::JoinedPoints));
  std::size_t timed = 0;
  for (const RecordSpan& run : data.Runs()) timed += run.End - run.First;
  if (data.ShowsCorrectedTimes() && timed < data.RecordCount())
    notes.append(Counted(data.RecordCount() - timed, PlotTextId::OneWithoutCorrectedTime,
                         PlotTextId::WithoutCorrectedTime));
  return notes.join(u"; "_s);
}

QString ViewDescription(const PlotData& data, const std::vector<int>& channels, TimeRange view,
                        const SystemLocale& locale) {
  QStringList sentences{
      PlotText(PlotTextId::Described).arg(RangeText(view, locale)).arg(data.CountIn(view))};
  for (const ChannelStatistics& row : StatisticsIn(data, channels, view)) {
    const Series& series = data.Channel(row.Channel);
    const QString name = ChannelName(series);
    sentences.append(row.All.Any() ? PlotText(PlotTextId::DescribedChannel)
                                         .arg(name, FormatValue(row.All.Least, series.Decimals),
                                              FormatValue(row.All.Greatest, series.Decimals))
                                   : PlotText(PlotTextId::DescribedEmpty).arg(name));
  }
  return sentences.join(u' ');
}

}  // namespace tessmar
