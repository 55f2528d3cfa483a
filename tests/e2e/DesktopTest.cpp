#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QProcess>
#include <QScreen>

#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

const QString kMain = u"frmMain"_s;
const QString kMessage = u"FMessage"_s;
const QString kSetup = u"frmSetup"_s;
const QString kViewer = u"frmHistory"_s;

/// Who has the keyboard, as "form.control". User interface's thread only.
QString Keyboard() {
  const QWidget* window = QApplication::activeWindow();
  if (window == nullptr) return u"no window"_s;
  const QWidget* widget = QApplication::focusWidget();
  if (widget == nullptr || widget->window() != window) return window->objectName();
  // The line of a combo box is a part of it.
  if (qobject_cast<const QComboBox*>(widget->parentWidget()) != nullptr)
    widget = widget->parentWidget();
  return window->objectName() + u'.' + widget->objectName();
}

/// Windows that do not fit the screen, or stand out of it. Under Wayland no program knows where its
/// windows stand, and the size alone can be looked at. User interface's thread only.
QStringList Misfits() {
  const bool knowsPlaces = QGuiApplication::platformName() != "wayland"_L1;
  QStringList found;
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible()) continue;
    const QRect screen = window->screen()->availableGeometry();
    const QRect frame = window->frameGeometry();
    const bool fits = frame.width() <= screen.width() && frame.height() <= screen.height();
    // Some window managers let the frame stand out by its own breadth, but for the title bar.
    const bool isIn = screen.contains(window->geometry()) && frame.top() >= screen.top();
    if (fits && (!knowsPlaces || isIn)) continue;
    found.append(u"%1 of %2 x %3 at %4, %5"_s.arg(window->objectName())
                     .arg(frame.width())
                     .arg(frame.height())
                     .arg(frame.x())
                     .arg(frame.y()));
  }
  return found;
}

/// Where TESSMAR_PICTURES names a folder, the whole screen goes into it: taken by the X server,
/// which sees frames and other windows too.
void TakePicture(const QString& name) {
  const QString folder = qEnvironmentVariable("TESSMAR_PICTURES");
  if (folder.isEmpty()) return;
  Robot::Pause(300);
  QProcess::execute(u"import"_s, {u"-window"_s, u"root"_s, folder + u'/' + name + u".png"_s});
}

/// Lets the desktop come to rest: a window manager that hands the keyboard to a window while that
/// one goes may lose it, but no hand is as quick.
void Settle() {
  Robot::Pause(200);
}

/// Presses keys as a keyboard does, by way of the X server; weston's window has them from there
/// too.
void PressReally(const QStringList& keys) {
  Settle();
  QProcess::execute(u"xdotool"_s, QStringList{u"key"_s, u"--clearmodifiers"_s} + keys);
}

/// One person's language.
struct Operator {
  const char* Name;
  QStringList Arguments;
  QLocale::Language Language;
  QLocale::Territory Territory;
};

void PrintTo(const Operator& person, std::ostream* out) {
  *out << person.Name;
}

class Desktop : public testing::TestWithParam<Operator> {
 protected:
  std::unique_ptr<Desk> MakeDesk(const QStringList& loggerOptions) {
    return std::make_unique<Desk>(loggerOptions, GetParam().Arguments,
                                  SystemLocale(QLocale(GetParam().Language, GetParam().Territory)));
  }

  /// Waits for a form, and expects the keyboard in it and every window on the screen.
  void ExpectAt(const QString& form, const QString& control) {
    Robot::WaitForForm(form);
    const QString wanted = form + u'.' + control;
    constexpr int kPatienceMs = 3000;
    Robot::Holds([&] { return Keyboard() == wanted && Misfits().isEmpty(); }, kPatienceMs);
    ++step_;
    EXPECT_EQ(Robot::InGui(Keyboard), wanted) << "step " << step_;
    const QStringList misfits = Robot::InGui(Misfits);
    EXPECT_TRUE(misfits.isEmpty())
        << "step " << step_ << ": " << misfits.join(u"; "_s).toStdString();
    TakePicture(u"%1-%2-%3"_s.arg(QString::fromLatin1(GetParam().Name))
                    .arg(step_, 2, 10, QChar(u'0'))
                    .arg(form));
  }

  /// Opens a form by a button and leaves it by Escape.
  void LookInto(const QString& window, const QString& button, const QString& form,
                const QString& control) {
    Robot::Click(window, button);
    ExpectAt(form, control);
    PressReally({u"Escape"_s});
    Robot::WaitForNoForm(form);
    ExpectAt(window, button);
  }

  void AskAndDecline() { LookInto(kMain, u"cmdClearMemory"_s, kMessage, u"cmdButton(0)"_s); }

