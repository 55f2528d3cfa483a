#include "app/frmMain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QGroupBox>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QToolTip>
#include <vector>

#include "app/MainLocalizer.h"
#include "base/TextTable.h"
#include "ui/FactsRow.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class MainWindow : public testing::TestWithParam<int> {
 protected:
  ~MainWindow() override { SetTextLanguage(kLanguageEnglish); }

  void Localize(std::int16_t language) {
    SetTextLanguage(language);
    LocalizeMainScreen(window_, language);
  }
  QAction* Entry(const QString& name) const {
    return qobject_cast<QAction*>(window_.Control(name));
  }
  template <typename Widget>
  Widget* Find(const QString& name) const {
    return window_.findChild<Widget*>(name);
  }

  frmMain window_;
};

// Every control by its name, as operators' tools and the core's tables know it.
TEST_F(MainWindow, EveryControlHasItsName) {
  QStringList names = {u"fraCommStatus"_s,
                       u"lblCommStatus"_s,
                       u"fraLoggerName"_s,
                       u"lblLoggerName"_s,
                       u"fraDateTime"_s,
                       u"lblDateTime"_s,
                       u"fraLoggingState"_s,
                       u"lblLoggingState"_s,
                       u"fraRecordings"_s,
                       u"lblRecordings"_s,
                       u"fraInterval"_s,
                       u"lblSampleInterval"_s,
                       u"fraWarmup"_s,
                       u"lblWarmup"_s,
                       u"fraPulse1"_s,
                       u"lblPulseValue1"_s,
                       u"fraPulse2"_s,
                       u"lblPulseValue2"_s,
                       u"fraAlarm1"_s,
                       u"lblAlarm(0)"_s,
                       u"fraAlarm2"_s,
                       u"lblAlarm(1)"_s,
                       u"cmdConnect"_s,
                       u"cmdGetSettings"_s,
                       u"cmdGetHistoryData"_s,
                       u"cmdClearMemory"_s,
                       u"cmdSynchronizeTime"_s,
                       u"cmdSetup"_s,
                       u"chkSampleContinuously"_s};
  for (int channel = 0; channel < 8; ++channel) {
    for (const char* array :
         {"fraMeter", "fraColumn", "lblMax", "lblMin", "lblValue", "lblUnits", "lblHistory"}) {
      names.append(ElementName(array, channel));
    }
  }
  for (int relay = 0; relay < 4; ++relay) {
    for (const char* array : {"pctRelay", "lblRelayState", "lblRelayNumber"}) {
      names.append(ElementName(array, relay));
    }
  }
  for (const QString& name : names) {
    EXPECT_NE(window_.findChild<QWidget*>(name), nullptr) << name.toStdString();
  }
  EXPECT_EQ(window_.objectName(), u"frmMain"_s);
}

TEST_F(MainWindow, BothActionMenusHaveTheSameEntriesInTheSameOrder) {
  const QStringList order = {
      u"Connect"_s,        u"Disconnect"_s,         u"SampleContinuously"_s, u"GetSettings"_s,
      u"GetHistoryData"_s, u"ClearHistory"_s,       u"SynchronizeTime"_s,    u"Setup"_s,
      u"ResetPulseAccs"_s, u"LoadLoggerImageFile"_s};
  for (const QString& prefix : {u"mnu"_s, u"imnu"_s}) {
    const auto* menu = qobject_cast<QMenu*>(window_.Control(prefix + u"Action"_s));
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), order.size());
    for (qsizetype i = 0; i < order.size(); ++i) {
      EXPECT_EQ(menu->actions().at(i)->objectName(), prefix + order.at(i));
    }
  }
}

TEST_F(MainWindow, OnlyTheEnglishSetHasShortcuts) {
  const std::vector<std::pair<QString, QString>> shortcuts = {
      {u"Connect"_s, u"Ctrl+N"_s},
      {u"Disconnect"_s, u"Ctrl+D"_s},
      {u"SampleContinuously"_s, u"Ctrl+A"_s},
      {u"GetSettings"_s, u"Ctrl+G"_s},
      {u"GetHistoryData"_s, u"Ctrl+H"_s},
      {u"ClearHistory"_s, u"Ctrl+C"_s},
      {u"SynchronizeTime"_s, u"Ctrl+T"_s},
      {u"Setup"_s, u"Ctrl+S"_s},
      {u"ResetPulseAccs"_s, u"Ctrl+R"_s},
      {u"LoadLoggerImageFile"_s, QString()}};
  for (const auto& [name, keys] : shortcuts) {
    EXPECT_EQ(Entry(u"mnu"_s + name)->shortcut().toString(), keys) << name.toStdString();
    EXPECT_TRUE(Entry(u"imnu"_s + name)->shortcut().isEmpty()) << name.toStdString();
  }
}

