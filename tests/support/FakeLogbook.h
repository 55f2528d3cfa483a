#pragma once

#include <vector>

#include "base/Logbook.h"

namespace tessmar::test {

/// Keeps what it is told.
class FakeLogbook final : public Logbook {
 public:
  void Note(const LogbookEntry& entry) override { Entries.push_back(entry); }
  std::optional<KnownSettings> LastSettings() override { return Known; }

  std::vector<LogbookEntry> Entries;
  std::optional<KnownSettings> Known;  ///< What it says of the logger.
};

}  // namespace tessmar::test