  void Harvest(Desk& desk) {
    Robot::Click(kMain, u"cmdGetHistoryData"_s);
    ExpectAt(u"frmGetHistoryData"_s, u"cmdOkay"_s);
    PressReally({u"Return"_s});
    ExpectAt(kViewer, u"lvwHistory"_s);

    LookInto(kViewer, u"cmdOptions"_s, u"frmHistoryOptions"_s, u"optComma"_s);

    Robot::Click(kViewer, u"cmdSave"_s);
    ExpectAt(u"dlgFile"_s, u"fileNameEdit"_s);
    Robot::TakeFile(desk.Path(u"pond.csv"_s));
    // The button that was pressed is off while the file is written.
    ExpectAt(kViewer, u"cmdOK"_s);
    Robot::WaitFor(u"the file"_s, [&] { return QFile::exists(desk.Path(u"pond.csv"_s)); });
    // The question about the file that is there stands over the dialog, and both go at once.
    Robot::Click(kViewer, u"cmdSave"_s);
    ExpectAt(u"dlgFile"_s, u"fileNameEdit"_s);
    Robot::NameFile(desk.Path(u"pond.csv"_s));
    PressReally({u"Return"_s});
    ExpectAt(kMessage, u"cmdButton(1)"_s);
    Robot::Click(kMessage, u"cmdButton(0)"_s);
    ExpectAt(kViewer, u"cmdOK"_s);

    LookInto(kViewer, u"cmdPack"_s, kMessage, u"cmdButton(0)"_s);
    LookInto(kViewer, u"cmdPlot"_s, u"frmPlot"_s, u"pltPlot"_s);

    Robot::Click(kViewer, u"cmdOK"_s);
    ExpectAt(kMain, u"cmdGetHistoryData"_s);
  }

  void LookAtSetup(Desk& desk) {
    Robot::WaitFor(u"the link to be free"_s, [&] { return !desk.TheProgram().Link().Busy; });
    desk.OpenSetup();
    ExpectAt(kSetup, u"cmdOK"_s);
    Robot::Type(kSetup, u"txtSampleInterval"_s, u"0"_s);
    Robot::Click(kSetup, u"cmdOK"_s);
    ExpectAt(kMessage, u"cmdButton(0)"_s);
    PressReally({u"Return"_s});
    ExpectAt(kSetup, u"txtSampleInterval"_s);
    Robot::Type(kSetup, u"txtSampleInterval"_s, u"15"_s);

    Robot::TurnTo(kSetup, u"TabStrip"_s, 0);
    LookInto(kSetup, u"cmdCalibrate(0)"_s, u"frmCalibrate"_s, u"txtCalibrate"_s);
    for (const int page : {1, 2, 3}) {
      Robot::TurnTo(kSetup, u"TabStrip"_s, page);
      TakePicture(u"%1-setup-%2"_s.arg(QString::fromLatin1(GetParam().Name)).arg(page));
    }
    Robot::ClickUntilGone(kSetup, u"cmdCancel"_s);
    ExpectAt(kMain, u"cmdSetup"_s);
  }

  void LookAtOthers() {
    for (const auto& [entry, form, control] :
         {std::tuple{u"mnuArchive"_s, u"frmArchive"_s, u"tblUploads"_s},
          std::tuple{u"mnuAbout"_s, u"frmAbout"_s, u"cmdCopyDetails"_s}}) {
      Robot::Trigger(kMain, entry);
      ExpectAt(form, control);
      PressReally({u"Escape"_s});
      Robot::WaitForNoForm(form);
      ExpectAt(kMain, u"cmdSetup"_s);
    }
  }

 private:
  int step_ = 0;
};

const Operator kOperators[] = {
    {"English", {}, QLocale::English, QLocale::UnitedStates},
    {"German", {u"-l7"_s}, QLocale::German, QLocale::Germany},
};

INSTANTIATE_TEST_SUITE_P(, Desktop, testing::ValuesIn(kOperators),
                         [](const auto& person) { return std::string(person.param.Name); });

// A day's work by keyboard and mouse: behind each window the keyboard is where the next step is.
TEST_P(Desktop, ADaysWork) {
  const auto desk = MakeDesk({u"--records"_s, u"60"_s});
  const QString trouble = desk->Work([&] {
    ExpectAt(u"frmConnect"_s, u"cmdConnect"_s);
    PressReally({u"Return"_s});
    desk->WaitForReading();
    ExpectAt(kMain, u"cmdConnect"_s);
    AskAndDecline();
    Harvest(*desk);
    LookAtSetup(*desk);
    LookAtOthers();
    desk->CloseMainWindow();
  });
  EXPECT_EQ(trouble, QString());
}

// Asked by the window manager where there is one to ask; there is a modal dialog over the window.
TEST_P(Desktop, EndsInTheMiddleOfAnUploadAndStartsAgain) {
  const auto desk = MakeDesk({u"--records"_s, u"20000"_s, u"--baud"_s, u"115200"_s});
  const QString trouble = desk->Work([&] {
    ExpectAt(u"frmConnect"_s, u"cmdConnect"_s);
    Settle();
    desk->Connect();
    desk->StartUpload();
    ExpectAt(u"frmGetHistoryData"_s, u"ProgressBar1"_s);
    if (QGuiApplication::platformName() == "xcb"_L1) {
      const QString window =
          Robot::InGui([] { return u"0x%1"_s.arg(Robot::Form(kMain)->winId(), 0, 16); });
      QProcess::execute(u"wmctrl"_s, {u"-i"_s, u"-c"_s, window});
      Robot::WaitForNoForm(kMain);
    } else {
      desk->EndBySignal();
    }
  });
  EXPECT_EQ(trouble, QString());
  EXPECT_EQ(desk->StoredValue(u"UseModemInit"_s), u"0"_s);
  desk->StartProgramAgain();
  EXPECT_EQ(desk->Work([&] {
    ExpectAt(u"frmConnect"_s, u"cmdConnect"_s);
    Settle();
    desk->Connect();
    ExpectAt(kMain, u"cmdConnect"_s);
  }),
            QString());
}

}  // namespace
}  // namespace tessmar::test
