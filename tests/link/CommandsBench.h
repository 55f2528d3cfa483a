#pragma once

#include "base/Fault.h"
#include "base/TextTable.h"
#include "link/LinkBench.h"
#include "link/cmd.h"
#include "support/FakeOutside.h"

namespace tessmar::test {

/// The logger's commands on a scripted line.
struct CommandsBench : LinkBench {
  explicit CommandsBench(const QLocale& locale = QLocale(QLocale::English)) : Locale(locale) {
    SetTextLanguage(kLanguageEnglish);
  }

  CommandsBench& Answering(const Bytes& reply, qint64 delayMs = 10) {
    LinkBench::Answering(reply, delayMs);
    return *this;
  }

  /// The payload of the last frame that was written.
  Bytes Sent() const {
    const Bytes& frame = Port.Writes.back();
    Bytes payload;
    for (std::size_t i = 2; payload.size() + 2 < frame[1]; ++i) {
      if (frame[i] == 0xFE) {
        payload.push_back(static_cast<std::uint8_t>(0xF8 + frame[++i]));
      } else {
        payload.push_back(frame[i]);
      }
    }
    return payload;
  }

  FakeClock Now;
  SystemLocale Locale;
  LoggerCommands Commands{Channel, Link, Now, Locale};
};

}  // namespace tessmar::test
