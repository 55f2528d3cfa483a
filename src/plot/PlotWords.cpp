#include "plot/PlotWords.h"

#include <QStringList>

#include "measure/Scaling.h"
#include "plot/PlotTexts.h"
#include "plot/Statistics.h"
#include "plot/TimeTicks.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString Counted(int count, PlotTextId one, PlotTextId many) {
  return count == 1 ? PlotText(one) : PlotText(many).arg(count);
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

QString ViewNotes(const PlotData& data, int marks, int stepsBack) {
  QStringList notes;
  if (data.Runs().empty()) notes.append(PlotText(PlotTextId::NoRecords));
  if (marks > 0) notes.append(Counted(marks, PlotTextId::OneMark, PlotTextId::Marks));
  if (stepsBack > 0)
    notes.append(Counted(stepsBack, PlotTextId::OneStepBack, PlotTextId::StepsBack));
  if (data.JoinsAnyDistance()) notes.append(PlotText(PlotTextId::JoinedPoints));
  std::size_t timed = 0;
  for (const RecordSpan& run : data.Runs()) timed += run.End - run.First;
  if (data.ShowsCorrectedTimes() && timed < data.RecordCount())
    notes.append(PlotText(PlotTextId::WithoutCorrectedTime).arg(data.RecordCount() - timed));
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
