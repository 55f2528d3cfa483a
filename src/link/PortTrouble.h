#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace tessmar {

/// Why a port cannot be used, as far as the system tells.
enum class PortCause {
  NoSuchDevice,
  NotAPort,      ///< There, but a file, a folder or another device.
  NoPermission,  ///< The system does not let this user.
  InUse,         ///< Another program has it.
  Gone,          ///< Was open, and the device went away.
  Silent,        ///< Open, and nothing answers.
  NotALogger,    ///< Open, and what answers is no logger.
  Unknown,       ///< The system refused without a reason that is known here.
};

/// A process, as far as the system tells.
struct ProcessName {
  qint64 Id = 0;
  QString Name;  ///< Empty when the system does not say.
  bool operator==(const ProcessName&) const = default;
};

struct PortTrouble {
  PortCause Cause = PortCause::Unknown;
  QString Group;                      ///< Of NoPermission: whose members may; empty when none does.
  std::optional<ProcessName> Holder;  ///< Of InUse.
  bool operator==(const PortTrouble&) const = default;
};

/// Where the system keeps what is looked at; tests have folders of their own.
struct PortPlaces {
  QString Locks = QStringLiteral("/var/lock");
  QString Processes = QStringLiteral("/proc");
};

/// The process whose lock file stands on a device ("LCK..ttyUSB0" for /dev/ttyUSB0, as serial
/// programs use them), while it lives; another than this process itself. A lock whose process is
/// dead is stale, and taken away.
std::optional<ProcessName> LockHolder(const QString& device, const PortPlaces& places = {});

/// Finds out why a device could not be opened. Opens and closes it once more for that.
PortTrouble FindPortTrouble(const QString& device, const PortPlaces& places = {});

/// The group of a device whose members may read and write it, from the bits of its mode; empty when
/// none may.
QString GroupThatMay(std::uint32_t mode, const QString& group);

/// One line, without a full stop: the port, what is wrong with it, and what to do. In the language
/// of the texts.
QString PortTroubleText(const PortTrouble& trouble, const QString& port);

}  // namespace tessmar
