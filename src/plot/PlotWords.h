#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "base/SystemLocale.h"
#include "plot/PlotData.h"

namespace tessmar {

/// The time of a record and the values of these channels, as they stand under the cursor line;
/// empty for no record.
QString RecordWords(const PlotData& data, const std::vector<int>& channels,
                    std::optional<std::size_t> record, const SystemLocale& locale);

/// What has to be known to read a view: marks (a few by name and time), places where uploads
/// disagree and steps back of the clock in it, points that are joined at any distance, records that
/// are not shown; empty when there is nothing to say.
QString ViewNotes(const PlotData& data, TimeRange view, const SystemLocale& locale);

/// A view for who cannot see it: the range of time, how many records it has, and the least and the
/// greatest value of each channel.
QString ViewDescription(const PlotData& data, const std::vector<int>& channels, TimeRange view,
                        const SystemLocale& locale);

}  // namespace tessmar
