#include "link/enumerate.h"

#include <QSerialPortInfo>
#include <vector>

#include "base/Blanks.h"
#include "base/Fault.h"

#ifdef Q_OS_WIN
#include "link/WindowsRegistry.h"
#endif

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString Entry(const QString& port, const QString& name) {
  return port.toUpper() + u" - "_s + name;
}

/// A friendly name without the port behind it: "USB Serial Port (COM5)" becomes "USB Serial Port".
QString WithoutPort(const QString& friendlyName) {
  const qsizetype port = friendlyName.indexOf(u"(COM"_s);
  return TrimBlanks(port > 0 ? friendlyName.left(port) : friendlyName);
}

void WalkDevices(const DeviceRegistry& registry, const QString& root, QStringList& ports) {
  for (const QString& device : registry.Subkeys(root)) {
    const QString deviceKey = root + u'\\' + device;
    for (const QString& instance : registry.Subkeys(deviceKey)) {
      const QString key = deviceKey + u'\\' + instance;
      if (!registry.CanOpen(key)) continue;
      const std::optional<QString> name = registry.Value(key, u"FriendlyName"_s);
      if (!name) continue;
      const QString portKey = registry.IsNtFamily() ? key + u"\\Device Parameters"_s : key;
      const std::optional<QString> port = registry.Value(portKey, u"PortName"_s);
      if (!port) continue;
      ports.append(Entry(*port, WithoutPort(*name)));
    }
  }
}

void WalkModems(const DeviceRegistry& registry, QStringList& ports) {
  const QString root = u"SYSTEM\\CurrentControlSet\\Control\\Class"_s;
  for (const QString& deviceClass : registry.Subkeys(root)) {
    const QString classKey = root + u'\\' + deviceClass;
    const QString className = registry.Value(classKey, u"Class"_s).value_or(QString());
    if (className.left(5).toUpper() != u"MODEM") continue;
    for (const QString& modem : registry.Subkeys(classKey)) {
      const QString key = classKey + u'\\' + modem;
      if (!registry.CanOpen(key)) continue;
      const QString port = registry.Value(key, u"AttachedTo"_s).value_or(QString());
      const QString name = registry.Value(key, u"FriendlyName"_s).value_or(QString());
      ports.append(Entry(TrimBlanks(port), TrimBlanks(name)));
    }
  }
}

/// What names a device to a person; empty when the system tells nothing that does.
QString FriendlyName(const SerialDevice& device) {
  QString description = device.Description.trimmed();
  if (!description.isEmpty()) return description;
  // An adapter is named even if it does not say what it is: ports above COM8 are offered only so.
  const QString fileName = device.Location.section(u'/', -1);
  if (!fileName.startsWith(u"ttyUSB") && !fileName.startsWith(u"ttyACM")) return {};
  const QString manufacturer = device.Manufacturer.trimmed();
  return manufacturer.isEmpty() ? fileName : manufacturer;
}

std::vector<SerialDevice> SystemDevices() {
  std::vector<SerialDevice> devices;
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts())
    devices.push_back({port.systemLocation(), port.description(), port.manufacturer()});
  return devices;
}

}  // namespace

QStringList NamePorts(const PortMap& map, std::span<const SerialDevice> devices) {
  QStringList ports;
  const auto portName = [](std::int16_t number) { return u"COM%1"_s.arg(number); };
  for (const auto& [number, override] : map.Overrides()) {
    ports.append(Entry(portName(number), override.FriendlyName));
  }
  for (const SerialDevice& device : devices) {
    const std::optional<std::int16_t> number = map.Number(device.Location);
    const QString name = FriendlyName(device);
    if (!number || map.Overrides().contains(*number) || name.isEmpty()) continue;
    ports.append(Entry(portName(*number), name));
  }
  return ports;
}

QStringList WalkRegistry(const DeviceRegistry& registry) {
  QStringList ports;
  try {
    if (!registry.IsNtFamily()) {
      WalkDevices(registry, u"Enum\\FTDIBUS"_s, ports);
      return ports;
    }
    WalkDevices(registry, u"SYSTEM\\CurrentControlSet\\Enum\\FTDIBUS"_s, ports);
    WalkModems(registry, ports);
    WalkDevices(registry, u"SYSTEM\\CurrentControlSet\\Enum\\USB"_s, ports);
  } catch (const Fault&) {
    return ports;
  }
  return ports;
}

std::vector<NamedPort> ListPorts(const PortMap& map, std::span<const SerialDevice> devices) {
  std::vector<NamedPort> ports;
  const auto portName = [](std::int16_t number) { return u"COM%1"_s.arg(number); };
  for (const auto& [number, override] : map.Overrides())
    ports.push_back({portName(number), override.Device, override.FriendlyName});
  for (const SerialDevice& device : devices) {
    const std::optional<std::int16_t> number = map.Number(device.Location);
    if (number && map.Overrides().contains(*number)) continue;
    ports.push_back(
        {number ? portName(*number) : QString(), device.Location, FriendlyName(device)});
  }
  return ports;
}

std::vector<NamedPort> ListPorts(const PortMap& map) {
  return ListPorts(map, SystemDevices());
}

QStringList EnumeratePorts(const PortMap& map) {
#ifdef Q_OS_WIN
  return NamePorts(map, {}) + WalkRegistry(WindowsRegistry());
#else
  return NamePorts(map, SystemDevices());
#endif
}

}  // namespace tessmar
