#pragma once

#include <cstdint>

#include "history/HistoryUpload.h"

namespace tessmar::test {

/// A block reply of count records, padded to its fixed size with 0xFF. Record k of the block has
/// the time word first + k and in each of its words the value first + k.
inline HistoryUpload::Reply Block(int count, int words, std::uint32_t first) {
  HistoryUpload::Reply reply;
  reply.fill(0xFF);
  reply[0] = static_cast<std::uint8_t>(count);
  std::size_t place = 1;
  for (int k = 0; k < count; ++k) {
    const std::uint32_t number = first + static_cast<std::uint32_t>(k);
    for (int byte = 0; byte < 4 && place < reply.size(); ++byte)
      reply[place++] = static_cast<std::uint8_t>(number >> (8 * byte));
    for (int byte = 0; byte < 2 * words && place < reply.size(); ++byte)
      reply[place++] = static_cast<std::uint8_t>(number >> (8 * (byte % 2)));
  }
  return reply;
}

}  // namespace tessmar::test
