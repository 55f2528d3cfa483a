#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSet>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include "base/MainScreen.h"
#include "e2e/Desk.h"
#include "history/frmProgress.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

/// True for what an operator works with, and not for the toolkit's parts inside of it.
bool IsControl(const QWidget& widget, const QWidget& form) {
  if (widget.window() != &form || widget.focusProxy() != nullptr) return false;
  const bool works = qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
                     qobject_cast<const QComboBox*>(&widget) != nullptr ||
                     qobject_cast<const QLineEdit*>(&widget) != nullptr ||
                     qobject_cast<const QPlainTextEdit*>(&widget) != nullptr ||
                     qobject_cast<const QAbstractItemView*>(&widget) != nullptr ||
                     qobject_cast<const QTabBar*>(&widget) != nullptr;
  if (!works || qobject_cast<const QHeaderView*>(&widget) != nullptr) return false;
  // The button of a table's corner, the arrows of a tab bar, what a menu bar has no room for.
  const QWidget* parent = widget.parentWidget();
  return qobject_cast<const QComboBox*>(parent) == nullptr &&
         qobject_cast<const QAbstractItemView*>(parent) == nullptr &&
         qobject_cast<const QTabBar*>(parent) == nullptr &&
         widget.objectName() != "qt_menubar_ext_button"_L1;
}

QString NameOf(QWidget& widget) {
  const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&widget);
  return spoken == nullptr ? QString() : spoken->text(QAccessible::Name).trimmed();
}

/// What Tab comes by, all around the form.
QSet<const QWidget*> TabRound(QWidget& form) {
  constexpr int kMostControls = 200;
  QSet<const QWidget*> visited;
  for (int step = 0; step < kMostControls; ++step) {
    QWidget* at = form.focusWidget();
    if (at != nullptr) visited.insert(at);
    QTest::keyClick(at != nullptr ? at : &form, Qt::Key_Tab);
  }
  return visited;
}

/// Of option buttons that belong together Tab finds the chosen one, and the arrow keys the others.
bool IsReachedByArrows(const QWidget& widget) {
  const auto* option = qobject_cast<const QRadioButton*>(&widget);
  return option != nullptr && !option->isChecked();
}

void ExpectAccessible(const QString& name) {
  Robot::WaitForForm(name);
  const QStringList complaints = Robot::InGui([&] {
    QStringList found;
    QWidget* form = Robot::Form(name);
    if (form->windowTitle().isEmpty()) found.append(u"the form has no title"_s);
    form->activateWindow();
    const QSet<const QWidget*> round = TabRound(*form);
    for (QWidget* widget : form->findChildren<QWidget*>()) {
      if (!widget->isVisible() || !IsControl(*widget, *form)) continue;
      const QString control = widget->objectName();
      if (control.isEmpty()) {
        found.append(
            u"a %1 has no name"_s.arg(QString::fromLatin1(widget->metaObject()->className())));
      }
      if (NameOf(*widget).isEmpty()) found.append(control + u" says nothing"_s);
      if (IsReachedByArrows(*widget)) continue;
      if ((widget->focusPolicy() & Qt::TabFocus) == 0) found.append(control + u" takes no Tab"_s);
      if (widget->isEnabled() && !round.contains(widget))
        found.append(control + u" is left out by Tab"_s);
    }
    return found;
  });
  for (const QString& complaint : complaints)
    ADD_FAILURE() << name.toStdString() << ": " << complaint.toStdString();
}

void ExpectMetersSpeak() {
  Robot::InGui([] {
    for (int channel = 0; channel < 8; ++channel) {
      auto* column =
          qobject_cast<QWidget*>(Robot::Control(u"frmMain"_s, ElementName("fraColumn", channel)));
      QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(column);
      ASSERT_NE(spoken, nullptr);
      EXPECT_FALSE(NameOf(*column).isEmpty()) << "meter " << channel;
      ASSERT_NE(spoken->valueInterface(), nullptr) << "meter " << channel;
      const int percent = spoken->valueInterface()->currentValue().toInt();
      EXPECT_GE(percent, 0);
      EXPECT_LE(percent, 100);
    }
  });
}