TEST_F(MainWindow, EnglishMenusStandOnTheBar) {
  Localize(kLanguageEnglish);
  QStringList bar;
  for (const QAction* action : window_.menuBar()->actions()) {
    if (action->isVisible()) bar.append(action->text());
  }
  EXPECT_EQ(bar, QStringList({u"&File"_s, u"&Action"_s, u"&Data"_s, u"&Help"_s}));
  EXPECT_EQ(Entry(u"mnuGetHistoryData"_s)->text(), u"Get &History Data"_s);
  EXPECT_EQ(Find<QAbstractButton>(u"chkSampleContinuously"_s)->text(), u"Sample Continuously"_s);
  EXPECT_EQ(Find<QGroupBox>(u"fraPulse2"_s)->title(), u"Pulse Channel 2"_s);
}

TEST_F(MainWindow, GermanMenusStandOnTheBar) {
  Localize(kLanguageGerman);
  QStringList bar;
  for (const QAction* action : window_.menuBar()->actions()) {
    if (action->isVisible()) bar.append(action->text());
  }
  EXPECT_EQ(bar, QStringList({u"&Datei"_s, u"&Aktion"_s, u"Da&ten"_s, u"&Hilfe"_s}));
  EXPECT_EQ(Entry(u"imnuClearHistory"_s)->text(), u"Speicherdaten &löschen"_s);
  EXPECT_EQ(Entry(u"imnuLoadLoggerImageFile"_s)->text(), u"Load Logger Image &File"_s);
  EXPECT_EQ(Entry(u"mnuLaunchDOHelp"_s)->text(), u"&Dissolved Oxygen Sensor Help"_s);
}

TEST_F(MainWindow, TheThirdLanguageBreaksOneTextIntoTwoLines) {
  Localize(kLanguageThird);
  EXPECT_EQ(Find<QAbstractButton>(u"chkSampleContinuously"_s)->text(), u"Sample\nContinuously"_s);
  EXPECT_EQ(window_.Caption(u"chkSampleContinuously"_s), u"Sample\r\nContinuously"_s);
  EXPECT_EQ(Entry(u"mnuConnect"_s)->text(), u"Co&nnect"_s);
}

TEST_F(MainWindow, StartsWithLoggerCommandsDisabledAndTheGermanSetEnabled) {
  for (const char* name : {"cmdGetSettings", "cmdGetHistoryData", "cmdClearMemory",
                           "cmdSynchronizeTime", "cmdSetup", "chkSampleContinuously"}) {
    EXPECT_FALSE(Find<QWidget>(QString::fromLatin1(name))->isEnabled()) << name;
  }
  for (const char* name : {"mnuDisconnect", "mnuSampleContinuously", "mnuGetSettings",
                           "mnuGetHistoryData", "mnuClearHistory", "mnuSynchronizeTime", "mnuSetup",
                           "mnuResetPulseAccs", "mnuFirmwareVersion"}) {
    EXPECT_FALSE(Entry(QString::fromLatin1(name))->isEnabled()) << name;
    const QString twin = u'i' + QString::fromLatin1(name);
    if (window_.findChild<QAction*>(twin) != nullptr) {
      EXPECT_TRUE(Entry(twin)->isEnabled()) << name;
    }
  }
  EXPECT_TRUE(Find<QWidget>(u"cmdConnect"_s)->isEnabled());
  EXPECT_TRUE(Entry(u"mnuConnect"_s)->isEnabled());
}

TEST_F(MainWindow, ImageImportIsHiddenUntilAskedFor) {
  EXPECT_FALSE(Entry(u"mnuLoadLoggerImageFile"_s)->isVisible());
  EXPECT_FALSE(Entry(u"imnuLoadLoggerImageFile"_s)->isVisible());
  window_.SetVisible(u"mnuLoadLoggerImageFile"_s, true);
  EXPECT_TRUE(Entry(u"mnuLoadLoggerImageFile"_s)->isVisible());
}

