// A tour of the real program in its real windows: connects to the logger that the environment
// names, looks at everything, and leaves pictures and a CSV file. ./run takes it where there is no
// display.

#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <cstdio>

#include "app/Program.h"
#include "e2e/Robot.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

struct TourLanguage {
  QString Name;  ///< Folder of its pictures.
  QString Switch;
  QLocale Locale;
};

class Tour {
 public:
  Tour(const TourLanguage& language, const QString& folder)
      : language_(language), folder_(QDir(folder).filePath(language.Name)) {
    QDir().mkpath(folder_);
  }

  /// @return what went wrong, or nothing.
  QString Take() {
    QTemporaryDir store;
    Program program(
        {
            .Arguments = {u"TessmarLogger"_s, language_.Switch},
            .AppPath = QCoreApplication::applicationDirPath(),
            .StorePath = store.filePath(u"Tessmar Logger.ini"_s),
            .PortNames = qEnvironmentVariable("TESSMAR_PORTS"),
            .EndProcess = [] { QCoreApplication::exit(0); },
        },
        SystemLocale(language_.Locale));
    link_ = &program.Link();
    QString trouble;
    Robot robot;
    program.Start();
    robot.Start([this] { Walk(); },
                [&](const QString& text) {
                  trouble = text;
                  program.Window().close();
                });
    QApplication::exec();
    robot.Join();
    return trouble;
  }

 private:
  void Walk() {
    Connect();
    WatchLiveReadings();
    HarvestHistory();
    LookAtSetup();
    Robot::Trigger(main_, u"mnuAbout"_s);
    Robot::WaitForForm(u"frmAbout"_s);
    Take(u"about"_s);
    Robot::Press(Qt::Key_Escape);
    Robot::WaitForNoForm(u"frmAbout"_s);
  }

  void Connect() {
    Robot::WaitForForm(u"frmConnect"_s);
    Robot::InGui([] {
      auto* ports = qobject_cast<QComboBox*>(Robot::Control(u"frmConnect"_s, u"cmbPort1"_s));
      ports->setCurrentIndex(ports->findText(u"COM9"_s, Qt::MatchStartsWith));
    });
    Take(u"connect"_s);
    Robot::Click(u"frmConnect"_s, u"cmdConnect"_s);
    WaitForReadings();
    Take(u"connected"_s);
  }

  void WaitForReadings() {
    Robot::WaitForForm(main_, 30000);
    Robot::WaitFor(u"a reading"_s, [this] {
      const auto* label = qobject_cast<QLabel*>(Robot::Control(main_, u"lblValue(0)"_s));
      const auto* setup = qobject_cast<QWidget*>(Robot::Control(main_, u"cmdSetup"_s));
      return !label->text().isEmpty() && setup->isEnabled() && !link_->Busy;
    });
  }

  void WatchLiveReadings() {
    Robot::Click(main_, u"chkSampleContinuously"_s);
    Robot::WaitFor(u"four older readings"_s, [this] {
      const auto* label = qobject_cast<QLabel*>(Robot::Control(main_, u"lblHistory(3)"_s));
      return label->text().count(u'.') == 4;
    });
    Take(u"live"_s);
    Robot::Click(main_, u"chkSampleContinuously"_s);
    WaitForReadings();
  }

  void HarvestHistory() {
    Robot::Click(main_, u"cmdGetHistoryData"_s);
    Robot::WaitFor(
        u"the upload's end"_s,
        [] {
          const auto* okay =
              qobject_cast<QWidget*>(Robot::Control(u"frmGetHistoryData"_s, u"cmdOkay"_s));
          return okay != nullptr && okay->isEnabled();
        },
        60000);
    Take(u"upload"_s);
    Robot::Click(u"frmGetHistoryData"_s, u"cmdOkay"_s);
    Robot::WaitForForm(u"frmHistory"_s);
    Take(u"history"_s);

    Robot::Click(u"frmHistory"_s, u"cmdOptions"_s);
    Robot::WaitForForm(u"frmHistoryOptions"_s);
    Take(u"history-options"_s);
    Robot::Click(u"frmHistoryOptions"_s, u"cmdCancel"_s);
    Robot::WaitForForm(u"frmHistory"_s);

    Robot::Click(u"frmHistory"_s, u"cmdPack"_s);
    Robot::WaitForForm(u"FMessage"_s);
    Take(u"pack-question"_s);
    Robot::Click(u"FMessage"_s, u"cmdButton(0)"_s);
    Robot::WaitForForm(u"frmHistory"_s);
    Take(u"packed"_s);

    SaveCsv();
    Robot::Click(u"frmHistory"_s, u"cmdOK"_s);
    Robot::WaitForNoForm(u"frmHistory"_s);
    WaitForReadings();
  }

  void SaveCsv() {
    const QString path = QDir(folder_).absoluteFilePath(u"history.csv"_s);
    QFile::remove(path);
    Robot::Click(u"frmHistory"_s, u"cmdSave"_s);
    Robot::WaitForForm(u"dlgFile"_s);
    Take(u"save"_s);
    Robot::Type(u"dlgFile"_s, u"fileNameEdit"_s, path);
    Robot::Press(Qt::Key_Return);
    Robot::WaitForForm(u"frmHistory"_s);
    Robot::WaitFor(u"the CSV file"_s, [path] { return QFile::exists(path); });
  }

  void LookAtSetup() {
    Robot::Click(main_, u"cmdSetup"_s);
    Robot::WaitForForm(u"frmSetup"_s);
    static constexpr const char* kPages[] = {"analog", "digital", "general", "oxygen"};
    for (int page = 0; page < 4; ++page) {
      Robot::InGui([page] {
        qobject_cast<QTabWidget*>(Robot::Control(u"frmSetup"_s, u"TabStrip"_s))
            ->setCurrentIndex(page);
      });
      Take(u"setup-"_s + QString::fromLatin1(kPages[page]));
    }
    Robot::Click(u"frmSetup"_s, u"cmdCancel"_s);
    Robot::WaitForNoForm(u"frmSetup"_s);
    WaitForReadings();
  }

  // Lets what is on the way be painted first.
  void Take(const QString& name) {
    Robot::Pause(250);
    Robot::Picture(QDir(folder_).filePath(name + u".png"_s));
  }

  const QString main_ = u"frmMain"_s;
  TourLanguage language_;
  QString folder_;
  const LinkState* link_ = nullptr;  ///< Looked at in the user interface's thread only.
};

}  // namespace
}  // namespace tessmar::test

int main(int argc, char** argv) {
  using namespace Qt::StringLiterals;
  using tessmar::test::Tour;
  using tessmar::test::TourLanguage;

  QApplication application(argc, argv);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  QCommandLineParser parser;
  const QCommandLineOption out(u"out"_s, u"Folder for pictures and CSV files."_s, u"folder"_s,
                               u"tour"_s);
  parser.addOption(out);
  parser.addHelpOption();
  parser.process(application);

  const TourLanguage languages[] = {
      {u"en"_s, u"-l9"_s, QLocale(u"en_US"_s)},
      {u"de"_s, u"-l7"_s, QLocale(u"de_DE"_s)},
  };
  const QString folder = parser.value(out);
  for (const TourLanguage& language : languages) {
    const QString trouble = Tour(language, folder).Take();
    if (!trouble.isEmpty()) {
      std::fprintf(stderr, "The tour (%s) ended early: %s\n", qPrintable(language.Name),
                   qPrintable(trouble));
      return 1;
    }
    std::printf("Pictures and history.csv are in %s\n",
                qPrintable(QDir(folder).absoluteFilePath(language.Name)));
  }
  return 0;
}
