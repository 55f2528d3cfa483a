#include "link/PortTrouble.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include "base/TextTable.h"

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#endif

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

/// A lock file is a few lines; what is longer is none.
constexpr qint64 kLongestLock = 1024;

QByteArray ReadSmallFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.read(kLongestLock) : QByteArray();
}

QString NameOf(qint64 process, const PortPlaces& places) {
  return QString::fromUtf8(ReadSmallFile(u"%1/%2/comm"_s.arg(places.Processes).arg(process)))
      .trimmed();
}

#ifdef Q_OS_UNIX

/// What a lock file says: the process in its first line, in digits; some programs put its name
/// behind it.
struct Lock {
  qint64 Process = 0;
  QString Program;
};

Lock ReadLock(const QByteArray& content) {
  const QList<QByteArray> lines = content.split('\n');
  Lock lock;
  lock.Process = lines.value(0).trimmed().toLongLong();
  lock.Program = QString::fromUtf8(lines.value(1).trimmed());
  return lock;
}

bool IsAlive(qint64 process) {
  return process > 0 && (::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM);
}

// A number that is taken by another program by now is no lock either.
bool Holds(const Lock& lock, const PortPlaces& places) {
  if (!IsAlive(lock.Process)) return false;
  const QString program =
      QFileInfo(QFile::symLinkTarget(u"%1/%2/exe"_s.arg(places.Processes).arg(lock.Process)))
          .fileName();
  return lock.Program.isEmpty() || program.isEmpty() || program == lock.Program;
}

/// The names under which programs lock a device: what stands behind /dev/, and its last part.
QStringList LockNames(const QString& device) {
  QString name = device;
  if (name.startsWith("/dev/"_L1)) name.remove(0, 5);
  QStringList names{u"LCK.."_s + name.replace(u'/', u'_')};
  const QString last = u"LCK.."_s + device.section(u'/', -1);
  if (!names.contains(last)) names.append(last);
  return names;
}

/// The process that has a device open; 0 when the system does not tell of one.
qint64 OpenedBy(const QString& device, const PortPlaces& places) {
  const QStringList processes = QDir(places.Processes).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  for (const QString& process : processes) {
    bool isNumber = false;
    const qint64 id = process.toLongLong(&isNumber);
    if (!isNumber || id == QCoreApplication::applicationPid()) continue;
    const QDir open(u"%1/%2/fd"_s.arg(places.Processes, process));
    const QFileInfoList files =
        open.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& file : files) {
      if (file.symLinkTarget() == device) return id;
    }
  }
  return 0;
}

PortTrouble InUse(std::optional<ProcessName> holder) {
  return {.Cause = PortCause::InUse, .Group = {}, .Holder = std::move(holder)};
}

PortTrouble NoPermission(const QString& device) {
  struct stat status = {};
  QString group;
  if (::stat(QFile::encodeName(device).constData(), &status) == 0)
    group = GroupThatMay(status.st_mode, QFileInfo(device).group());
  return {.Cause = PortCause::NoPermission, .Group = group, .Holder = std::nullopt};
}

PortTrouble FromError(int error, const QString& device, const PortPlaces& places) {
  switch (error) {
    case EACCES:
    case EPERM:
      return NoPermission(device);
    case EBUSY: {
      const qint64 process = OpenedBy(device, places);
      if (process == 0) return InUse(std::nullopt);
      return InUse(ProcessName{process, NameOf(process, places)});
    }
    case ENOENT:
    case ENODEV:
    case ENXIO:
      return {.Cause = PortCause::NoSuchDevice, .Group = {}, .Holder = {}};
    case EIO:
      return {.Cause = PortCause::Gone, .Group = {}, .Holder = {}};
    default:
      return {};
  }
}

#endif

QString HolderText(const std::optional<ProcessName>& holder) {
  if (!holder) return {};
  if (holder->Name.isEmpty())
    return InLanguage(u" by process %1", u" von Prozess %1").arg(holder->Id);
  return InLanguage(u" by %1 (process %2)", u" von %1 (Prozess %2)")
      .arg(holder->Name)
      .arg(holder->Id);
}

