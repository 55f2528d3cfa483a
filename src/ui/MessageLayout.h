#pragma once

#include <cstdint>
#include <vector>

namespace tessmar {

/// The message dialog is laid out in twips, 15 to a logical pixel.
inline constexpr int kTwipsPerPixel = 15;
/// Twips to logical pixels, rounded to the nearest.
int TwipsToPixels(int twips);
/// Logical pixels, fractions too, to twips, rounded up so that a measured text keeps its room.
int PixelsToTwips(double pixels);

/// The message dialog as designed, in twips inside the window's frame.
namespace message_design {
inline constexpr int kWidth = 5208;
inline constexpr int kHeight = 1260;
inline constexpr int kIconLeft = 180;
inline constexpr int kIconTop = 120;
inline constexpr int kIconWidth = 555;
inline constexpr int kIconHeight = 495;
inline constexpr int kTextTop = 120;
inline constexpr int kTextHeight = 495;
inline constexpr int kPanelHeight = 510;
inline constexpr int kPanelTop = kHeight - kPanelHeight;
inline constexpr int kButtonWidth = 1155;
inline constexpr int kButtonHeight = 435;
inline constexpr int kButtonSpacing = 105;
inline constexpr int kMostButtons = 4;
}  // namespace message_design

/// Widths of a message dialog, in twips.
struct MessageWidths {
  int Form = 0;  ///< Window with its frame: 4000 to 8715.
  int TextLeft = 0;
  int Text = 0;  ///< The text wraps at this width.
  bool operator==(const MessageWidths&) const = default;
};

/// The widths for a text.
/// @param textWidth   of the whole message as one line, in twips, 0 or more.
/// @param frameWidth  of the window's frame, in twips; 0 where the frame stands outside the window.
MessageWidths MessageWidthsFor(int textWidth, bool hasIcon, int frameWidth);

/// How much the dialog grows downwards for a wrapped text, in twips, so that 135 remain between the
/// text and the button panel; 0 for a text that has its room.
int MessageGrowth(int textHeight);

/// Left edges of the buttons, in order, so that the group stands centred in the form. In twips.
/// @param buttonCount  1 to 4; any other number gives none.
std::vector<int> MessageButtonLefts(int buttonCount, int formWidth, int buttonWidth,
                                    int frameWidth);

/// The least form width, in twips, at which the group of buttons has a button spacing at both
/// sides.
int LeastWidthForButtons(int buttonCount, int buttonWidth, int frameWidth);

}  // namespace tessmar