TEST_F(MainWindow, ButtonsAndEntriesAskForTheSameCommands) {
  std::vector<MainCommand> asked;
  QObject::connect(&window_, &frmMain::CommandRequested, &window_,
                   [&](MainCommand command) { asked.push_back(command); });
  for (const char* name : {"cmdGetHistoryData", "cmdClearMemory"}) {
    window_.SetEnabled(QString::fromLatin1(name), true);
    Find<QAbstractButton>(QString::fromLatin1(name))->click();
  }
  for (const char* name : {"mnuGetHistoryData", "mnuClearHistory"}) {
    window_.SetEnabled(QString::fromLatin1(name), true);
    Entry(QString::fromLatin1(name))->trigger();
  }
  Entry(u"imnuGetHistoryData"_s)->trigger();
  using enum MainCommand;
  EXPECT_THAT(asked,
              testing::ElementsAre(GetHistory, ClearHistory, GetHistory, ClearHistory, GetHistory));
}

TEST_F(MainWindow, ALongTextDoesNotMoveTheLayout) {
  window_.resize(window_.sizeHint());
  const QSize before = window_.minimumSizeHint();
  window_.SetCaption(u"lblValue(0)"_s, u"-123456.123456"_s);
  window_.SetCaption(u"lblLoggerName"_s, QString(32, u'W'));
  window_.SetCaption(u"lblHistory(0)"_s, u"1\r\n2\r\n3\r\n4"_s);
  EXPECT_EQ(window_.minimumSizeHint(), before);
  EXPECT_EQ(Find<QLabel>(u"lblHistory(0)"_s)->text(), u"1\n2\n3\n4"_s);
}

// The longest facts in each language.
struct Facts {
  std::int16_t Language;
  QString Archived;
  QString Drift;
  QString Memory;
};
const Facts kLongestFacts[] = {
    {kLanguageEnglish, u"163,520 of 163,520 records are not in the archive yet"_s,
     u"clock 1 h 59 s slow: daylight saving?"_s,
     u"oldest records not overwritten before 27 September 2027, 12:45 PM: upload by then at the"
     " latest"_s},
    {kLanguageGerman, u"163.520 von 163.520 Datensätzen sind noch nicht im Archiv"_s,
     u"Uhr geht mehr als ein Jahr nach"_s,
     u"älteste Datensätze frühestens ab 27. September 2027, 12:45 überschrieben: spätestens dann"
     " auslesen"_s},
};

// Its rows are wider than the screen of the tests, 800 pixels.
TEST_F(MainWindow, TheStatusLineCanBeReadOnASmallScreen) {
  ASSERT_EQ(window_.screen()->availableGeometry().width(), 800);
  for (const Facts& facts : kLongestFacts) {
    Localize(facts.Language);
    window_.show();
    ASSERT_GT(Find<QWidget>(u"cmdSetup"_s)->parentWidget()->width(), 800);
    window_.SetCaption(u"lblArchived"_s, facts.Archived);
    window_.SetCaption(u"lblClockDrift"_s, facts.Drift);
    window_.SetCaption(u"lblMemoryFull"_s, facts.Memory);
    QApplication::processEvents();
    for (const char* name : {"lblArchived", "lblClockDrift", "lblMemoryFull"}) {
      const auto* label = Find<ElidedLabel>(QString::fromLatin1(name));
      ASSERT_NE(label, nullptr) << name;
      EXPECT_GE(label->width(), label->TextWidth()) << name;
      EXPECT_LE(label->mapTo(&window_, label->rect().topRight()).x(), 800) << name;
    }
  }
}

TEST_F(MainWindow, TheStatusLinesTextsMoveNothing) {
  window_.show();
  QApplication::processEvents();
  const auto geometries = [this] {
    QList<QRect> all{window_.geometry()};
    for (const QWidget* widget : window_.findChildren<QWidget*>())
      if (qobject_cast<const ElidedLabel*>(widget) == nullptr) all.append(widget->geometry());
    return all;
  };
  const QList<QRect> before = geometries();
  window_.SetCaption(u"lblArchived"_s, QString(300, u'W'));
  window_.SetCaption(u"lblClockDrift"_s, QString(300, u'W'));
  window_.SetCaption(u"lblMemoryFull"_s, QString(300, u'W'));
  QApplication::processEvents();
  EXPECT_EQ(geometries(), before);
}

