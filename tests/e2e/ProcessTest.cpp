#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <csignal>

#include "ProgramVersion.h"
#include "e2e/Desk.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int kPatience = 15000;

/// What a tool of the desktop says; nothing when it fails.
QString Ask(const QString& tool, const QStringList& arguments) {
  QProcess process;
  process.start(tool, arguments);
  process.waitForFinished(kPatience);
  return QString::fromLocal8Bit(process.readAllStandardOutput());
}

// The program as it is installed, worked from outside: by the window manager and the keyboard.
class TheProcess : public testing::Test {
 protected:
  TheProcess() {
    process_.setProcessChannelMode(QProcess::SeparateChannels);
    QDir().mkpath(folder_.filePath(u"Tessmar"_s));
    QFile store(StorePath());
    if (store.open(QIODevice::WriteOnly)) store.write(kStore);
  }
  ~TheProcess() override {
    process_.kill();
    process_.waitForFinished();
  }

  void Start(const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_CONFIG_HOME"_s, folder_.path());
    environment.insert(u"XDG_DATA_HOME"_s, folder_.path());
    environment.insert(u"XDG_STATE_HOME"_s, folder_.path());
    environment.insert(u"TESSMAR_PORTS"_s, u"COM9=%1,Simulated logger"_s.arg(LinkPath()));
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    process_.setProcessEnvironment(environment);
    process_.start(QStringLiteral(TESSMAR_LOGGER), arguments);
    ASSERT_TRUE(process_.waitForStarted());
  }

  /// The window manager's number of the program's window with this title, empty while there is
  /// none.
  QString WindowNumber(const QString& title) {
    const QStringList lines = Ask(u"wmctrl"_s, {u"-l"_s, u"-p"_s}).split(u'\n');
    for (const QString& line : lines) {
      // Number, desktop, process, machine, title.
      const QStringList words = line.simplified().split(u' ');
      if (words.size() < 5 || words[2].toLongLong() != process_.processId()) continue;
      if (words.mid(4).join(u' ') == title) return words[0];
    }
    return {};
  }

  QString WaitForWindow(const QString& title) {
    QElapsedTimer patience;
    patience.start();
    QString number;
    while ((number = WindowNumber(title)).isEmpty() && patience.elapsed() < kPatience &&
           process_.state() == QProcess::Running) {
      process_.waitForFinished(50);
    }
    EXPECT_FALSE(number.isEmpty()) << "no window " << title.toStdString();
    return number;
  }

  void WaitForNoWindow(const QString& title) {
    QElapsedTimer patience;
    patience.start();
    while (!WindowNumber(title).isEmpty() && patience.elapsed() < kPatience) {
      process_.waitForFinished(50);
    }
    EXPECT_TRUE(WindowNumber(title).isEmpty()) << title.toStdString() << " stays";
  }

  /// Asks as a click on the cross of the window's frame does.
  static void RequestClose(const QString& window) { Ask(u"wmctrl"_s, {u"-i"_s, u"-c"_s, window}); }

  static void PressKeys(const QString& window, const QStringList& keys) {
    Ask(u"wmctrl"_s, {u"-i"_s, u"-a"_s, window});
    Ask(u"xdotool"_s, QStringList{u"key"_s, u"--delay"_s, u"120"_s} + keys);
  }

  QString LinkPath() const { return folder_.filePath(u"logger"_s); }
  QString StorePath() const { return folder_.filePath(u"Tessmar/Tessmar Logger.ini"_s); }
  QString LogPath() const { return folder_.filePath(u"Tessmar/tessmar.log"_s); }
  static QByteArray Content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  QByteArray Stored() const { return Content(StorePath()); }
  /// The last line on standard error.
  QString Complaint() {
    return QString::fromLocal8Bit(process_.readAllStandardError()).trimmed().section(u'\n', -1);
  }

  static constexpr char kStore[] = "[Configuration]\nDirectPort=COM9\nDirectBaud=115200\n";
  const QString main_ =
      u"Tessmar DO Monitor v%1.%2.%3"_s.arg(kVersionMajor).arg(kVersionMinor).arg(kVersionRevision);
  const QString dialog_ = u"Connect"_s;
  const QString box_ = u"Tessmar DO Monitor"_s;

  QTemporaryDir folder_;
  QProcess process_;
};

TEST_F(TheProcess, EndsWithItsSettingsWrittenWhenItIsAskedTo) {
  Start({});
  WaitForWindow(dialog_);
  ::kill(static_cast<pid_t>(process_.processId()), SIGHUP);
  EXPECT_TRUE(process_.waitForFinished(kPatience));
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_TRUE(Stored().contains("ModemBaud=38400"));
}

// A dialog that waits for the operator is answered first, as in any program.
TEST_F(TheProcess, KeepsItsMainWindowUnderAnIdleDialog) {
  const LoggerProcess logger(QStringLiteral(TESSMAR_SIM), LinkPath(), {});
  Start({});
  WaitForWindow(dialog_);
  RequestClose(WaitForWindow(main_));
  EXPECT_FALSE(process_.waitForFinished(700));
  EXPECT_FALSE(WindowNumber(dialog_).isEmpty());
}

