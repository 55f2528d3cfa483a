#include "archive/Checkpoint.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include "archive/Store.h"

#ifdef Q_OS_LINUX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString SideFile(const QString& path) {
  return path + u"-wal"_s;
}

void Run(const QString& path) {
  // A file that was taken away is not made again.
  if (!QFileInfo::exists(path)) return;
  try {
    Store store(path);
    store.Open(Store::Access::Write);
    store.Run(u"PRAGMA wal_checkpoint(PASSIVE)"_s);
  } catch (const ArchiveFault&) {
    return;  // The next one takes all of it.
  }
}

}  // namespace

Checkpoint::Checkpoint() = default;

Checkpoint::~Checkpoint() {
  Wait();
}

void Checkpoint::BeginIfWorth(const QString& path) {
  if (thread_ && thread_->isRunning()) return;
  if (QFileInfo(SideFile(path)).size() < kWorthBytes) return;
  Wait();
  thread_.reset(QThread::create(Run, path));
  thread_->start();
}

void Checkpoint::Wait() {
  if (!thread_) return;
  thread_->wait();
  thread_.reset();
}

void Checkpoint::StartWritingOut([[maybe_unused]] const QString& path) {
#ifdef Q_OS_LINUX
  // SQLite holds its locks on the file itself and on "-shm": to close this one again costs none.
  const int file = ::open(QFile::encodeName(SideFile(path)).constData(), O_WRONLY | O_CLOEXEC);
  if (file < 0) return;
  ::sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE);
  ::close(file);
#endif
}

}  // namespace tessmar
