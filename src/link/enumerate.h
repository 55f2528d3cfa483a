#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <span>
#include <vector>

#include "link/PortMap.h"

namespace tessmar {

/// A serial device as the system tells of it.
struct SerialDevice {
  QString Location;  ///< Path of the device, such as "/dev/ttyUSB0".
  QString Description;
  QString Manufacturer;
};

/// The ports worth naming among the system's serial devices, each as "COM5 - FT232R USB UART":
/// first the overrides of the map, then the devices that have a number, in the system's order. A
/// plain port of the board, without a description, is not worth naming.
QStringList NamePorts(const PortMap& map, std::span<const SerialDevice> devices);

/// A port of this machine, for a list that shows what is there.
struct NamedPort {
  QString Port;  ///< "COM5"; empty for a device without a number.
  QString Device;
  QString Name;  ///< Friendly name; may be empty.
  bool operator==(const NamedPort&) const = default;
};

/// The overrides of the map, then the devices that the system tells of, in its order.
std::vector<NamedPort> ListPorts(const PortMap& map, std::span<const SerialDevice> devices);
std::vector<NamedPort> ListPorts(const PortMap& map);

/// The ports worth naming on this machine. Has no side effects and reports no failure.
QStringList EnumeratePorts(const PortMap& map);

/// The system's device registry as far as the walks read it; paths are below the machine's root
/// key.
class DeviceRegistry {
 public:
  virtual ~DeviceRegistry() = default;

  /// True on the systems whose registry has the modem and USB device trees.
  virtual bool IsNtFamily() const = 0;
  virtual bool CanOpen(const QString& key) const = 0;
  /// The names of a key's subkeys; empty for a key that cannot be opened.
  virtual QStringList Subkeys(const QString& key) const = 0;
  /// A text value, cut at its first NUL; nothing when it cannot be read.
  virtual std::optional<QString> Value(const QString& key, const QString& name) const = 0;
};

/// The ports that the registry names, each as "COM3 - USB Serial Port", in the order in which the
/// walks find them: FTDI adapters, modems, USB devices. The same port may appear twice. A fault
/// ends the walks with what was found so far.
QStringList WalkRegistry(const DeviceRegistry& registry);

}  // namespace tessmar
