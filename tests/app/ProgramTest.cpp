#include "app/Program.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <memory>
#include <utility>

#include "base/Fault.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// A program with a store and a folder of its own, started as far as the main window; its message
/// loop does not run.
class ProgramStart : public testing::Test {
 protected:
  ~ProgramStart() override {
    if (program_) program_->Shutdown();
    SetTextLanguage(kLanguageEnglish);
  }

  void Start(const QStringList& switches = {}) {
    program_ = std::make_unique<Program>(
        ProgramEnvironment{.Arguments = QStringList{u"TessmarLogger"_s} + switches,
                           .AppPath = folder_.path(),
                           .StorePath = StorePath(),
                           .PortNames = {},
                           .EndProcess = [] {}},
        SystemLocale(QLocale(QLocale::English, QLocale::UnitedStates)));
    program_->Start();
  }
  QString StorePath() const { return folder_.filePath(u"store/Tessmar Logger.ini"_s); }
  void Put(const QString& file) const {
    QFile made(folder_.filePath(file));
    ASSERT_TRUE(made.open(QIODevice::WriteOnly));
  }
  bool IsEntryShown(const QString& name) const {
    return qobject_cast<QAction*>(program_->Window().Control(name))->isVisible();
  }
  bool IsEntryEnabled(const QString& name) const {
    return qobject_cast<QAction*>(program_->Window().Control(name))->isEnabled();
  }
  bool IsEnabled(const QString& name) const {
    return qobject_cast<QWidget*>(program_->Window().Control(name))->isEnabled();
  }
  QString Text(const QString& name) const { return program_->Window().Caption(name); }

  QTemporaryDir folder_;
  std::unique_ptr<Program> program_;
};

TEST_F(ProgramStart, ShowsAnEmptyDisconnectedWindowWithItsVersion) {
  Start();
  EXPECT_TRUE(program_->Window().isVisible());
  EXPECT_EQ(program_->Window().windowTitle(), u"Tessmar DO Monitor v2.1.9"_s);
  EXPECT_EQ(Text(u"lblCommStatus"_s), u"Disconnected"_s);
  const auto* status = qobject_cast<QLabel*>(program_->Window().Control(u"lblCommStatus"_s));
  EXPECT_EQ(status->palette().color(QPalette::WindowText), QColor(192, 0, 0));
  EXPECT_EQ(Text(u"cmdConnect"_s), u"Connect"_s);
  for (const QString& label :
       {u"lblPulseValue1"_s, u"lblPulseValue2"_s, u"lblLoggerName"_s, u"lblDateTime"_s,
        u"lblSampleInterval"_s, u"lblWarmup"_s, u"lblLoggingState"_s, u"lblRecordings"_s,
        u"lblAlarm(0)"_s, u"lblAlarm(1)"_s}) {
    EXPECT_EQ(Text(label), QString()) << label.toStdString();
  }
  EXPECT_EQ(Text(u"lblMax(0)"_s), u"0.000"_s);
  EXPECT_EQ(Text(u"lblMin(7)"_s), u"0.000"_s);
}

TEST_F(ProgramStart, OffersNothingButConnecting) {
  Start();
  EXPECT_TRUE(IsEnabled(u"cmdConnect"_s));
  for (const QString& control :
       {u"cmdGetSettings"_s, u"cmdGetHistoryData"_s, u"cmdClearMemory"_s, u"cmdSynchronizeTime"_s,
        u"cmdSetup"_s, u"chkSampleContinuously"_s}) {
    EXPECT_FALSE(IsEnabled(control)) << control.toStdString();
  }
  EXPECT_TRUE(IsEntryEnabled(u"mnuConnect"_s));
  EXPECT_FALSE(IsEntryEnabled(u"mnuFirmwareVersion"_s));
  EXPECT_TRUE(IsEntryEnabled(u"imnuSynchronizeTime"_s));
}

TEST_F(ProgramStart, SetsTheLinkAsItIsWithoutALogger) {
  Start();
  const LinkState& link = program_->Link();
  EXPECT_TRUE(link.TrapErrors);
  EXPECT_EQ(link.AnalogChannelCount, 8);
  EXPECT_EQ(link.PulseChannelCount, 2);
  EXPECT_EQ(link.ModemTimeoutTicks, 4);
  EXPECT_FALSE(link.Connected || link.DisplayedConnected || link.Busy || link.SampleContinuously ||
               link.SingleSampleRequested);
}

