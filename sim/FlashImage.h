#pragma once

#include <string>

#include "LineDevice.h"
#include "SimulatedLogger.h"

namespace tessmar::sim {

/// A raw copy of a logger's flash: 4096 pages of 264 bytes, eight of configuration and then those
/// of the records, 240 bytes used in each. When the records do not all fit, the latest are there.
Bytes FlashImage(SimulatedLogger& logger);

/// Writes bytes to a file. @return an error text, empty on success.
std::string WriteFile(const std::string& path, const Bytes& content);

}  // namespace tessmar::sim
