#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "settings/config.h"
#include "support/Links.h"

namespace tessmar::test {

/// A logger with eight analog and two pulse channels and sample-on-demand.
inline LinkState FullLogger() {
  LinkState link = LinkWith(8, 2);
  link.SampleOnDemandSupported = true;
  return link;
}

/// The image of a record with every field zero or empty, of that logger.
inline ConfigImage EmptyImage() {
  ConfigImage image(315, 0);
  std::fill(image.begin(), image.begin() + 32, ' ');
  image[35] = 8;
  image[36] = 2;
  std::fill(image.begin() + 48, image.begin() + 138, ' ');
  image[141] = 128;
  image[145] = 128;
  return image;
}

/// The record that EmptyImage unpacks to.
inline LoggerSettings EmptySettings() {
  LoggerSettings settings;
  settings.SampleInterval = QStringLiteral("0 second");
  return settings;
}

inline void Overwrite(ConfigImage& image, int offset, const std::vector<std::uint8_t>& bytes) {
  std::copy(bytes.begin(), bytes.end(), image.begin() + offset);
}

}  // namespace tessmar::test
