#pragma once

#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>

namespace tessmar::test {

/// A disk that a test can fill: one of its own where it may mount one, otherwise a limit for the
/// size of every file, which fails at the same writes.
class SmallDisk {
 public:
  SmallDisk()
      : mounted_(::mount("none", Name().constData(), "tmpfs", 0, "size=1m,nr_inodes=64") == 0) {}
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    Empty();
    if (mounted_) ::umount2(Name().constData(), MNT_DETACH);
  }

  QString Path(const QString& name) const { return folder_.filePath(name); }

  /// What stands there, without what the disk was filled with.
  QStringList Files() const {
    QStringList files =
        QDir(folder_.path())
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    files.removeAll(kFiller);
    return files;
  }

  /// Leaves room for so many bytes, rounded to whole blocks.
  void Fill(qint64 room) {
    if (mounted_) {
      QFile filler(Path(kFiller));
      if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return;
      const QByteArray block(4096, 'x');
      while (filler.write(block) == block.size()) continue;
      filler.resize(filler.size() - room);
      return;
    }
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{static_cast<rlim_t>(room), before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    limited_ = true;
  }

  /// Makes room again.
  void Empty() {
    QFile::remove(Path(kFiller));
    if (!limited_) return;
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
    limited_ = false;
  }

 private:
  static constexpr QLatin1StringView kFiller{"filler"};
  QByteArray Name() const { return QFile::encodeName(folder_.path()); }

  QTemporaryDir folder_;
  bool mounted_;
  bool limited_ = false;
  rlimit before_{};
  void (*handler_)(int) = SIG_DFL;
};

/// While it lives, the process may do with files what a user without privileges may.
class OrdinaryUser {
 public:
  OrdinaryUser() : privileged_(::geteuid() == 0) {
    if (privileged_ && ::seteuid(kNobody) != 0) privileged_ = false;
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (privileged_ && ::seteuid(0) != 0) std::abort();
  }

 private:
  static constexpr uid_t kNobody = 65534;
  bool privileged_;
};

}  // namespace tessmar::test