TEST_F(ProgramStart, WithoutTheOxygenHelpBesideItItsEntryIsNotShown) {
  Start();
  EXPECT_FALSE(IsEntryShown(u"mnuLaunchDOHelp"_s));
  EXPECT_TRUE(IsEntryShown(u"mnuLaunchHelp"_s));
}

TEST_F(ProgramStart, WithTheOxygenHelpBesideItItsEntryIsShown) {
  Put(u"TessmarDOHelp.chm"_s);
  Start();
  EXPECT_TRUE(IsEntryShown(u"mnuLaunchDOHelp"_s));
}

TEST_F(ProgramStart, ShowsTheImageImportForTheSmallLetterAlone) {
  Start({u"-I"_s});
  EXPECT_FALSE(IsEntryShown(u"mnuLoadLoggerImageFile"_s));
  program_->Shutdown();
  Start({u"x-i"_s});
  EXPECT_TRUE(IsEntryShown(u"mnuLoadLoggerImageFile"_s));
  EXPECT_TRUE(IsEntryShown(u"imnuLoadLoggerImageFile"_s));
}

/// Notes which window the about box belongs to, and closes it.
class AboutBoxWatch final : public QObject {
 public:
  AboutBoxWatch() { QCoreApplication::instance()->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Show && watched->objectName() == u"frmAbout"_s) {
      auto* about = qobject_cast<QDialog*>(watched);
      Owner = about->parentWidget();
      QTimer::singleShot(0, about, &QDialog::reject);
    }
    return false;
  }
  const QWidget* Owner = nullptr;
};

TEST_F(ProgramStart, ShowsTheAboutBoxOnTheWindowInFront) {
  Start();
  QDialog setup(&program_->Window());
  setup.setModal(true);
  setup.show();
  const AboutBoxWatch watch;
  qobject_cast<QAction*>(program_->Window().Control(u"mnuAbout"_s))->trigger();
  EXPECT_EQ(watch.Owner, &setup);
}

TEST_F(ProgramStart, OpensOneTrendWindowThatDoesNotBlock) {
  Start();
  auto* entry = qobject_cast<QAction*>(program_->Window().Control(u"mnuTrend"_s));
  EXPECT_EQ(Text(u"mnuData"_s), u"&Data"_s);
  entry->trigger();
  entry->trigger();
  const QList<QDialog*> trends = program_->Window().findChildren<QDialog*>(u"frmPlot"_s);
  ASSERT_EQ(trends.size(), 1);
  EXPECT_TRUE(trends[0]->isVisible());
  EXPECT_FALSE(trends[0]->isModal());
  EXPECT_EQ(trends[0]->findChild<QLabel*>(u"lblLink"_s)->text(), u"Disconnected"_s);
  program_->Shutdown();
  EXPECT_FALSE(trends[0]->isVisible());
}

TEST_F(ProgramStart, TakesTheSwitchedLanguageBeforeTheStoredOneAndThatBeforeTheSystems) {
  Start({u"-L7"_s});
  EXPECT_EQ(Text(u"lblCommStatus"_s), u"Disconnected"_s);
  program_->Shutdown();
  QSettings(StorePath(), QSettings::IniFormat).setValue(u"Configuration/Language"_s, u"7"_s);
  Start();
  EXPECT_EQ(Text(u"mnuFile"_s), u"&Datei"_s);
  program_->Shutdown();
  Start({u"-l9"_s});
  EXPECT_EQ(Text(u"mnuFile"_s), u"&File"_s);
}

TEST_F(ProgramStart, IsEndedByABadSwitchOrAStoredLanguageThatIsNoNumber) {
  EXPECT_THROW(Start({u"-l7"_s, u"-d"_s}), ConversionFault);
  QSettings(StorePath(), QSettings::IniFormat).setValue(u"Configuration/Language"_s, u"German"_s);
  EXPECT_THROW(Start(), ConversionFault);
}

TEST_F(ProgramStart, IsFollowedByOneSaveAtTheFirstShutdown) {
  Start();
  program_->Shutdown();
  EXPECT_TRUE(QFile::remove(StorePath()));
  program_->Shutdown();
  EXPECT_FALSE(QFile::exists(StorePath()));
}