/// In the user interface's thread.
QString ShownFact(const QString& label) {
  return qobject_cast<QLabel*>(Robot::Control(u"frmMain"_s, label))->text();
}

QStringList FactsSpoken() {
  return Robot::InGui([] {
    QStringList spoken;
    for (const auto& name : {u"lblArchived"_s, u"lblClockDrift"_s, u"lblMemoryFull"_s}) {
      auto* label = qobject_cast<QWidget*>(Robot::Control(u"frmMain"_s, name));
      EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->role(), QAccessible::StaticText);
      EXPECT_EQ(label->focusPolicy(), Qt::NoFocus);
      EXPECT_TRUE(label->isVisible());
      spoken.append(NameOf(*label));
    }
    return spoken;
  });
}

// What stands at the foot of the main window is heard in the same words.
void ExpectFactsSpeak(bool german) {
  Robot::WaitFor(u"the facts"_s, [] { return !ShownFact(u"lblArchived"_s).isEmpty(); });
  const QStringList facts = FactsSpoken();
  EXPECT_EQ(facts[0], german ? u"30 von 30 Datensätzen sind noch nicht im Archiv"_s
                             : u"30 of 30 records are not in the archive yet"_s);
  EXPECT_EQ(facts[1], MainText(u"lblClockDrift"_s));
  EXPECT_EQ(facts[2], MainText(u"lblMemoryFull"_s));
  EXPECT_TRUE(facts[2].startsWith(german ? u"älteste Datensätze werden ab "_s
                                         : u"oldest records are overwritten from "_s));
}

void LeaveByEscape(const QString& form) {
  Robot::InGui([&] { QTest::keyClick(Robot::Form(form), Qt::Key_Escape); });
  Robot::WaitForNoForm(form);
}

void WalkThroughConnecting(Desk& desk, bool german) {
  ExpectAccessible(u"frmConnect"_s);
  EXPECT_EQ(FactsSpoken(), (QStringList{{}, {}, {}}));
  desk.Dial();
  ExpectAccessible(u"frmModem"_s);
  desk.WaitForReading();
  ExpectAccessible(u"frmMain"_s);
  ExpectMetersSpeak();
  ExpectFactsSpeak(german);
}

void WalkThroughArchive() {
  Robot::Trigger(u"frmMain"_s, u"mnuArchive"_s);
  for (const int page : {0, 1}) {
    Robot::InGui([page] {
      qobject_cast<QTabWidget*>(Robot::Control(u"frmArchive"_s, u"tabLogbook"_s))
          ->setCurrentIndex(page);
    });
    ExpectAccessible(u"frmArchive"_s);
  }
  Robot::Click(u"frmArchive"_s, u"cmdClose"_s);
  Robot::WaitForNoForm(u"frmArchive"_s);
}

void WalkThroughHistory() {
  Robot::Click(u"frmMain"_s, u"cmdGetHistoryData"_s);
  Robot::WaitFor(u"the upload's end"_s, [] {
    const auto* okay = qobject_cast<QWidget*>(Robot::Control(u"frmGetHistoryData"_s, u"cmdOkay"_s));
    return okay != nullptr && okay->isEnabled();
  });
  ExpectAccessible(u"frmGetHistoryData"_s);
  Robot::Click(u"frmGetHistoryData"_s, u"cmdOkay"_s);
  ExpectAccessible(u"frmHistory"_s);
  Robot::Click(u"frmHistory"_s, u"cmdOptions"_s);
  ExpectAccessible(u"frmHistoryOptions"_s);
  Robot::Click(u"frmHistoryOptions"_s, u"cmdCancel"_s);
  Robot::WaitForForm(u"frmHistory"_s);
  Robot::Click(u"frmHistory"_s, u"cmdPlot"_s);
  ExpectAccessible(u"frmPlot"_s);
  Robot::Click(u"frmPlot"_s, u"cmdOK"_s);
  Robot::WaitForForm(u"frmHistory"_s);
  Robot::Click(u"frmHistory"_s, u"cmdPack"_s);
  ExpectAccessible(u"FMessage"_s);
  Robot::Click(u"FMessage"_s, u"cmdButton(1)"_s);
  Robot::WaitForForm(u"frmHistory"_s);
  Robot::Click(u"frmHistory"_s, u"cmdOK"_s);
  Robot::WaitForNoForm(u"frmHistory"_s);
  Robot::InGui([] {
    frmProgress progress(10, nullptr);
    EXPECT_FALSE(progress.windowTitle().isEmpty());
    for (QWidget* part : progress.findChildren<QWidget*>()) {
      EXPECT_FALSE(part->objectName().isEmpty());
      EXPECT_FALSE(NameOf(*part).isEmpty()) << part->objectName().toStdString();
    }
  });
}

