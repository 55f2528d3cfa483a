#pragma once

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <memory>

#include "setup/SetupRig.h"
#include "setup/frmSetup.h"
#include "support/FakeLogbook.h"

namespace tessmar::test {

/// The setup screen, open on what a simulated logger holds.
class SetupScreenRig : public SetupRig {
 public:
  explicit SetupScreenRig(const sim::LoggerOptions& options = {},
                          const QLocale& locale = QLocale(QLocale::English, QLocale::UnitedStates))
      : SetupRig(options, locale) {}

  frmSetup& Open() {
    Link.Busy = true;
    Form = std::make_unique<frmSetup>(SetupServices{.Link = Link,
                                                    .Settings = Settings,
                                                    .Commands = Commands,
                                                    .Programmer = Programmer,
                                                    .Loop = Loop,
                                                    .Asker = Messages,
                                                    .Dialogs = Dialogs,
                                                    .Time = Clock,
                                                    .Locale = Locale,
                                                    .Recent = Recent,
                                                    .Book = Book,
                                                    .AppPath = QStringLiteral("/opt/tessmar"),
                                                    .ShowDoHelpEntry = ShowDoHelpEntry,
                                                    .ShowHelp = [this] { ++HelpShown; },
                                                    .ShowDoHelp = [this] { ++DoHelpShown; },
                                                    .ShowAbout = [this] { ++AboutShown; }});
    Form->show();
    QApplication::setActiveWindow(Form.get());
    QCoreApplication::processEvents();
    return *Form;
  }

  template <typename Widget = QWidget>
  Widget& Get(const char* name) const {
    auto* widget = Form->findChild<Widget*>(QLatin1StringView(name));
    if (widget == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *widget;
  }
  QLineEdit& Field(const char* name) const { return Get<QLineEdit>(name); }
  QComboBox& List(const char* name) const { return Get<QComboBox>(name); }
  QCheckBox& Check(const char* name) const { return Get<QCheckBox>(name); }
  QPushButton& Button(const char* name) const { return Get<QPushButton>(name); }
  void Choose(const char* action) const { Get<QAction>(action).trigger(); }

  void ShowPage(int index) const { Get<QTabWidget>("TabStrip").setCurrentIndex(index); }
  int Page() const { return Get<QTabWidget>("TabStrip").currentIndex(); }

  /// Types a text into a field as an operator does, over what stands there.
  void Type(QWidget& field, const QString& text) const {
    field.setFocus();
    if (auto* list = qobject_cast<QComboBox*>(&field)) {
      list->lineEdit()->selectAll();
    } else {
      static_cast<QLineEdit&>(field).selectAll();
    }
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, text);
  }
  static void Click(QWidget& widget) {
    QTest::mouseClick(&widget, Qt::LeftButton);
    QCoreApplication::processEvents();
  }
  void ClickTab(int index) const {
    QTabBar* bar = Get<QTabWidget>("TabStrip").tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    QCoreApplication::processEvents();
  }

  /// One beat of the form's Timer1, without waiting for it.
  static void Beat(QWidget& form) {
    QMetaObject::invokeMethod(form.findChild<QTimer*>(QStringLiteral("Timer1")), "timeout");
  }

  RecentFiles Recent;
  FakeLogbook Book;
  bool ShowDoHelpEntry = true;
  int HelpShown = 0;
  int DoHelpShown = 0;
  int AboutShown = 0;
  std::unique_ptr<frmSetup> Form;
};

}  // namespace tessmar::test
