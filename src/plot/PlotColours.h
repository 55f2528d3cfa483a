#pragma once

#include <array>
#include <vector>

#include "base/MainScreen.h"

namespace tessmar {

/// The colours of channels that share a plot, in the order in which they are given out. They follow
/// the set of M. Okabe and K. Ito (Color Universal Design, 2008), which people with each kind of
/// colour blindness can tell from each other; what of it does not stand out from the ground is
/// replaced, and each is kept apart from all others to normal, protanopic and deuteranopic eyes.
inline constexpr int kPlotColours = 10;

/// The colours of a plot.
struct PlotTheme {
  Rgb Ground;
  Rgb Text;
  Rgb Grid;
  Rgb Mark;
  std::array<Rgb, kPlotColours> Channels;
};

/// The theme for a light or a dark desktop. Files and paper have the light one.
const PlotTheme& LightPlotTheme();
const PlotTheme& DarkPlotTheme();

/// How much two colours differ in lightness, 1 to 21: (L1 + 0.05) / (L2 + 0.05) of their relative
/// luminances, as the Web Content Accessibility Guidelines 2.1 define it.
double Contrast(Rgb a, Rgb b);

}  // namespace tessmar
