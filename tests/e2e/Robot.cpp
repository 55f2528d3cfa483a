#include "e2e/Robot.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScreen>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QThread>
#include <stdexcept>

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

/// A box or an option may be wider than its text, and takes no click behind that.
QPoint PlaceToClick(const QWidget& widget) {
  constexpr int kInTheMark = 8;
  const bool hasMark = qobject_cast<const QCheckBox*>(&widget) != nullptr ||
                       qobject_cast<const QRadioButton*>(&widget) != nullptr;
  return hasMark ? QPoint(kInTheMark, widget.height() / 2) : widget.rect().center();
}

}  // namespace

QObject* Robot::Anchor() {
  return qApp;
}

void Robot::Start(std::function<void()> work, std::function<void(const QString&)> finished) {
  thread_ = std::thread([work = std::move(work), finished = std::move(finished)] {
    QString trouble;
    try {
      work();
    } catch (const std::exception& fault) {
      trouble = QString::fromUtf8(fault.what());
    }
    QMetaObject::invokeMethod(
        Anchor(), [=] { finished(trouble); }, Qt::QueuedConnection);
  });
}

void Robot::Join() {
  if (thread_.joinable()) thread_.join();
}

void Robot::Pause(int milliseconds) {
  QThread::msleep(static_cast<unsigned long>(milliseconds));
}

bool Robot::Holds(const std::function<bool()>& condition, int milliseconds) {
  QElapsedTimer timer;
  timer.start();
  while (true) {
    if (InGui(condition)) return true;
    if (timer.elapsed() > milliseconds) return false;
    Pause(20);
  }
}

void Robot::WaitFor(const QString& what, const std::function<bool()>& condition, int milliseconds) {
  if (Holds(condition, milliseconds)) return;
  const QString shown = InGui([] {
    QStringList names;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible()) names.append(widget->objectName());
    }
    return names.join(u", "_s);
  });
  throw std::runtime_error(
      u"waited in vain for %1; on the screen: %2"_s.arg(what, shown).toStdString());
}

QWidget* Robot::Form(const QString& form) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible() && widget->objectName() == form) return widget;
  }
  return nullptr;
}

QObject* Robot::Control(const QString& form, const QString& control) {
  QWidget* window = Form(form);
  return window != nullptr ? window->findChild<QObject*>(control) : nullptr;
}

bool Robot::IsShown(const QString& form) {
  return InGui([&] { return Form(form) != nullptr; });
}

bool Robot::IsEnabled(const QString& form, const QString& control) {
  return InGui([&] {
    QObject* object = Control(form, control);
    if (const auto* action = qobject_cast<QAction*>(object)) return action->isEnabled();
    const auto* widget = qobject_cast<QWidget*>(object);
    return widget != nullptr && widget->isEnabled();
  });
}

bool Robot::HasFocus(const QString& form, const QString& control) {
  return InGui([&] {
    const auto* widget = qobject_cast<QWidget*>(Control(form, control));
    return widget != nullptr && widget->hasFocus();
  });
}

void Robot::WaitForForm(const QString& form, int milliseconds) {
  WaitFor(
      form,
      [&] {
        const QWidget* window = Form(form);
        const QWidget* modal = QApplication::activeModalWidget();
        return window != nullptr && (modal == nullptr || modal == window);
      },
      milliseconds);
}

void Robot::WaitForNoForm(const QString& form, int milliseconds) {
  WaitFor(
      u"%1 to go"_s.arg(form), [&] { return Form(form) == nullptr; }, milliseconds);
}

void Robot::Click(const QString& form, const QString& control) {
  WaitFor(u"%1 of %2 to be enabled"_s.arg(control, form), [&] {
    const auto* widget = qobject_cast<QWidget*>(Control(form, control));
    return widget != nullptr && widget->isVisible() && widget->isEnabled();
  });
  // Not waited for: what the click starts may show a dialog and run its loop.
  QMetaObject::invokeMethod(
      Anchor(),
      [=] {
        if (auto* widget = qobject_cast<QWidget*>(Control(form, control))) {
          QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, PlaceToClick(*widget));
        }
      },
      Qt::QueuedConnection);
}

void Robot::ClickUntilGone(const QString& form, const QString& control) {
  constexpr int kTries = 20;
  for (int i = 0; i < kTries && IsShown(form); ++i) {
    Click(form, control);
    if (Holds([&] { return Form(form) == nullptr; }, 700)) return;
  }
  if (!IsShown(form)) return;
  throw std::runtime_error(u"%1 does not close"_s.arg(form).toStdString());
}

void Robot::Trigger(const QString& form, const QString& entry) {
  WaitFor(u"%1 of %2 to be enabled"_s.arg(entry, form), [&] {
    const auto* action = qobject_cast<QAction*>(Control(form, entry));
    return action != nullptr && action->isEnabled();
  });
  QMetaObject::invokeMethod(
      Anchor(),
      [=] {
        if (auto* action = qobject_cast<QAction*>(Control(form, entry))) action->trigger();
      },
      Qt::QueuedConnection);
}

void Robot::Type(const QString& form, const QString& control, const QString& text) {
  WaitFor(u"%1 to be the window for the keys"_s.arg(form), [&] {
    const QWidget* window = Form(form);
    return window != nullptr && window->isActiveWindow();
  });
  InGui([&] {
    auto* widget = qobject_cast<QWidget*>(Control(form, control));
    if (widget == nullptr) return;
    widget->setFocus();
    if (auto* line = qobject_cast<QLineEdit*>(widget)) line->selectAll();
    if (auto* combo = qobject_cast<QComboBox*>(widget)) {
      if (combo->lineEdit() != nullptr) {
        combo->lineEdit()->selectAll();
        widget = combo->lineEdit();
      }
    }
    QTest::keyClicks(widget, text);
  });
}

