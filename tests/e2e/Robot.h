#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <thread>
#include <type_traits>

namespace tessmar::test {

/// An operator: works the program's windows from a thread of its own, while the user interface runs
/// its real message loop. It looks for controls by form and name, presses them with simulated mouse
/// and keys, and waits for what it expects to see.
///
/// A thing that does not come in time throws std::runtime_error with what was awaited.
class Robot {
 public:
  /// Runs work in the robot's thread; `finished` is called in the user interface's thread when it
  /// is done, with the text of what went wrong or nothing.
  void Start(std::function<void()> work, std::function<void(const QString&)> finished);
  void Join();

  /// Runs a function in the user interface's thread and gives its result.
  template <typename Function>
  static auto InGui(Function&& function) {
    using Result = std::invoke_result_t<Function>;
    if constexpr (std::is_void_v<Result>) {
      QMetaObject::invokeMethod(Anchor(), std::forward<Function>(function),
                                Qt::BlockingQueuedConnection);
    } else {
      Result result{};
      QMetaObject::invokeMethod(
          Anchor(), [&] { result = function(); }, Qt::BlockingQueuedConnection);
      return result;
    }
  }

  /// Waits until a condition, asked in the user interface's thread, holds.
  static void WaitFor(const QString& what, const std::function<bool()>& condition,
                      int milliseconds = 15000);
  static bool Holds(const std::function<bool()>& condition, int milliseconds);

  /// Waits until a form is on the screen and no other dialog stands over it.
  static void WaitForForm(const QString& form, int milliseconds = 15000);
  static void WaitForNoForm(const QString& form, int milliseconds = 15000);
  static bool IsShown(const QString& form);
  static bool IsEnabled(const QString& form, const QString& control);
  static bool HasFocus(const QString& form, const QString& control);

  /// Clicks the middle of a control, as soon as it is shown and enabled.
  static void Click(const QString& form, const QString& control);
  /// Clicks a button that closes its form, again and again until the form has gone: while the link
  /// is held a form may stay, without a word.
  static void ClickUntilGone(const QString& form, const QString& control);
  /// Triggers a menu entry, as soon as it is enabled.
  static void Trigger(const QString& form, const QString& entry);
  /// Sends keys to the widget with the focus, or to a control after giving it the focus.
  static void Type(const QString& form, const QString& control, const QString& text);
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  /// Chooses the first entry of a list that begins so.
  static void Choose(const QString& form, const QString& list, const QString& start);
  /// Sets a check box or an option button by a click, unless it is so already.
  static void Tick(const QString& form, const QString& box, bool on = true);
  /// Turns to a page, 0 first, by a click on its tab.
  static void TurnTo(const QString& form, const QString& tabs, int page);
  /// Waits for a message that begins so and presses one of its buttons, 0 first.
  static void Answer(const QString& start, int button = 0, int milliseconds = 15000);
  /// Types the name of a file into the file dialog.
  static void NameFile(const QString& path);
  /// The same, and takes it.
  static void TakeFile(const QString& path);

  /// What a label, button, text box, combo box or group shows.
  static QString Text(const QString& form, const QString& control);
  static void WaitForText(const QString& form, const QString& control, const QString& text,
                          int milliseconds = 15000);

  /// A picture of the whole screen. Throws when it cannot be written.
  static void Picture(const QString& path);
  /// A picture of one form, with nothing around it.
  static void PictureOf(const QString& form, const QString& path);

  /// The form on the screen and the control in it; null when it is not there. User interface's
  /// thread only.
  static QWidget* Form(const QString& form);
  static QObject* Control(const QString& form, const QString& control);

  static void Pause(int milliseconds);

 private:
  static QObject* Anchor();
  std::thread thread_;
};

}  // namespace tessmar::test