TEST_F(ProgramStart, IsFollowedByAMessageWhenTheSettingsCannotBeSaved) {
  // A file stands where the store's folder would.
  Put(u"store"_s);
  Start();
  QString told;
  const auto readAndClose = [&told] {
    auto* form = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (form == nullptr) return;
    told = form->findChild<QLabel*>(u"lblMessage"_s)->text();
    form->reject();
  };
  QTimer::singleShot(0, qApp, [&] {
    QTimer::singleShot(0, qApp, readAndClose);
    program_->Shutdown();
  });
  QApplication::exec();
  EXPECT_EQ(told, u"The settings could not be saved:\n"_s + StorePath());
}

TEST_F(ProgramStart, LetsFaultsEndTheProgramOnlyWithTheSwitchAndNotWhileItEndsAnyway) {
  Start();
  EXPECT_FALSE(program_->AreFaultsFatal());
  program_->Shutdown();
  Start({u"-d"_s});
  EXPECT_TRUE(program_->AreFaultsFatal());
  program_->Shutdown();
  EXPECT_FALSE(program_->AreFaultsFatal());
}

TEST_F(ProgramStart, KeepsTheEnglishCaptionsOfTheActionMenuThatIsNotShown) {
  const QStringList names{
      u"Action"_s,      u"Connect"_s,        u"Disconnect"_s,         u"SampleContinuously"_s,
      u"GetSettings"_s, u"GetHistoryData"_s, u"ClearHistory"_s,       u"SynchronizeTime"_s,
      u"Setup"_s,       u"ResetPulseAccs"_s, u"LoadLoggerImageFile"_s};
  const QStringList english{u"&Action"_s,
                            u"Co&nnect"_s,
                            u"&Disconnect"_s,
                            u"S&ample Continuously"_s,
                            u"&Get Sample"_s,
                            u"Get &History Data"_s,
                            u"&Clear History"_s,
                            u"Synchronize &Time"_s,
                            u"&Setup"_s,
                            u"&Reset Pulse Accumulators"_s,
                            u"Load Logger Image &File"_s};
  for (const auto& [language, hidden] :
       {std::pair(u"-l7"_s, u"mnu"_s), std::pair(u"-l9"_s, u"imnu"_s)}) {
    Start({language});
    for (qsizetype i = 0; i < names.size(); ++i) EXPECT_EQ(Text(hidden + names[i]), english[i]);
    program_->Shutdown();
  }
}

TEST_F(ProgramStart, ThatFailedWritesNoSettings) {
  const QByteArray stored = "[Configuration]\nDirectPort=COM9\nLanguage=German\n";
  QDir().mkpath(folder_.filePath(u"store"_s));
  QFile store(StorePath());
  ASSERT_TRUE(store.open(QIODevice::WriteOnly));
  store.write(stored);
  store.close();
  EXPECT_THROW(Start(), ConversionFault);
  program_->EndBySignal();
  ASSERT_TRUE(store.open(QIODevice::ReadOnly));
  EXPECT_EQ(store.readAll(), stored);
}

TEST_F(ProgramStart, EndedBySignalAsksNothingAndGives1WhenTheSettingsCannotBeSaved) {
  // A file stands where the store's folder would.
  Put(u"store"_s);
  Start();
  testing::internal::CaptureStderr();
  QTimer::singleShot(0, qApp, [&] { program_->EndBySignal(); });
  EXPECT_EQ(QApplication::exec(), 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "TessmarLogger: The settings could not be saved: " + StorePath().toStdString() + "\n");
}

TEST_F(ProgramStart, EndedBySignalWritesTheSettingsAndGives0) {
  Start();
  QTimer::singleShot(0, qApp, [&] { program_->EndBySignal(); });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(QFile::exists(StorePath()));
}

TEST_F(ProgramStart, EndsBySignalUnderTheMessageOfItsOwnEnd) {
  Put(u"store"_s);
  Start();
  QTimer::singleShot(0, qApp, [&] {
    QTimer::singleShot(0, qApp, [&] {
      EXPECT_NE(QApplication::activeModalWidget(), nullptr);
      program_->EndBySignal();
    });
    program_->Shutdown();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  });
  QApplication::exec();
}

TEST_F(ProgramStart, EndsWithTheSessionOfTheDesktopUnderAnyDialog) {
  Start();
  QTimer::singleShot(0, qApp, [&] {
    QDialog dialog(&program_->Window());
    QTimer::singleShot(0, qApp, [] { QCoreApplication::quit(); });
    dialog.exec();
  });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(QFile::exists(StorePath()));
}

}  // namespace
}  // namespace tessmar