void WalkThroughSetup(Desk& desk) {
  Robot::WaitFor(u"the link to be free"_s, [&] { return !desk.TheProgram().Link().Busy; });
  desk.OpenSetup();
  for (const int page : {1, 2, 3, 0}) {
    Robot::TurnTo(u"frmSetup"_s, u"TabStrip"_s, page);
    ExpectAccessible(u"frmSetup"_s);
  }
  Robot::Click(u"frmSetup"_s, u"cmdCalibrate(0)"_s);
  ExpectAccessible(u"frmCalibrate"_s);
  Robot::Click(u"frmCalibrate"_s, u"cmdNext"_s);
  Robot::WaitFor(u"the next page"_s, [] {
    const auto* back = qobject_cast<QWidget*>(Robot::Control(u"frmCalibrate"_s, u"cmdBack"_s));
    return back->isEnabled();
  });
  ExpectAccessible(u"frmCalibrate"_s);
  Robot::Click(u"frmCalibrate"_s, u"cmdCancel"_s);
  Robot::WaitForNoForm(u"frmCalibrate"_s);
  Robot::ClickUntilGone(u"frmSetup"_s, u"cmdCancel"_s);
}

class EveryScreen : public testing::TestWithParam<bool> {};

// By keyboard alone, and with a screen reader.
TEST_P(EveryScreen, IsWorkedByKeyboardAndSaysWhatItsControlsAre) {
  const bool german = GetParam();
  Desk desk({u"--modem"_s, u"--modem-dial-time"_s, u"1500"_s, u"--records"_s, u"30"_s},
            {u"-i"_s, german ? u"-l7"_s : u"-l9"_s},
            SystemLocale(QLocale(german ? u"de_DE"_s : u"en_US"_s)));
  const QString trouble = desk.Work([&] {
    WalkThroughConnecting(desk, german);
    WalkThroughHistory();
    WalkThroughArchive();
    WalkThroughSetup(desk);
    Robot::Trigger(u"frmMain"_s, u"mnuAbout"_s);
    ExpectAccessible(u"frmAbout"_s);
    LeaveByEscape(u"frmAbout"_s);
    Robot::Trigger(u"frmMain"_s,
                   german ? u"imnuLoadLoggerImageFile"_s : u"mnuLoadLoggerImageFile"_s);
    ExpectAccessible(u"frmImportSetup"_s);
    Robot::Click(u"frmImportSetup"_s, u"cmdCancel"_s);
    Robot::WaitForNoForm(u"frmImportSetup"_s);
    desk.Disconnect();
    Robot::WaitFor(u"the facts to go"_s, [] { return ShownFact(u"lblArchived"_s).isEmpty(); });
    EXPECT_EQ(FactsSpoken(), (QStringList{{}, {}, {}}));
  });
  EXPECT_EQ(trouble, QString());
}

INSTANTIATE_TEST_SUITE_P(, EveryScreen, testing::Bool(), [](const auto& german) {
  return std::string(german.param ? "InGerman" : "InEnglish");
});

}  // namespace
}  // namespace tessmar::test
