#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include "measure/Series.h"

namespace tessmar {

/// What the plot's window remembers from one time to the next: a section of its own, [Plot], in the
/// file of the persisted settings. Values that cannot be read count as not there.
class PlotMemory {
 public:
  /// @param path  the INI file; neither it nor its folder needs to exist.
  explicit PlotMemory(QString path);

  /// Size of the window in logical pixels; invalid when none is remembered.
  QSize Size() const;
  /// Whether a channel was shown last: true unless it was hidden.
  bool IsShown(const Series& series) const;

  /// Remembers the window's size and which of these channels are shown; what is remembered of
  /// other channels stays. A file that cannot be written is not reported.
  void Remember(QSize size, const std::vector<Series>& channels,
                const std::vector<bool>& shown) const;

 private:
  QStringList Hidden() const;

  QString path_;
};

}  // namespace tessmar
