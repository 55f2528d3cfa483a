#pragma once

#include <vector>

#include "base/Logbook.h"

namespace tessmar::test {

/// Keeps what it is told.
class FakeLogbook final : public Logbook {
 public:
  void Note(const LogbookEntry& entry) override { Entries.push_back(entry); }
  std::vector<LogbookEntry> Entries;
};

}  // namespace tessmar::test