void Robot::Choose(const QString& form, const QString& list, const QString& start) {
  const bool chosen = InGui([&] {
    auto* combo = qobject_cast<QComboBox*>(Control(form, list));
    const int index = combo == nullptr ? -1 : combo->findText(start, Qt::MatchStartsWith);
    if (index < 0) return false;
    combo->setFocus();
    combo->setCurrentIndex(index);
    return true;
  });
  if (!chosen) {
    throw std::runtime_error(u"%1 of %2 has no \"%3\""_s.arg(list, form, start).toStdString());
  }
}

void Robot::Tick(const QString& form, const QString& box, bool on) {
  const auto isSo = [&] {
    const auto* button = qobject_cast<QAbstractButton*>(Control(form, box));
    return button != nullptr && button->isChecked() == on;
  };
  if (InGui(isSo)) return;
  Click(form, box);
  WaitFor(u"the click on %1 of %2"_s.arg(box, form), isSo);
}

void Robot::TurnTo(const QString& form, const QString& tabs, int page) {
  QMetaObject::invokeMethod(
      Anchor(),
      [=] {
        auto* pages = qobject_cast<QTabWidget*>(Control(form, tabs));
        if (pages == nullptr) return;
        const QRect tab = pages->tabBar()->tabRect(page);
        QTest::mouseClick(pages->tabBar(), Qt::LeftButton, Qt::NoModifier, tab.center());
      },
      Qt::QueuedConnection);
  WaitFor(u"page %1 of %2"_s.arg(page).arg(form), [&] {
    const auto* pages = qobject_cast<QTabWidget*>(Control(form, tabs));
    return pages != nullptr && pages->currentIndex() == page;
  });
}

// One message may follow another at once: an answered one is marked, and no longer counts.
void Robot::Answer(const QString& start, int button, int milliseconds) {
  constexpr char kAnswered[] = "answered";
  QString text;
  const auto stands = [&] {
    QWidget* message = Form(u"FMessage"_s);
    if (message == nullptr || message->property(kAnswered).toBool()) return false;
    text = qobject_cast<QLabel*>(Control(u"FMessage"_s, u"lblMessage"_s))->text();
    if (text.startsWith(start)) message->setProperty(kAnswered, true);
    return true;
  };
  WaitFor(u"the message \"%1\""_s.arg(start), stands, milliseconds);
  if (!text.startsWith(start)) {
    throw std::runtime_error(
        u"the message is \"%1\" and not \"%2\""_s.arg(text, start).toStdString());
  }
  Click(u"FMessage"_s, u"cmdButton(%1)"_s.arg(button));
}

void Robot::NameFile(const QString& path) {
  WaitForForm(u"dlgFile"_s);
  // Set and not typed: a list of completions would take the keys.
  InGui([&] { qobject_cast<QLineEdit*>(Control(u"dlgFile"_s, u"fileNameEdit"_s))->setText(path); });
}

void Robot::TakeFile(const QString& path) {
  NameFile(path);
  // Clicked and not entered, for the same reason.
  QMetaObject::invokeMethod(
      Anchor(),
      [] {
        auto* buttons = qobject_cast<QDialogButtonBox*>(Control(u"dlgFile"_s, u"buttonBox"_s));
        for (QAbstractButton* button : buttons->buttons()) {
          if (buttons->buttonRole(button) != QDialogButtonBox::AcceptRole) continue;
          QTest::mouseClick(button, Qt::LeftButton);
          return;
        }
      },
      Qt::QueuedConnection);
  WaitForNoForm(u"dlgFile"_s);
}

void Robot::Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QMetaObject::invokeMethod(
      Anchor(),
      [=] {
        QWidget* window = QApplication::activeWindow();
        QWidget* target = QApplication::focusWidget();
        if (target == nullptr) target = window;
        if (target != nullptr) QTest::keyClick(target, key, modifiers);
      },
      Qt::QueuedConnection);
}

QString Robot::Text(const QString& form, const QString& control) {
  return InGui([&]() -> QString {
    QObject* object = Control(form, control);
    if (const auto* label = qobject_cast<QLabel*>(object)) return label->text();
    if (const auto* button = qobject_cast<QAbstractButton*>(object)) return button->text();
    if (const auto* line = qobject_cast<QLineEdit*>(object)) return line->text();
    if (const auto* combo = qobject_cast<QComboBox*>(object)) return combo->currentText();
    if (const auto* group = qobject_cast<QGroupBox*>(object)) return group->title();
    return {};
  });
}

void Robot::WaitForText(const QString& form, const QString& control, const QString& text,
                        int milliseconds) {
  QElapsedTimer timer;
  timer.start();
  QString seen;
  while ((seen = Text(form, control)) != text) {
    if (timer.elapsed() > milliseconds) {
      throw std::runtime_error(
          u"%1 of %2 shows \"%3\" and not \"%4\""_s.arg(control, form, seen, text).toStdString());
    }
    Pause(20);
  }
}

void Robot::Picture(const QString& path) {
  const bool written =
      InGui([&] { return QApplication::primaryScreen()->grabWindow(0).save(path); });
  if (!written) throw std::runtime_error("no picture at " + path.toStdString());
}

void Robot::PictureOf(const QString& form, const QString& path) {
  const bool written = InGui([&] {
    QWidget* window = Form(form);
    return window != nullptr && window->grab().save(path);
  });
  if (!written) throw std::runtime_error("no picture at " + path.toStdString());
}

}  // namespace tessmar::test
