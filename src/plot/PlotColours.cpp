#include "plot/PlotColours.h"

#include <algorithm>
#include <cmath>

namespace tessmar {
namespace {

constexpr PlotTheme kLight{
    .Ground = {255, 255, 255},
    .Text = {32, 32, 32},
    .Grid = {216, 216, 216},
    .Mark = {96, 96, 96},
    .Channels = {{{0, 114, 178},
                  {213, 94, 0},
                  {0, 138, 100},
                  {176, 84, 140},
                  {110, 50, 200},
                  {0, 155, 185},
                  {32, 32, 32},
                  {0, 70, 60},
                  {110, 110, 110},
                  {120, 40, 20}}},
};

constexpr PlotTheme kDark{
    .Ground = {30, 30, 32},
    .Text = {228, 228, 228},
    .Grid = {70, 70, 74},
    .Mark = {170, 170, 170},
    .Channels = {{{86, 180, 233},
                  {240, 130, 50},
                  {0, 190, 140},
                  {222, 150, 192},
                  {230, 159, 0},
                  {70, 140, 220},
                  {245, 245, 245},
                  {240, 228, 66},
                  {160, 160, 160},
                  {200, 120, 100}}},
};

double Linear(std::uint8_t part) {
  const double value = part / 255.0;
  return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Luminance(Rgb colour) {
  return 0.2126 * Linear(colour.Red) + 0.7152 * Linear(colour.Green) + 0.0722 * Linear(colour.Blue);
}

}  // namespace

const PlotTheme& LightPlotTheme() {
  return kLight;
}

const PlotTheme& DarkPlotTheme() {
  return kDark;
}

double Contrast(Rgb a, Rgb b) {
  const double light = std::max(Luminance(a), Luminance(b));
  const double dark = std::min(Luminance(a), Luminance(b));
  return (light + 0.05) / (dark + 0.05);
}

}  // namespace tessmar
