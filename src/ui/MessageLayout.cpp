#include "ui/MessageLayout.h"

#include <algorithm>
#include <cmath>

namespace tessmar {

using namespace message_design;

namespace {

constexpr int kLeastWidth = 4000;
constexpr int kMostWidth = 8715;
constexpr int kIconRight = kIconLeft + kIconWidth;
constexpr int kLeastGap = 135;

}  // namespace

int TwipsToPixels(int twips) {
  return static_cast<int>(std::lround(static_cast<double>(twips) / kTwipsPerPixel));
}

int PixelsToTwips(double pixels) {
  return static_cast<int>(std::ceil(pixels * kTwipsPerPixel));
}

MessageWidths MessageWidthsFor(int textWidth, bool hasIcon, int frameWidth) {
  // The frame counts without an icon only; with one its margin of 360 has the room.
  const int wanted = hasIcon ? kIconRight + textWidth + 360 : textWidth + 240 + frameWidth;
  const int form = std::clamp(wanted, kLeastWidth, kMostWidth);
  if (hasIcon) return {.Form = form, .TextLeft = kIconRight + 180, .Text = form - 360 - kIconRight};
  return {.Form = form, .TextLeft = 120, .Text = form - 240};
}

int MessageGrowth(int textHeight) {
  const int gap = kPanelTop - (kTextTop + textHeight);
  return std::max(0, kLeastGap - gap);
}

std::vector<int> MessageButtonLefts(int buttonCount, int formWidth, int buttonWidth,
                                    int frameWidth) {
  const int step = buttonWidth + kButtonSpacing;
  // An odd group stands round its middle button, an even one round its middle gap.
  const int middleButton = (formWidth - buttonWidth - frameWidth) / 2;
  const int middleGap = (formWidth - kButtonSpacing - frameWidth) / 2;
  switch (buttonCount) {
    case 1:
      return {middleButton};
    case 2:
      return {middleGap - buttonWidth, middleGap - buttonWidth + step};
    case 3:
      return {middleButton - step, middleButton, middleButton + step};
    case 4: {
      const int left = middleGap - buttonWidth - step;
      return {left, left + step, left + 2 * step, left + 3 * step};
    }
    default:
      return {};
  }
}

int LeastWidthForButtons(int buttonCount, int buttonWidth, int frameWidth) {
  return buttonCount * buttonWidth + (buttonCount + 1) * kButtonSpacing + frameWidth;
}

}  // namespace tessmar
