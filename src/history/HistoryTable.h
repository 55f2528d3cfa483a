#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

#include "base/SystemLocale.h"
#include "history/HistoryBuffer.h"
#include "link/LinkState.h"
#include "measure/Scaling.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// One column of the history table.
struct HistoryColumn {
  enum class Kind { DateTime, Analog, Relay, Pulse };
  Kind Content = Kind::DateTime;
  int Channel = 0;   ///< Analog or pulse channel or relay, from 0.
  QString Key = {};  ///< "DateTime" for the first column, empty for the others.
  QString Heading = {};
  int WidthTwips = 0;  ///< 15 twips are one logical pixel.
  bool Centred = false;
  int Decimals = 0;         ///< Of the cells.
  int Word = 0;             ///< Place of the channel's own word in a record.
  bool OwnReading = false;  ///< The cells follow from that word alone.
};

/// HistoryBuffer in engineering units: one row for each record, one column for the time stamp and
/// for each enabled channel.
///
/// Cells are made when they are asked for, from the records and from a copy of the settings and
/// channel counts taken at construction: nothing that changes later changes the table. The buffer
/// and the locale must outlive it, and the buffer must not be filled anew meanwhile.
class HistoryTable {
 public:
  /// Room for the text of any data cell.
  static constexpr int kCellSize = kFormattedValueSize;

  /// Told now and then how many records are done.
  using Progress = std::function<void(std::int32_t record)>;

  /// @param showRelays  adds the four relay columns behind the analog channels.
  HistoryTable(const HistoryBuffer& buffer, const LoggerSettings& settings, const LinkState& link,
               bool showRelays, const SystemLocale& locale);

  /// Leaves out each record whose data cells are the same texts as those of the record before it,
  /// dropped or not. The times are not compared. Without data columns nothing stays.
  void Pack(const Progress& progress);

  std::int32_t RowCount() const;
  int ColumnCount() const { return static_cast<int>(columns_.size()); }
  /// Throws RangeFault outside 0 to ColumnCount() - 1.
  const HistoryColumn& Column(int column) const;
  /// The record of a row. Throws RangeFault outside 0 to RowCount() - 1.
  const LiveSample& Record(std::int32_t row) const;

  /// The text of any cell. Throws RangeFault outside the table.
  QString CellText(std::int32_t row, int column) const;

  /// Writes the text of a data cell, plain ASCII without a zero at the end; allocates nothing.
  /// "---" stands for a value that is not to be had.
  /// @param out     room for kCellSize characters.
  /// @param column  1 to ColumnCount() - 1.
  /// @return the number of characters written.
  int WriteCell(char* out, const LiveSample& record, int column) const;

  /// The number that the text of an analog or pulse cell is made from, not yet rounded to the
  /// column's decimals; not a number where the cell shows "---". Throws RangeFault for a column of
  /// another kind.
  double CellValue(const LiveSample& record, int column) const;

  /// All records, those that packing left out too.
  const HistoryBuffer& Records() const { return buffer_; }
  /// The row that shows a record of Records(): its own, or, where packing left that out, the one
  /// above it. -1 for a record that is not there, or that stands above the first row.
  std::int32_t RowOf(std::int32_t record) const;

  const SystemLocale& Locale() const { return locale_; }
  /// The settings as they were when the table was made.
  const LoggerSettings& Settings() const { return settings_; }

 private:
  void AddColumns(bool showRelays);
  void AddChannel(HistoryColumn::Kind kind, int channel, int entry, int word, int widthTwips,
                  bool ownReading);
  const HistoryColumn& ColumnAt(int column) const;
  double ValueOf(const LiveSample& record, const HistoryColumn& content) const;
  double DerivedValue(const LiveSample& record, const HistoryColumn& column) const;
  int WriteRelay(char* out, const LiveSample& record, int relay) const;
  double ChannelValue(const LiveSample& record, int channel) const;
  bool SameSources(const HistoryColumn& column, const LiveSample& a, const LiveSample& b) const;

  const HistoryBuffer& buffer_;
  LoggerSettings settings_;
  int analogChannelCount_;
  int pulseChannelCount_;
  const SystemLocale& locale_;
  std::vector<HistoryColumn> columns_;
  bool packed_ = false;
  std::vector<std::uint32_t> packedRows_;  ///< Record of each row of a packed table.
};

}  // namespace tessmar