TEST_F(MainWindow, AFactTooLongForItsRoomIsHeardWholeAndShownAsATip) {
  window_.show();
  auto* label = Find<ElidedLabel>(u"lblMemoryFull"_s);
  const auto askForTip = [&](const QString& text) {
    window_.SetCaption(u"lblMemoryFull"_s, text);
    QApplication::processEvents();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name), text);
    QHelpEvent ask(QEvent::ToolTip, QPoint(2, 2), label->mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(label, &ask);
    return QToolTip::text();
  };
  EXPECT_EQ(askForTip(u"memory full"_s), QString());
  const QString text = u"all "_s + QString(300, u'W');
  EXPECT_EQ(askForTip(text), text);
  EXPECT_LT(label->width(), label->TextWidth());
}

TEST_F(MainWindow, AColourIsTheTextsAndABackgroundComesAndGoes) {
  window_.SetTextColour(u"lblCommStatus"_s, {192, 0, 0});
  EXPECT_EQ(Find<QLabel>(u"lblCommStatus"_s)->palette().color(QPalette::WindowText),
            QColor(192, 0, 0));
  window_.SetBackground(u"lblRelayState(1)"_s, Rgb{255, 128, 128});
  EXPECT_TRUE(Find<QLabel>(u"lblRelayState(1)"_s)->autoFillBackground());
  EXPECT_EQ(Find<QLabel>(u"lblRelayState(1)"_s)->palette().color(QPalette::Window),
            QColor(255, 128, 128));
  window_.SetBackground(u"lblRelayState(1)"_s, std::nullopt);
  EXPECT_FALSE(Find<QLabel>(u"lblRelayState(1)"_s)->autoFillBackground());
}

TEST_F(MainWindow, WaitCursorsNest) {
  window_.SetWaitCursor(true);
  window_.SetWaitCursor(true);
  window_.SetWaitCursor(false);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  window_.SetWaitCursor(false);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(MainWindow, FitsASmallScreenInBothLanguages) {
  for (const std::int16_t language : {kLanguageEnglish, kLanguageGerman}) {
    Localize(language);
    const QSize size = window_.minimumSizeHint();
    EXPECT_LE(size.width(), 1366) << language;
    EXPECT_LE(size.height(), 740) << language;
  }
}

TEST_F(MainWindow, IsNoLargerThanAScreenThatItsRowsDoNotFit) {
  const QSize screen = window_.screen()->availableGeometry().size();
  ASSERT_EQ(screen.width(), 800);
  for (const std::int16_t language : {kLanguageEnglish, kLanguageGerman}) {
    Localize(language);
    window_.show();
    QApplication::processEvents();
    EXPECT_LE(window_.frameGeometry().width(), screen.width()) << language;
    EXPECT_LE(window_.frameGeometry().height(), 600) << language;
  }
}

// The keyboard brings into view what does not fit.
TEST_F(MainWindow, WhatGetsTheFocusOnASmallScreenIsSeen) {
  window_.SetEnabled(u"chkSampleContinuously"_s, true);
  window_.SetCaption(u"chkSampleContinuously"_s, u"Sample Continuously"_s);
  window_.show();
  window_.activateWindow();
  QApplication::processEvents();
  auto* last = Find<QWidget>(u"chkSampleContinuously"_s);
  const auto isSeen = [last] { return last->visibleRegion().boundingRect() == last->rect(); };
  EXPECT_FALSE(isSeen());
  Find<QWidget>(u"cmdConnect"_s)->setFocus();
  QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
  QApplication::sendEvent(Find<QWidget>(u"cmdConnect"_s), &tab);
  EXPECT_TRUE(last->hasFocus());
  QApplication::processEvents();
  EXPECT_TRUE(isSeen());
}

TEST_F(MainWindow, EveryPaintIsToldAndTheFirstOneApart) {
  int first = 0;
  int painted = 0;
  QObject::connect(&window_, &frmMain::FirstPainted, &window_, [&] { ++first; });
  QObject::connect(&window_, &frmMain::Painted, &window_, [&] { ++painted; });
  window_.show();
  window_.repaint();
  EXPECT_EQ(first, 0) << "told before the painting is over";
  QApplication::processEvents();
  const int before = painted;
  EXPECT_GE(before, 1);
  window_.repaint();
  QApplication::processEvents();
  EXPECT_GT(painted, before);
  EXPECT_EQ(first, 1);
}

TEST_F(MainWindow, ClosingIsToldOnce) {
  int closed = 0;
  QObject::connect(&window_, &frmMain::Closed, &window_, [&] { ++closed; });
  window_.show();
  window_.close();
  EXPECT_EQ(closed, 1);
}

}  // namespace
}  // namespace tessmar
