#include "operators/Campaign.h"

#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QThread>
#include <csignal>
#include <semaphore>
#include <thread>
#include <utility>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

#include "archive/Store.h"
#include "operators/Hand.h"
#include "operators/Surroundings.h"

namespace tessmar::test {

using namespace Qt::StringLiterals;

namespace {

/// A busy machine with a sanitizer takes its time; a person would have given up.
constexpr int kLongestAnswerMs = 20000;
/// The erasing of a blank logger takes 45 s, and may be tried again.
constexpr int kLongestRestMs = 150000;
constexpr int kLongestEndMs = 20000;
constexpr int kStepsToARest = 120;
/// One in so many looks at an export that runs ends the program: it is soon over, and the end in
/// its middle would hardly ever come by otherwise.
constexpr int kEndsOfExport = 12;

void Pause(int milliseconds) {
  QThread::msleep(static_cast<unsigned long>(milliseconds));
}

}  // namespace

Campaign::Campaign(CampaignPlan plan) : plan_(std::move(plan)), journal_(plan_.Journal) {
  if (!plan_.Journal.isEmpty() && !journal_.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
    throw std::runtime_error("no journal at " + plan_.Journal.toStdString());
  FillDesk(plan_.Folder, plan_.Simulator, plan_.Seed);
}

Campaign::~Campaign() = default;

QString Campaign::Path(const QString& name) const {
  return QDir(plan_.Folder).filePath(name);
}

void Campaign::Note(const QString& text) {
  if (!journal_.isOpen()) return;
  journal_.write(
      u"%1 ms, step %2: %3\n"_s.arg(sinceStart_.elapsed()).arg(step_).arg(text).toUtf8());
}

Random Campaign::Luck() {
  return {plan_.Seed, luck_++};
}

void Campaign::Tell(const QString& complaint) {
  const std::scoped_lock lock(complaintsLock_);
  complaints_.append(complaint);
}

QString Campaign::Complaint() {
  const std::scoped_lock lock(complaintsLock_);
  return complaints_.join(u"; "_s);
}

void Campaign::EndBySignal() {
  if (program_) program_->EndBySignal();
}

void Campaign::Post(const std::function<void()>& deed) {
  QMetaObject::invokeMethod(qApp, deed, Qt::QueuedConnection);
}

void Campaign::Ask(const std::function<void()>& question) {
  const auto answered = std::make_shared<std::binary_semaphore>(0);
  QElapsedTimer timer;
  timer.start();
  // By value: an answer may come when nobody waits for it any more.
  Post([question, answered] {
    question();
    answered->release();
  });
  if (!answered->try_acquire_for(std::chrono::milliseconds(kLongestAnswerMs)))
    throw Finding(u"the message loop does not answer for %1 s"_s.arg(kLongestAnswerMs / 1000));
  longestAnswerMs_ = std::max(longestAnswerMs_, timer.elapsed());
}

void Campaign::Run() {
  sinceStart_.start();
  while (step_ < plan_.Steps) WorkOneLife();
}

void Campaign::WorkOneLife() {
  Random random = Luck();
  const bool german = random.OneIn(2);
  // One switch alone can carry a value, and it stands last.
  QStringList arguments{u"TessmarLogger"_s};
  if (random.OneIn(3)) arguments << u"-i"_s;
  arguments << (german ? u"-l7"_s : u"-l9"_s);
  lifeEnds_ = std::min(plan_.Steps, step_ + random.Between(60, 500));
  over_ = false;
  Note(u"a life begins, "_s + arguments.join(u' '));
  program_ = std::make_unique<Program>(
      ProgramEnvironment{
          .Arguments = arguments,
          .AppPath = Path(u"program"_s),
          .StorePath = Path(u"store.ini"_s),
          .PortNames = u"COM9=%1,Simulated logger"_s.arg(Path(u"logger"_s)),
          .ArchivePath = Path(u"archive.sqlite"_s),
          .LogPath = Path(u"tessmar.log"_s),
          // A process would have ended here.
          .EndProcess = [this] { program_->Shutdown(); },
      },
      SystemLocale(QLocale(german ? u"de_DE"_s : u"en_US"_s)));
  program_->Start();
  std::atomic<bool> done = false;
  std::thread robot([&] {
    try {
      Work();
      // In the thread that it was made in.
      logger_.reset();
    } catch (const std::exception& finding) {
      // At once: a program that is stuck does not get as far as to the main program.
      plan_.Found(QString::fromUtf8(finding.what()));
    }
    done = true;
    // Wakes the loop below.
    Post([] {});
  });
  status_ = QApplication::exec();
  over_ = true;
  while (!done) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  robot.join();
  program_.reset();
  CheckAfterLife();
}

void Campaign::Work() {
  Random random = Luck();
  StartLogger(random);
  while (!over_ && step_ < lifeEnds_) {
    if (!Step()) return;
    if (step_ % kStepsToARest == 0 && !over_) ComeToRest();
  }
  if (over_) return;
  ComeToRest();
  EndLife(End::Window);
}

bool Campaign::Step() {
  ++step_;
  Random random = Luck();
  const int event = random.Below(1000);
  if (event < 5) {
    EndLife(End::Signal);
    return false;
  }
  if (event < 45) {
    DisturbLogger(random);
  } else if (event < 75) {
    Note(u"waits"_s);
    Pause(random.Between(200, 2000));
  } else {
    Do();
  }
  Look();
  if (random.OneIn(kEndsOfExport) && ExportRuns()) {
    EndLife(random.OneIn(2) ? End::Signal : End::Window);
    return false;
  }
  static constexpr int kPauses[] = {0, 0, 0, 5, 20, 60};
  Pause(random.OneOf(kPauses));
  return true;
}

void Campaign::Do() {
  Deed deed;
  Random random = Luck();
  Ask([&] {
    if (!over_) deed = Hand::Anything(random);
  });
  if (!deed.Do) return;
  Note(deed.Told);
  Post(deed.Do);
  Pause(deed.WaitMs);
}

bool Campaign::ExportRuns() {
  bool runs = false;
  Ask([&] {
    const QWidget* modal = over_ ? nullptr : QApplication::activeModalWidget();
    runs = modal != nullptr && modal->objectName() == "frmExport"_L1;
  });
  if (runs) ++exportsEnded_;
  return runs;
}

void Campaign::Look() {
  constexpr int kTries = 250;
  QString stranger;
  // A window that opens or closes does so in steps.
  for (int i = 0; i < kTries; ++i) {
    Ask([&] {
      stranger = over_ ? QString() : Watch::Stranger();
      if (!over_ && stranger.isEmpty()) watch_.Count();
    });
    if (stranger.isEmpty()) break;
    Pause(20);
  }
  if (!stranger.isEmpty()) throw Finding(stranger);
  if (const QString complaint = Complaint(); !complaint.isEmpty()) throw Finding(complaint);
}

// Whatever is going on ends by what the windows offer, with the logger as it is.
void Campaign::ComeToRest() {
  Note(u"comes to rest"_s);
  QElapsedTimer timer;
  timer.start();
  QString holds;
  while (!over_) {
    Deed deed;
    Random random = Luck();
    Ask([&] {
      if (over_) return;
      holds = Watch::Holds();
      if (holds.isEmpty() && program_->Link().Busy) holds = u"a logger operation"_s;
      deed = Hand::WayOut(random);
    });
    if (holds.isEmpty()) break;
    if (timer.elapsed() > kLongestRestMs)
      throw Finding(u"after %1 s there is still %2"_s.arg(kLongestRestMs / 1000).arg(holds));
    if (deed.Do) {
      Note(deed.Told);
      Post(deed.Do);
    }
    Look();
    Pause(50);
  }
  ++rests_;
  longestRestMs_ = std::max(longestRestMs_, timer.elapsed());
}

void Campaign::EndLife(End end) {
  if (end == End::Signal) {
    static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
    const int number = kSignals[static_cast<std::size_t>(signals_ % 3)];
    ++signals_;
    Note(u"signal %1"_s.arg(number));
    ::kill(::getpid(), number);
    return WaitForEnd(end, u"signal %1"_s.arg(number));
  }
  Note(u"closes the main window"_s);
  Post([this] {
    if (!over_) program_->Window().close();
  });
  WaitForEnd(end, u"its window was closed"_s);
}

// What could not be kept is told before the window goes.
void Campaign::AnswerLastMessage() {
  Deed deed;
  Random random = Luck();
  Ask([&] {
    if (!over_ && !Hand::Reach().isEmpty() && Hand::Reach().first()->objectName() == "FMessage"_L1)
      deed = Hand::WayOut(random);
  });
  if (!deed.Do) return;
  Note(deed.Told);
  Post(deed.Do);
}

void Campaign::WaitForEnd(End end, const QString& after) {
  QElapsedTimer timer;
  timer.start();
  while (!over_) {
    if (timer.elapsed() > kLongestEndMs)
      throw Finding(
          u"the program does not end within %1 s after %2"_s.arg(kLongestEndMs / 1000).arg(after));
    if (end == End::Window) AnswerLastMessage();
    Pause(20);
  }
}

void Campaign::StartLogger(Random& random) {
  const QStringList options = LoggerOptions(random);
  Note(u"a logger: "_s + options.join(u' '));
  logger_.reset();
  logger_ = std::make_unique<LoggerProcess>(plan_.Simulator, Path(u"logger"_s), options);
}

void Campaign::DisturbLogger(Random& random) {
  ++disturbances_;
  switch (random.Below(5)) {
    case 0:
      Note(u"the plug is pulled"_s);
      return logger_->PullOut();
    case 1:
      Note(u"the logger hangs"_s);
      return logger_->Hang();
    case 2:
      Note(u"the logger goes on"_s);
      return logger_->GoOn();
    default:
      return StartLogger(random);
  }
}

void Campaign::CheckAfterLife() {
  ++lives_;
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  if (status_ != 0) throw Finding(u"the program ends with %1"_s.arg(status_));
  for (const QWidget* widget : QApplication::topLevelWidgets())
    throw Finding(u"left behind: %1 %2"_s.arg(
        QString::fromLatin1(widget->metaObject()->className()), widget->objectName()));
  if (QApplication::overrideCursor() != nullptr) throw Finding(u"left behind: the wait cursor"_s);
  if (const QString complaint = Complaint(); !complaint.isEmpty()) throw Finding(complaint);
  if (QFile::exists(Path(u"archive.sqlite"_s))) {
    Store store(Path(u"archive.sqlite"_s));
    store.Open(Store::Access::Read);
    const QStringList complaints = store.IntegrityComplaints();
    if (!complaints.isEmpty()) throw Finding(u"the archive: "_s + complaints.join(u", "_s));
  }
  // What was being written when the program ended is taken away: it was asked to end, not killed.
  const QStringList unfinished =
      QDir(Path(u"program"_s)).entryList({u".tessmar-*"_s}, QDir::AllEntries | QDir::Hidden);
  if (!unfinished.isEmpty()) throw Finding(u"left behind: "_s + unfinished.join(u", "_s));
  const Holdings present = HoldingsOfProcess();
  Note(u"a life has ended: %1 threads, %2 descriptors"_s.arg(present.Threads.size())
           .arg(present.Descriptors.size()));
  // The first two lives open what is opened once.
  if (lives_ == 2) atFirst_ = present;
  if (lives_ <= 2) return;
  if (present.Threads.size() > atFirst_.Threads.size())
    throw Finding(u"more threads, %1, than at first, %2"_s.arg(present.Threads.join(u", "_s),
                                                               atFirst_.Threads.join(u", "_s)));
  if (present.Descriptors.size() > atFirst_.Descriptors.size())
    throw Finding(u"more descriptors, %1, than at first, %2"_s.arg(
        present.Descriptors.join(u", "_s), atFirst_.Descriptors.join(u", "_s)));
}

QStringList Campaign::Report() const {
  QStringList lines{
      u"steps %1"_s.arg(step_),
      u"programs %1"_s.arg(lives_),
      u"rests %1"_s.arg(rests_),
      u"signals %1"_s.arg(signals_),
      u"disturbances %1"_s.arg(disturbances_),
      u"ends in an export %1"_s.arg(exportsEnded_),
      u"longest answer %1 ms"_s.arg(longestAnswerMs_),
      u"longest rest %1 ms"_s.arg(longestRestMs_),
  };
  const QStringList windows = Watch::AllWindows();
  for (const QString& window : windows)
    lines.append(u"seen %1 %2"_s.arg(window).arg(watch_.Seen().value(window)));
  return lines;
}

}  // namespace tessmar::test
