#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "archive/ArchiveRows.h"
#include "base/SystemLocale.h"
#include "history/HistoryBuffer.h"
#include "history/HistoryTable.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// Makes the rows of an upload's records and channels from its blocks, with the values that the
/// viewer shows for them.
class RecordMaker {
 public:
  /// @param settings  those that the upload was made with.
  /// @param analog    channels of its records, 0 to 8.
  /// @param pulse     0 to 2.
  RecordMaker(const LoggerSettings& settings, int analog, int pulse);
  RecordMaker(const RecordMaker&) = delete;
  RecordMaker& operator=(const RecordMaker&) = delete;

  /// The enabled channels, analog ones first.
  std::vector<ChannelRow> Channels() const;

  /// The value that the viewer shows, rounded to its decimals; nothing where it shows none.
  /// @param channel  from 1, in the order of Channels.
  std::optional<double> ShownValue(const LiveSample& record, int channel) const;

  /// True when equal words of the record mean equal values of this channel, from 1.
  bool FollowsFromWord(int channel) const { return table_.Column(channel).OwnReading; }
  /// The place of that word in a record.
  int WordOf(int channel) const { return table_.Column(channel).Word; }

  /// How many records a block has; none where its count cannot be.
  int CountOf(std::span<const std::uint8_t> block) const;

  /// Makes record number index, from 0, of a block. Number is left to the caller. A record that the
  /// block cuts off has no time.
  void Make(std::span<const std::uint8_t> block, int index, RecordRow& row);

 private:
  QString TimeOf(std::uint32_t stamp);

  LinkState link_;
  LoggerSettings settings_;
  SystemLocale locale_;
  HistoryBuffer none_;
  HistoryTable table_;
  int words_;
  int recordSize_;
  std::uint32_t date_ = 0;  ///< Day and month bits of the stamp that dateText_ was made for.
  QString dateText_;
};

/// Records of a block of so many channels; none where its count cannot be.
int RecordsOfBlock(std::span<const std::uint8_t> block, int analog, int pulse);

/// The settings of an image in the archive, for records of so many channels.
LoggerSettings SettingsOfImage(const QByteArray& image, int analog, int pulse);

}  // namespace tessmar
