#pragma once

#include <QString>
#include <optional>

#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// The connected logger as it told of itself in this session, whatever has been put into
/// LoggerSettings and LinkState since: by the setup screen, or by an image file.
struct LoggerAsRead {
  QString Name;                            ///< Empty where it could not be read.
  std::optional<LoggerSettings> Settings;  ///< Nothing unless the last reading was whole.
  std::int16_t Analog = 0;                 ///< Channels of its records, 1 to 8; 0 before a session.
  std::int16_t Pulse = 0;                  ///< 0 to 2.
};

/// The link with the channels that the logger's own records and samples have.
inline LinkState WithOwnChannels(LinkState link, const LoggerAsRead& read) {
  if (read.Analog > 0) {
    link.AnalogChannelCount = read.Analog;
    link.PulseChannelCount = read.Pulse;
  }
  return link;
}

}  // namespace tessmar
