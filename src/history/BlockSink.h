#pragma once

#include <QString>
#include <cstdint>
#include <span>

#include "history/HistoryUpload.h"

namespace tessmar {

/// Where records come from.
enum class UploadKind {
  History,  ///< The logger's memory, over the line.
  Image,    ///< A file with a copy of a logger's memory.
  Live,     ///< Continuous sampling.
};

/// What is known of an upload before its first block.
struct UploadStart {
  UploadKind Kind = UploadKind::History;
  std::int32_t Promised = 0;  ///< Records that the logger said it has; 0 where nobody says.
  QString Source = {};        ///< The file of an image; empty where it is the connection.
};

/// Takes what comes off the line, as it came and before it is decoded.
///
/// A block is a count byte and that many stored records of the shape given by the channel counts of
/// LinkState as they were at Begin. A history reply is handed over with all its 241 bytes, the
/// empty last one too. A page of an image is its 240 bytes behind the number of records in use, a
/// live sample a count of 1 and the sample in the shape of a stored record.
///
/// No function may wait, fail or throw: whoever uploads goes on whatever becomes of the blocks.
class BlockSink {
 public:
  virtual ~BlockSink() = default;

  /// An upload begins. One that was not ended before it has failed.
  virtual void Begin(const UploadStart& start) = 0;
  virtual void TakeBlock(std::span<const std::uint8_t> block) = 0;
  /// The upload that runs is asked for anew, from its first block: what follows is the whole once
  /// more. What came before stays kept, as a failed upload of its own; without a block nothing
  /// does.
  virtual void BeginAnew() = 0;
  virtual void End(UploadEnd end) = 0;
};

/// Keeps nothing.
class NoBlockSink final : public BlockSink {
 public:
  void Begin(const UploadStart& /*start*/) override {}
  void TakeBlock(std::span<const std::uint8_t> /*block*/) override {}
  void BeginAnew() override {}
  void End(UploadEnd /*end*/) override {}
};

}  // namespace tessmar
