#include "plot/PlotMemory.h"

#include <QSettings>
#include <utility>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

const auto kSize = u"Plot/Size"_s;
const auto kHidden = u"Plot/HiddenChannels"_s;

constexpr int kLeastSide = 200;
constexpr int kGreatestSide = 16000;

// A channel is known again by its place and its unit.
QString KeyOf(const Series& series) {
  return series.Place + u' ' + series.Unit;
}

}  // namespace

PlotMemory::PlotMemory(QString path) : path_(std::move(path)) {}

QSize PlotMemory::Size() const {
  const QSettings store(path_, QSettings::IniFormat);
  const QStringList sides = store.value(kSize).toString().split(u'x');
  if (sides.size() != 2) return {};
  const QSize size(sides[0].toInt(), sides[1].toInt());
  const auto fits = [](int side) { return side >= kLeastSide && side <= kGreatestSide; };
  return fits(size.width()) && fits(size.height()) ? size : QSize();
}

QStringList PlotMemory::Hidden() const {
  const QSettings store(path_, QSettings::IniFormat);
  return store.value(kHidden).toStringList();
}

bool PlotMemory::IsShown(const Series& series) const {
  return !Hidden().contains(KeyOf(series));
}

void PlotMemory::Remember(QSize size, const std::vector<Series>& channels,
                          const std::vector<bool>& shown) const {
  QStringList hidden = Hidden();
  for (std::size_t i = 0; i < channels.size(); ++i) {
    hidden.removeAll(KeyOf(channels[i]));
    if (!shown[i]) hidden.append(KeyOf(channels[i]));
  }
  QSettings store(path_, QSettings::IniFormat);
  store.setValue(kSize, u"%1x%2"_s.arg(size.width()).arg(size.height()));
  store.setValue(kHidden, hidden);
}

}  // namespace tessmar
