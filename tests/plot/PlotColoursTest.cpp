#include "plot/PlotColours.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessmar {
namespace {

struct Lab {
  double L = 0;
  double A = 0;
  double B = 0;
};

double Linear(double part) {
  const double value = part / 255;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

using Light = std::array<double, 3>;  // Linear red, green and blue.

Light Seen(Rgb colour) {
  return {Linear(colour.Red), Linear(colour.Green), Linear(colour.Blue)};
}

// G. M. Machado, M. M. Oliveira and L. A. F. Fernandes (IEEE Trans. Vis. Comput. Graph. 15, 2009),
// severity 1.
constexpr double kProtanopia[9] = {0.152286, 1.052583,  -0.204868, 0.114503, 0.786281,
                                   0.099216, -0.003882, -0.048116, 1.051998};
constexpr double kDeuteranopia[9] = {0.367322, 0.860646,  -0.227968, 0.280085, 0.672501,
                                     0.047413, -0.011820, 0.042940,  0.968881};

Light Through(const double* matrix, const Light& light) {
  Light out{};
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column)
      out[row] += matrix[row * 3 + column] * light[column];
    out[row] = std::min(1.0, std::max(0.0, out[row]));
  }
  return out;
}

// CIE 1976 L*a*b*, white D65.
Lab ToLab(const Light& light) {
  const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
  const double x = (0.4124 * light[0] + 0.3576 * light[1] + 0.1805 * light[2]) / 0.9505;
  const double y = 0.2126 * light[0] + 0.7152 * light[1] + 0.0722 * light[2];
  const double z = (0.0193 * light[0] + 0.1192 * light[1] + 0.9505 * light[2]) / 1.089;
  return {116 * f(y) - 16, 500 * (f(x) - f(y)), 200 * (f(y) - f(z))};
}

double Difference(const Lab& a, const Lab& b) {
  return std::sqrt((a.L - b.L) * (a.L - b.L) + (a.A - b.A) * (a.A - b.A) +
                   (a.B - b.B) * (a.B - b.B));
}

TEST(PlotColours, StandOutFromTheGround) {
  for (const PlotTheme* theme : {&LightPlotTheme(), &DarkPlotTheme()}) {
    for (const Rgb colour : theme->Channels) EXPECT_GE(Contrast(colour, theme->Ground), 3);
    EXPECT_GE(Contrast(theme->Text, theme->Ground), 7);
    EXPECT_GE(Contrast(theme->Mark, theme->Ground), 3);
  }
}

TEST(PlotColours, ContrastIsThatOfTheGuidelines) {
  EXPECT_NEAR(Contrast({0, 0, 0}, {255, 255, 255}), 21, 1e-9);
  EXPECT_NEAR(Contrast({119, 119, 119}, {255, 255, 255}), 4.48, 0.005);
  EXPECT_EQ(Contrast({1, 2, 3}, {1, 2, 3}), 1);
}

// A difference of 2.3 is just noticeable side by side; the first six, more than a strip often
// holds, are to differ a great deal more, to every eye.
TEST(PlotColours, DifferToColourBlindEyes) {
  for (const PlotTheme* theme : {&LightPlotTheme(), &DarkPlotTheme()}) {
    for (std::size_t a = 0; a < theme->Channels.size(); ++a) {
      for (std::size_t b = a + 1; b < theme->Channels.size(); ++b) {
        const double least = a < 6 && b < 6 ? 10 : 6;
        const Light first = Seen(theme->Channels[a]);
        const Light second = Seen(theme->Channels[b]);
        EXPECT_GE(Difference(ToLab(first), ToLab(second)), least) << a << ' ' << b;
        for (const double* eye : {kProtanopia, kDeuteranopia})
          EXPECT_GE(Difference(ToLab(Through(eye, first)), ToLab(Through(eye, second))), least)
              << a << ' ' << b << (theme == &LightPlotTheme() ? " light" : " dark")
              << (eye == kProtanopia ? " protanopia" : " deuteranopia");
      }
    }
  }
}

}  // namespace
}  // namespace tessmar