QString PermissionText(const QString& group) {
  if (group.isEmpty()) {
    return InLanguage(u"no permission; only the owner of the device may use it",
                      u"keine Berechtigung; nur der Besitzer des Geräts darf es benutzen");
  }
  return InLanguage(
             u"no permission; members of the group %1 have it: sudo adduser NAME %1, then log in "
             u"anew",
             u"keine Berechtigung; Mitglieder der Gruppe %1 haben sie: sudo adduser NAME %1, "
             u"danach neu anmelden")
      .arg(group);
}

}  // namespace

#ifdef Q_OS_UNIX

std::optional<ProcessName> LockHolder(const QString& device, const PortPlaces& places) {
  for (const QString& name : LockNames(QFileInfo(device).canonicalFilePath())) {
    const QString path = places.Locks + u'/' + name;
    if (!QFileInfo(path).isFile()) continue;
    const Lock lock = ReadLock(ReadSmallFile(path));
    if (lock.Process == QCoreApplication::applicationPid()) continue;
    if (Holds(lock, places)) return ProcessName{lock.Process, NameOf(lock.Process, places)};
    // One that is being written just now is empty, and not stale.
    if (lock.Process > 0) QFile::remove(path);
  }
  return std::nullopt;
}

PortTrouble FindPortTrouble(const QString& device, const PortPlaces& places) {
  const QFileInfo info(device);
  if (!info.exists()) return {.Cause = PortCause::NoSuchDevice, .Group = {}, .Holder = {}};
  const QString path = info.canonicalFilePath();
  if (const std::optional<ProcessName> holder = LockHolder(path, places)) return InUse(holder);
  struct stat status = {};
  const QByteArray encoded = QFile::encodeName(path);
  if (::stat(encoded.constData(), &status) == 0 && !S_ISCHR(status.st_mode))
    return {.Cause = PortCause::NotAPort, .Group = {}, .Holder = {}};
  const int port = ::open(encoded.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (port < 0) return FromError(errno, path, places);
  const bool isPort = ::isatty(port) == 1;
  ::close(port);
  return {.Cause = isPort ? PortCause::Unknown : PortCause::NotAPort, .Group = {}, .Holder = {}};
}

QString GroupThatMay(std::uint32_t mode, const QString& group) {
  constexpr std::uint32_t kMay = S_IRGRP | S_IWGRP;
  return (mode & kMay) == kMay ? group : QString();
}

#else

std::optional<ProcessName> LockHolder(const QString& /*device*/, const PortPlaces& /*places*/) {
  return std::nullopt;
}

PortTrouble FindPortTrouble(const QString& /*device*/, const PortPlaces& /*places*/) {
  return {};
}

QString GroupThatMay(std::uint32_t /*mode*/, const QString& /*group*/) {
  return {};
}

#endif

QString PortTroubleText(const PortTrouble& trouble, const QString& port) {
  const auto text = [&]() -> QString {
    switch (trouble.Cause) {
      case PortCause::NoSuchDevice:
        return InLanguage(
            u"no such device; plug the adapter in, \"tessmar ports\" lists what is there",
            u"kein solches Gerät; Adapter einstecken, \"tessmar ports\" zeigt, was da ist");
      case PortCause::NotAPort:
        return InLanguage(u"not a serial port; \"tessmar ports\" lists them",
                          u"keine serielle Schnittstelle; \"tessmar ports\" zeigt sie");
      case PortCause::NoPermission:
        return PermissionText(trouble.Group);
      case PortCause::InUse:
        return InLanguage(u"in use%1; end that program or wait for it",
                          u"belegt%1; jenes Programm beenden oder abwarten")
            .arg(HolderText(trouble.Holder));
      case PortCause::Gone:
        return InLanguage(u"the device is gone; plug it in again",
                          u"das Gerät ist verschwunden; wieder einstecken");
      case PortCause::Silent:
        return InLanguage(u"nothing answers; check cable, battery and baud rate",
                          u"nichts antwortet; Kabel, Batterie und Baudrate prüfen");
      case PortCause::NotALogger:
        return InLanguage(u"what answers is not a logger; check port and baud rate",
                          u"was antwortet, ist kein Logger; Anschluss und Baudrate prüfen");
      case PortCause::Unknown:
        break;
    }
    return InLanguage(u"cannot be opened; unplug the adapter and plug it in again",
                      u"lässt sich nicht öffnen; Adapter aus- und wieder einstecken");
  };
  return port + u": "_s + text();
}

}  // namespace tessmar
