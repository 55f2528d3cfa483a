// A tour of the real program in its real windows: connects to the logger that the environment
// names, looks at everything, and leaves pictures of every form, of the whole screen with it (in
// the folder "screen"), and a CSV file. ./run takes it where there is no display.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QProgressBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QUuid>
#include <cstdio>

#include "app/Program.h"
#include "archive/Store.h"
#include "e2e/Robot.h"
#include "settings/config.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

struct TourLanguage {
  QString Name;  ///< Folder of its pictures.
  QString Switch;
  QLocale Locale;
  bool IsGerman;
};

class Tour {
 public:
  Tour(const TourLanguage& language, const QString& folder)
      : language_(language), folder_(QDir(folder).filePath(language.Name)) {
    QDir(folder_).mkpath(u"screen"_s);
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
            .ArchivePath = store.filePath(u"archive.sqlite"_s),
            .EndProcess = [] { QCoreApplication::exit(0); },
        },
        SystemLocale(language_.Locale));
    link_ = &program.Link();
    archive_ = store.filePath(u"archive.sqlite"_s);
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
    OpenMenus();
    WatchTrend();
    HarvestHistory();
    LookAtSetup();
    MeetRefusals();
    Calibrate();
    LeaveSetup();
    LookAtArchive();
    Robot::Trigger(main_, u"mnuAbout"_s);
    Robot::WaitForForm(u"frmAbout"_s);
    Take(u"about"_s, u"frmAbout"_s);
    Robot::Press(Qt::Key_Escape);
    Robot::WaitForNoForm(u"frmAbout"_s);
  }

  void LookAtArchive() {
    const QString archive = u"frmArchive"_s;
    Robot::Trigger(main_, u"mnuArchive"_s);
    Robot::WaitForForm(archive);
    Take(u"archive"_s, archive);
    // The first logger, with nothing of it chosen: its series.
    Robot::InGui([archive] {
      auto* loggers = qobject_cast<QAbstractItemView*>(Robot::Control(archive, u"treeLoggers"_s));
      loggers->setCurrentIndex(loggers->model()->index(1, 0));
    });
    Take(u"archive-series"_s, archive);
    Robot::Click(archive, u"cmdPlot"_s);
    Robot::WaitForForm(plot_);
    Take(u"series"_s, plot_);
    Robot::Click(plot_, u"cmdOK"_s);
    Robot::WaitForForm(archive);
    Robot::Press(Qt::Key_Escape);
    Robot::WaitForNoForm(archive);
    // What had been found in earlier years; the tour's own logger is not calibrated.
    AddCalibrations();
    Robot::Trigger(main_, u"mnuArchive"_s);
    Robot::WaitForForm(archive);
    Robot::InGui([archive] {
      qobject_cast<QTabWidget*>(Robot::Control(archive, u"tabLogbook"_s))->setCurrentIndex(1);
    });
    Take(u"archive-calibrations"_s, archive);
    Robot::Press(Qt::Key_Escape);
    Robot::WaitForNoForm(archive);
  }

  void AddCalibrations() {
    Robot::InGui([this] {
      Store store(archive_);
      store.Open(Store::Access::Write);
      const qint64 logger = store.Loggers().at(0).Id;
      const std::vector<std::pair<double, double>> oxygen{
          {0, 20}, {0.1, 20.3}, {-0.2, 19.6}, {0, 20.1}};
      QDateTime at(QDate(2025, 4, 8), QTime(9, 12), Qt::UTC);
      for (std::size_t i = 1; i < oxygen.size(); ++i) {
        store.AddEvent({.Uuid = QUuid::createUuid().toString(QUuid::WithoutBraces),
                        .LoggerId = logger,
                        .At = at,
                        .Entry = {.Kind = EventKind::Calibrated,
                                  .Text = u"Channel 6 (mg/L): "_s,
                                  .Before = OxygenScale(oxygen[i - 1]),
                                  .After = OxygenScale(oxygen[i])}});
        at = at.addDays(91).addSecs(3600);
      }
    });
  }

  /// Settings in which channel 6 has this scale, in mg/L.
  static QByteArray OxygenScale(const std::pair<double, double>& ends) {
    LinkState link;
    link.AnalogChannelCount = kAnalogChannels;
    link.PulseChannelCount = kPulseChannels;
    LoggerSettings settings;
    LoadDefaultSettings(settings, kAnalogChannels);
    constexpr std::size_t kChannel = 5;
    settings.Analog[kChannel] = {.Enable = 1,
                                 .EngUnits = u"mg/L"_s,
                                 .DecPlaces = 2,
                                 .RawScaleLower = 3200,
                                 .RawScaleUpper = 61400,
                                 .LowerLimit = ends.first,
                                 .UpperLimit = ends.second};
    ConfigImage image;
    PackConfigImage(link, settings, image);
    return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
  }

  void Connect() {
    const QString dialog = u"frmConnect"_s;
    Robot::WaitForForm(dialog);
    Robot::Choose(dialog, u"cmbPort2"_s, u"COM9"_s);
    Robot::Type(dialog, u"cmbNumber"_s, u"5551234"_s);
    Robot::Tick(dialog, u"optModem"_s);
    Take(u"connect-modem"_s, dialog);
    Robot::Tick(dialog, u"optDirect"_s);
    Robot::Choose(dialog, u"cmbPort1"_s, u"COM9"_s);
    Robot::InGui(
        [dialog] { qobject_cast<QWidget*>(Robot::Control(dialog, u"cmdConnect"_s))->setFocus(); });
    Take(u"connect"_s, dialog);
    Robot::Click(dialog, u"cmdConnect"_s);
    WaitForReadings();
    Take(u"connected"_s, main_);
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
    Take(u"live"_s, main_);
    Robot::Click(main_, u"chkSampleContinuously"_s);
    WaitForReadings();
  }

  void OpenMenus() {
    const QString action = language_.IsGerman ? u"imnuAction"_s : u"mnuAction"_s;
    const std::pair<QString, QString> menus[] = {{u"mnuFile"_s, u"menu-file"_s},
                                                 {action, u"menu-action"_s},
                                                 {u"mnuData"_s, u"menu-data"_s},
                                                 {u"Help"_s, u"menu-help"_s}};
    for (const auto& [menu, picture] : menus) {
      Robot::InGui([this, menu = menu] {
        auto* window = qobject_cast<QMainWindow*>(Robot::Form(main_));
        auto* entries = qobject_cast<QMenu*>(Robot::Control(main_, menu));
        const QRect title = window->menuBar()->actionGeometry(entries->menuAction());
        entries->popup(window->menuBar()->mapToGlobal(title.bottomLeft()));
      });
      Take(picture, menu);
      Robot::InGui(
          [this, menu = menu] { qobject_cast<QMenu*>(Robot::Control(main_, menu))->close(); });
    }
  }

  void HarvestHistory() {
    const QString upload = u"frmGetHistoryData"_s;
    Robot::Click(main_, u"cmdGetHistoryData"_s);
    Robot::WaitFor(u"records on their way"_s, [upload] {
      const auto* bar = qobject_cast<QProgressBar*>(Robot::Control(upload, u"ProgressBar1"_s));
      return bar != nullptr && bar->value() > 0;
    });
    // At once, while they come.
    Picture(u"uploading"_s, upload);
    Robot::WaitFor(
        u"the upload's end"_s,
        [upload] {
          const auto* okay = qobject_cast<QWidget*>(Robot::Control(upload, u"cmdOkay"_s));
          return okay != nullptr && okay->isEnabled();
        },
        60000);
    Take(u"upload"_s, upload);
    Robot::Click(upload, u"cmdOkay"_s);
    Robot::WaitForForm(viewer_);
    Take(u"history"_s, viewer_);

    Robot::Click(viewer_, u"cmdOptions"_s);
    Robot::WaitForForm(u"frmHistoryOptions"_s);
    Take(u"history-options"_s, u"frmHistoryOptions"_s);
    Robot::Click(u"frmHistoryOptions"_s, u"cmdCancel"_s);
    Robot::WaitForForm(viewer_);

    LookAtPlot();

    Robot::Click(viewer_, u"cmdPack"_s);
    TakeMessage(u"pack-question"_s, 0);
    Robot::WaitForForm(viewer_);
    Take(u"packed"_s, viewer_);

    SaveCsv();
    Robot::Click(viewer_, u"cmdOK"_s);
    Robot::WaitForNoForm(viewer_);
    WaitForReadings();
  }

  void WatchTrend() {
    Robot::Trigger(main_, u"mnuTrend"_s);
    Robot::WaitForForm(plot_);
    Robot::InGui([this] {
      qobject_cast<QAbstractButton*>(Robot::Control(main_, u"chkSampleContinuously"_s))->click();
    });
    Robot::WaitFor(
        u"readings in the trend"_s,
        [this] {
          const auto* table =
              qobject_cast<QAbstractItemView*>(Robot::Control(plot_, u"tblStatistics"_s));
          return table->model()->index(0, 1).data() != table->model()->index(0, 3).data();
        },
        30000);
    Robot::Pause(8000);
    Take(u"trend"_s, plot_);
    Robot::InGui([this] {
      qobject_cast<QAbstractButton*>(Robot::Control(main_, u"chkSampleContinuously"_s))->click();
    });
    Robot::Pause(1500);
    Take(u"trend-off"_s, plot_);
    Robot::Click(plot_, u"cmdOK"_s);
    Robot::WaitForNoForm(plot_);
    WaitForReadings();
  }

  void LookAtPlot() {
    Robot::Click(viewer_, u"cmdPlot"_s);
    Robot::WaitForForm(plot_);
    Robot::Press(Qt::Key_Right, Qt::ControlModifier);
    Take(u"plot-all"_s, plot_);
    for (int i = 0; i < 8; ++i) Robot::Press(Qt::Key_Plus);
    for (int i = 0; i < 3; ++i) Robot::Press(Qt::Key_Left);
    Robot::InGui([this] {
      QWidget* plot = qobject_cast<QWidget*>(Robot::Control(plot_, u"pltPlot"_s));
      const QPointF middle(plot->width() * 0.6, plot->height() * 0.3);
      QMouseEvent move(QEvent::MouseMove, middle, plot->mapToGlobal(middle), Qt::NoButton,
                       Qt::NoButton, Qt::NoModifier);
      QApplication::sendEvent(plot, &move);
    });
    Take(u"plot"_s, plot_);
    for (int i = 0; i < 22; ++i) Robot::Press(Qt::Key_Plus);
    Take(u"plot-near"_s, plot_);
    for (int i = 0; i < 22; ++i) Robot::Press(Qt::Key_Backspace);
    Robot::Tick(plot_, u"chkByDay"_s);
    Robot::Pause(400);
    Take(u"plot-by-day"_s, plot_);
    for (const QString& kind : {u".png"_s, u".svg"_s, u".pdf"_s}) {
      Robot::Click(plot_, u"cmdPicture"_s);
      Robot::WaitForForm(u"dlgFile"_s);
      const QString path = QDir(folder_).absoluteFilePath(u"plot-picture"_s + kind);
      QFile::remove(path);
      Robot::TakeFile(path);
      Robot::WaitForForm(plot_);
      Robot::WaitFor(u"the picture"_s, [path] { return QFile::exists(path); });
    }
    Robot::Tick(plot_, u"chkByDay"_s, false);
    Robot::Click(plot_, u"cmdOK"_s);
    Robot::WaitForForm(viewer_);
  }

  void SaveCsv() {
    const QString path = QDir(folder_).absoluteFilePath(u"history.csv"_s);
    QFile::remove(path);
    Robot::Click(viewer_, u"cmdSave"_s);
    Robot::WaitForForm(u"dlgFile"_s);
    // A folder that is the same wherever the picture is taken.
    Robot::InGui([] {
      QDir::temp().mkpath(u"Ponds"_s);
      qobject_cast<QFileDialog*>(Robot::Form(u"dlgFile"_s))
          ->setDirectory(QDir::temp().filePath(u"Ponds"_s));
    });
    Take(u"save"_s, u"dlgFile"_s);
    Robot::TakeFile(path);
    Robot::WaitForForm(viewer_);
    Robot::WaitFor(u"the CSV file"_s, [path] { return QFile::exists(path); });
  }

  void LookAtSetup() {
    Robot::Click(main_, u"cmdSetup"_s);
    Robot::WaitForForm(setup_);
    static constexpr const char* kPages[] = {"analog", "digital", "general", "oxygen"};
    for (int page = 0; page < 4; ++page) {
      Robot::TurnTo(setup_, tabs_, page);
      Take(u"setup-"_s + QString::fromLatin1(kPages[page]), setup_);
    }
  }

  void LookAtChanges() {
    const QString list = u"frmChanges"_s;
    Robot::WaitFor(u"a change"_s, [this] {
      return qobject_cast<QWidget*>(Robot::Control(setup_, u"cmdChanges"_s))->isEnabled();
    });
    Robot::Click(setup_, u"cmdChanges"_s);
    Robot::WaitForForm(list);
    Take(u"changes"_s, list);
    Robot::Click(list, u"cmdClose"_s);
    Robot::WaitForNoForm(list);
  }

  void MeetRefusals() {
    Robot::TurnTo(setup_, tabs_, kGeneralPage);
    Robot::Type(setup_, u"txtSampleInterval"_s, u"0"_s);
    Robot::Click(setup_, u"cmdOK"_s);
    TakeMessage(u"setup-refused"_s, 0);
    Robot::WaitForForm(setup_);
    Robot::Type(setup_, u"txtSampleInterval"_s, u"15"_s);

    // A unit that the oxygen set-up does not expect.
    Robot::TurnTo(setup_, tabs_, 0);
    const QString unit = Robot::Text(setup_, u"cmbEU(1)"_s);
    Robot::Type(setup_, u"cmbEU(1)"_s, u"mV"_s);
    LookAtChanges();
    Robot::Click(setup_, u"cmdOK"_s);
    TakeMessage(u"program-question"_s, 0);
    constexpr int kCancel = 1;
    TakeMessage(u"oxygen-warning"_s, kCancel);
    Robot::WaitForForm(setup_);
    Robot::Type(setup_, u"cmbEU(1)"_s, unit);
  }

  void Calibrate() {
    const QString wizard = u"frmCalibrate"_s;
    Robot::TurnTo(setup_, tabs_, 0);
    Robot::WaitFor(u"the link to be free"_s, [this] { return !link_->Busy; });
    Robot::Click(setup_, u"cmdCalibrate(0)"_s);
    for (int page = 1; page <= 4; ++page) {
      Robot::WaitForForm(wizard);
      const bool shows = page % 2 == 0;
      // A page of readings gets one within a second.
      Robot::WaitFor(u"page %1 of the wizard"_s.arg(page), [wizard, shows, page] {
        const auto* back = qobject_cast<QWidget*>(Robot::Control(wizard, u"cmdBack"_s));
        const auto* field = qobject_cast<QLineEdit*>(Robot::Control(wizard, u"txtCalibrate"_s));
        if (back == nullptr || back->isEnabled() != (page > 1)) return false;
        return !shows ||
               (field->text() != "65535"_L1 && field->text() != "0"_L1 && field->text().size() > 3);
      });
      Take(u"calibrate-%1"_s.arg(page), wizard);
      Robot::Click(wizard, page < 4 ? u"cmdNext"_s : u"cmdCancel"_s);
    }
    Robot::WaitForNoForm(wizard);
  }

  void LeaveSetup() {
    Robot::WaitForForm(setup_);
    Robot::ClickUntilGone(setup_, u"cmdCancel"_s);
    WaitForReadings();
  }

  // Takes the picture of a message and presses one of its buttons, 0 first.
  void TakeMessage(const QString& name, int button) {
    const QString message = u"FMessage"_s;
    Robot::WaitForForm(message);
    Take(name, message);
    const QString text = Robot::Text(message, u"lblMessage"_s);
    Robot::Click(message, u"cmdButton(%1)"_s.arg(button));
    Robot::WaitFor(u"the message to go"_s, [message, text] {
      const auto* label = qobject_cast<QLabel*>(Robot::Control(message, u"lblMessage"_s));
      return label == nullptr || label->text() != text;
    });
  }

  // Lets what is on the way be painted first.
  void Take(const QString& name, const QString& form) {
    Robot::Pause(200);
    Picture(name, form);
  }

  // The form by itself, and the whole screen.
  void Picture(const QString& name, const QString& form) {
    const QString file = name + u".png"_s;
    Robot::PictureOf(form, QDir(folder_).filePath(file));
    Robot::Picture(QDir(folder_).filePath(u"screen/"_s + file));
  }

  static constexpr int kGeneralPage = 2;
  const QString viewer_ = u"frmHistory"_s;
  const QString setup_ = u"frmSetup"_s;
  const QString tabs_ = u"TabStrip"_s;
  const QString main_ = u"frmMain"_s;
  const QString plot_ = u"frmPlot"_s;
  TourLanguage language_;
  QString folder_;
  QString archive_;
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
      {u"en"_s, u"-l9"_s, QLocale(u"en_US"_s), false},
      {u"de"_s, u"-l7"_s, QLocale(u"de_DE"_s), true},
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
