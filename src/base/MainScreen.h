#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace tessmar {

/// A colour of the screen, 0 to 255 each.
struct Rgb {
  std::uint8_t Red = 0;
  std::uint8_t Green = 0;
  std::uint8_t Blue = 0;
  bool operator==(const Rgb&) const = default;
};

/// The name of an element of a control array: ElementName("lblValue", 3) is "lblValue(3)".
inline QString ElementName(const char* array, int index) {
  return QStringLiteral("%1(%2)").arg(QLatin1StringView(array)).arg(index);
}

/// What the core asks the main window to show. Controls go by their names, so that the tables of
/// the core read as what they are: lists of controls. A name that the window does not have is a
/// programming error.
class MainScreen {
 public:
  virtual ~MainScreen() = default;

  virtual QString Caption(const QString& control) const = 0;
  virtual void SetCaption(const QString& control, const QString& text) = 0;
  virtual void SetEnabled(const QString& control, bool enabled) = 0;
  virtual void SetVisible(const QString& control, bool visible) = 0;
  virtual bool IsChecked(const QString& control) const = 0;
  virtual void SetChecked(const QString& control, bool checked) = 0;
  virtual void SetTextColour(const QString& control, Rgb colour) = 0;
  /// No colour is the system's button-face colour.
  virtual void SetBackground(const QString& control, std::optional<Rgb> colour) = 0;

  /// Paints the meter of a channel, 0 to 7, filled to a fraction of its height, 0 to 1, from the
  /// bottom; a meter that is not enabled is not filled.
  virtual void PaintMeter(int channel, double fraction, bool enabled) = 0;

  /// The hour-glass over the whole program.
  virtual void SetWaitCursor(bool on) = 0;
};

/// Shows the wait cursor from construction to destruction.
class WaitCursorScope {
 public:
  explicit WaitCursorScope(MainScreen& screen) : screen_(screen) { screen_.SetWaitCursor(true); }
  ~WaitCursorScope() { screen_.SetWaitCursor(false); }
  WaitCursorScope(const WaitCursorScope&) = delete;
  WaitCursorScope& operator=(const WaitCursorScope&) = delete;

 private:
  MainScreen& screen_;
};

}  // namespace tessmar