TEST_F(TheProcess, EndsDuringAHandshakeOnADeadLine) {
  const LoggerProcess logger(QStringLiteral(TESSMAR_SIM), LinkPath(), {u"--fault"_s, u"silent"_s});
  Start({});
  PressKeys(WaitForWindow(dialog_), {u"Return"_s});
  // Well into the handshake, which takes many seconds on a dead line.
  process_.waitForFinished(1000);
  RequestClose(WaitForWindow(main_));
  EXPECT_TRUE(process_.waitForFinished(1000));
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_TRUE(Stored().contains("ModemBaud=38400"));
}

// The log for support stands in a folder of its own here, and says what goes over the line to who
// asks for it.
TEST_F(TheProcess, TracesTheLineWhenItIsAskedTo) {
  const LoggerProcess logger(QStringLiteral(TESSMAR_SIM), LinkPath(), {u"--fault"_s, u"silent"_s});
  for (const char* asked : {"0", "1"}) {
    SCOPED_TRACE(asked);
    QFile::remove(LogPath());
    qputenv("TESSMAR_TRACE", asked);
    Start({});
    qunsetenv("TESSMAR_TRACE");
    PressKeys(WaitForWindow(dialog_), {u"Return"_s});
    process_.waitForFinished(1000);
    RequestClose(WaitForWindow(main_));
    EXPECT_TRUE(process_.waitForFinished(kPatience));
    const QByteArray log = Content(LogPath());
    EXPECT_TRUE(log.contains(" begins\n")) << log.constData();
    EXPECT_TRUE(log.contains(" port COM9 opened, 115200,N,8,1\n")) << log.constData();
    EXPECT_EQ(log.contains(" -> 55\n"), *asked == '1') << log.constData();
    EXPECT_TRUE(log.contains(" port COM9 closed\n")) << log.constData();
  }
}

TEST_F(TheProcess, SaysWhatIsWrongWithASwitch) {
  Start({u"-l7"_s, u"-d"_s});
  PressKeys(WaitForWindow(box_), {u"Return"_s});
  EXPECT_TRUE(process_.waitForFinished(kPatience));
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  EXPECT_NE(process_.exitCode(), 0);
  EXPECT_EQ(
      Complaint(),
      u"TessmarLogger: -l needs a language number behind it, at the end of the command line"_s);
  EXPECT_EQ(Stored(), kStore);
}

// For a developer: what would have been a quiet failure ends the program with its reason.
TEST_F(TheProcess, EndsAtAFaultThatIsNotTrapped) {
  LoggerProcess logger(QStringLiteral(TESSMAR_SIM), LinkPath(), {u"--fault"_s, u"silent"_s});
  Start({u"-d"_s});
  PressKeys(WaitForWindow(dialog_), {u"Return"_s});
  process_.waitForFinished(700);
  logger.PullOut();
  PressKeys(WaitForWindow(box_), {u"Return"_s});
  EXPECT_TRUE(process_.waitForFinished(kPatience));
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  EXPECT_NE(process_.exitCode(), 0);
  EXPECT_TRUE(Complaint().startsWith(u"TessmarLogger: "_s));
}

TEST_F(TheProcess, FileExitStoresNothing) {
  Start({});
  PressKeys(WaitForWindow(dialog_), {u"Escape"_s});
  WaitForNoWindow(dialog_);
  PressKeys(WaitForWindow(main_), {u"alt+f"_s, u"x"_s});
  EXPECT_TRUE(process_.waitForFinished(kPatience));
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_EQ(Stored(), kStore);
}

TEST_F(TheProcess, EndedBySignalAtItsStartUpErrorKeepsItsStore) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    Start({u"-l7"_s, u"-d"_s});
    WaitForWindow(box_);
    ::kill(static_cast<pid_t>(process_.processId()), signal);
    EXPECT_TRUE(process_.waitForFinished(kPatience));
    EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process_.exitCode(), 1);
    EXPECT_EQ(Stored(), kStore);
  }
}

TEST_F(TheProcess, EndedBySignalAsksNothingAboutAStoreThatCannotBeWritten) {
  Start({});
  WaitForWindow(dialog_);
  // A file stands where the store's folder was.
  const QString folder = folder_.filePath(u"Tessmar"_s);
  ASSERT_TRUE(QDir(folder).removeRecursively());
  QFile inTheWay(folder);
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  ::kill(static_cast<pid_t>(process_.processId()), SIGTERM);
  EXPECT_TRUE(process_.waitForFinished(kPatience));
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process_.exitCode(), 1);
  EXPECT_EQ(Complaint(), u"TessmarLogger: The settings could not be saved: "_s + StorePath());
}

TEST_F(TheProcess, StartedToIgnoreASignalIgnoresIt) {
  process_.setChildProcessModifier([] { std::signal(SIGHUP, SIG_IGN); });
  Start({});
  WaitForWindow(dialog_);
  ::kill(static_cast<pid_t>(process_.processId()), SIGHUP);
  EXPECT_FALSE(process_.waitForFinished(700));
  ::kill(static_cast<pid_t>(process_.processId()), SIGTERM);
  EXPECT_TRUE(process_.waitForFinished(kPatience));
  EXPECT_EQ(process_.exitCode(), 0);
}

}  // namespace
}  // namespace tessmar::test
