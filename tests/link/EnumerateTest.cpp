#include "link/enumerate.h"

#include <gtest/gtest.h>

#include <QMap>

#include "base/Fault.h"

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

/// A registry in memory: keys come into being with their values and subkeys.
class MemoryRegistry final : public DeviceRegistry {
 public:
  bool IsNtFamily() const override { return NtFamily; }
  bool CanOpen(const QString& key) const override {
    if (key == FaultAt) throw FileFault("the registry cannot be read");
    return keys_.contains(key) && !Locked.contains(key);
  }
  QStringList Subkeys(const QString& key) const override {
    return CanOpen(key) ? keys_[key].Subkeys : QStringList();
  }
  std::optional<QString> Value(const QString& key, const QString& name) const override {
    if (!CanOpen(key) || !keys_[key].Values.contains(name)) return std::nullopt;
    return keys_[key].Values[name];
  }

  void AddKey(const QString& key) {
    if (keys_.contains(key)) return;
    keys_[key] = {};
    const qsizetype slash = key.lastIndexOf(u'\\');
    if (slash < 0) return;
    AddKey(key.left(slash));
    keys_[key.left(slash)].Subkeys.append(key.mid(slash + 1));
  }
  void AddValue(const QString& key, const QString& name, const QString& value) {
    AddKey(key);
    keys_[key].Values[name] = value;
  }
  /// A device in the trees of the NT family.
  void AddDevice(const QString& instance, const QString& name, const QString& port) {
    AddValue(instance, u"FriendlyName"_s, name);
    AddValue(instance + u"\\Device Parameters"_s, u"PortName"_s, port);
  }

  bool NtFamily = true;
  QStringList Locked;  ///< Keys that cannot be opened.
  QString FaultAt = u"nowhere"_s;

 private:
  struct Key {
    QStringList Subkeys;
    QMap<QString, QString> Values;
  };
  QMap<QString, Key> keys_;
};

const QString kFtdi = u"SYSTEM\\CurrentControlSet\\Enum\\FTDIBUS\\"_s;
const QString kUsb = u"SYSTEM\\CurrentControlSet\\Enum\\USB\\"_s;
const QString kClass = u"SYSTEM\\CurrentControlSet\\Control\\Class\\"_s;

TEST(ListPorts, ShowsOverridesAndEveryDeviceThatIsThere) {
  const PortMap map(u"COM9=/tmp/line,Simulated logger;COM5=/dev/ttyUSB0,Mill Pond"_s);
  const std::vector<SerialDevice> devices{
      {u"/dev/ttyUSB0"_s, u"FT232R"_s, {}}, {u"/dev/ttyS0"_s, {}, {}}, {u"/dev/ttyAMA0"_s, {}, {}}};
  EXPECT_EQ(ListPorts(map, devices),
            (std::vector<NamedPort>{{u"COM5"_s, u"/dev/ttyUSB0"_s, u"Mill Pond"_s},
                                    {u"COM9"_s, u"/tmp/line"_s, u"Simulated logger"_s},
                                    {u"COM1"_s, u"/dev/ttyS0"_s, {}},
                                    {{}, u"/dev/ttyAMA0"_s, {}}}));
}

TEST(PortMap, AssignsADeviceAboveAllOverrides) {
  PortMap map(u"COM1=/dev/other,Other"_s);
  map.Assign(1, u"/dev/a,b;c"_s);
  EXPECT_EQ(map.Device(1), u"/dev/a,b;c"_s);
}

TEST(WalkRegistry, CutsThePortOffTheFriendlyName) {
  MemoryRegistry registry;
  registry.AddDevice(kFtdi + u"VID_0403\\0000"_s, u"USB Serial Port (COM5)"_s, u"COM5"_s);
  EXPECT_EQ(WalkRegistry(registry), QStringList{u"COM5 - USB Serial Port"_s});
}

TEST(WalkRegistry, KeepsAFriendlyNameThatBeginsWithThePort) {
  MemoryRegistry registry;
  registry.AddDevice(kFtdi + u"D\\0000"_s, u"(COM5) Adapter"_s, u"COM5"_s);
  EXPECT_EQ(WalkRegistry(registry), QStringList{u"COM5 - (COM5) Adapter"_s});
}

TEST(WalkRegistry, KeepsANameWithoutAPortTrimmed) {
  MemoryRegistry registry;
  registry.AddDevice(kFtdi + u"D\\0000"_s, u"  Serial Adapter "_s, u"COM5"_s);
  EXPECT_EQ(WalkRegistry(registry), QStringList{u"COM5 - Serial Adapter"_s});
}

TEST(WalkRegistry, ListsALowerCasePortInCapitals) {
  MemoryRegistry registry;
  registry.AddDevice(kUsb + u"D\\0000"_s, u"Adapter (COM7)"_s, u"com7"_s);
  EXPECT_EQ(WalkRegistry(registry), QStringList{u"COM7 - Adapter"_s});
}

TEST(WalkRegistry, FindsAdaptersThenModemsThenUsbDevices) {
  MemoryRegistry registry;
  registry.AddDevice(kUsb + u"VID_1\\a"_s, u"Gadget (COM8)"_s, u"COM8"_s);
  registry.AddValue(kClass + u"{4D36}"_s, u"Class"_s, u"Modem"_s);
  registry.AddValue(kClass + u"{4D36}\\0000"_s, u"AttachedTo"_s, u" com3 "_s);
  registry.AddValue(kClass + u"{4D36}\\0000"_s, u"FriendlyName"_s, u" Fast Modem (COM3) "_s);
  registry.AddDevice(kFtdi + u"A\\0"_s, u"First (COM5)"_s, u"COM5"_s);
  registry.AddDevice(kFtdi + u"A\\1"_s, u"Second (COM6)"_s, u"COM6"_s);
  EXPECT_EQ(WalkRegistry(registry),
            (QStringList{u"COM5 - First"_s, u"COM6 - Second"_s, u"COM3 - Fast Modem (COM3)"_s,
                         u"COM8 - Gadget"_s}));
}

TEST(WalkRegistry, TakesClassesThatBeginWithModemInAnyCase) {
  MemoryRegistry registry;
  registry.AddValue(kClass + u"{1}"_s, u"Class"_s, u"modems of old"_s);
  registry.AddValue(kClass + u"{1}\\0"_s, u"AttachedTo"_s, u"COM1"_s);
  registry.AddValue(kClass + u"{2}"_s, u"Class"_s, u"Ports"_s);
  registry.AddValue(kClass + u"{2}\\0"_s, u"AttachedTo"_s, u"COM2"_s);
  registry.AddValue(kClass + u"{3}\\0"_s, u"AttachedTo"_s, u"COM3"_s);
  EXPECT_EQ(WalkRegistry(registry), QStringList{u"COM1 - "_s});
}

TEST(WalkRegistry, TakesModemValuesAsTheyComeEvenIfEmpty) {
  MemoryRegistry registry;
  registry.AddValue(kClass + u"{1}"_s, u"Class"_s, u"Modem"_s);
  registry.AddValue(kClass + u"{1}\\0"_s, u"FriendlyName"_s, u"Nameless"_s);
  EXPECT_EQ(WalkRegistry(registry), QStringList{u" - Nameless"_s});
}

TEST(WalkRegistry, PassesOverWhatCannotBeReadOrOpened) {
  MemoryRegistry registry;
  registry.AddValue(kFtdi + u"A\\0\\Device Parameters"_s, u"PortName"_s, u"COM5"_s);
  registry.AddValue(kFtdi + u"A\\1"_s, u"FriendlyName"_s, u"No parameters"_s);
  registry.AddValue(kFtdi + u"A\\2"_s, u"FriendlyName"_s, u"No port"_s);
  registry.AddKey(kFtdi + u"A\\2\\Device Parameters"_s);
  registry.AddDevice(kFtdi + u"A\\3"_s, u"Locked"_s, u"COM6"_s);
  registry.Locked.append(kFtdi + u"A\\3"_s);
  registry.AddDevice(kFtdi + u"A\\4"_s, u"Good"_s, u"COM7"_s);
  EXPECT_EQ(WalkRegistry(registry), QStringList{u"COM7 - Good"_s});
}

TEST(WalkRegistry, ReadsThePortFromTheDeviceItselfOutsideTheNtFamily) {
  MemoryRegistry registry;
  registry.NtFamily = false;
  registry.AddValue(u"Enum\\FTDIBUS\\A\\0"_s, u"FriendlyName"_s, u"Adapter (COM4)"_s);
  registry.AddValue(u"Enum\\FTDIBUS\\A\\0"_s, u"PortName"_s, u"COM4"_s);
  registry.AddDevice(kUsb + u"B\\0"_s, u"Unseen"_s, u"COM5"_s);
  registry.AddDevice(kFtdi + u"C\\0"_s, u"Unseen"_s, u"COM6"_s);
  EXPECT_EQ(WalkRegistry(registry), QStringList{u"COM4 - Adapter"_s});
}

TEST(WalkRegistry, EndsWithWhatWasFoundAtAFault) {
  MemoryRegistry registry;
  registry.AddDevice(kFtdi + u"A\\0"_s, u"First (COM5)"_s, u"COM5"_s);
  registry.AddDevice(kFtdi + u"A\\1"_s, u"Second (COM6)"_s, u"COM6"_s);
  registry.FaultAt = kFtdi + u"A\\1"_s;
  EXPECT_EQ(WalkRegistry(registry), QStringList{u"COM5 - First"_s});
}

TEST(WalkRegistry, IsEmptyForAnEmptyRegistry) {
  EXPECT_TRUE(WalkRegistry(MemoryRegistry()).isEmpty());
}

TEST(NamePorts, NamesTheDevicesThatHaveANumber) {
  const SerialDevice devices[] = {
      {u"/dev/ttyUSB0"_s, u"FT232R USB UART"_s, u"FTDI"_s},
      {u"/dev/ttyACM1"_s, u" Field Modem "_s, {}},
      {u"/dev/ttyUSB9"_s, u"Without a number"_s, {}},
      {u"/dev/rfcomm0"_s, u"Without a number"_s, {}},
  };
  EXPECT_EQ(NamePorts(PortMap(), devices),
            (QStringList{u"COM5 - FT232R USB UART"_s, u"COM14 - Field Modem"_s}));
}

TEST(NamePorts, NamesAnAdapterThatDoesNotSayWhatItIs) {
  const SerialDevice devices[] = {{u"/dev/ttyUSB5"_s, {}, u"Prolific"_s},
                                  {u"/dev/ttyACM0"_s, {}, {}}};
  EXPECT_EQ(NamePorts(PortMap(), devices),
            (QStringList{u"COM10 - Prolific"_s, u"COM13 - ttyACM0"_s}));
}

TEST(NamePorts, LeavesPlainPortsOut) {
  const SerialDevice devices[] = {{u"/dev/ttyS0"_s, {}, u"Board"_s}, {u"/dev/ttyS1"_s, {}, {}}};
  EXPECT_TRUE(NamePorts(PortMap(), devices).isEmpty());
}

TEST(NamePorts, CountsAnOverriddenPortAsEnumeratedUnderItsFriendlyName) {
  const SerialDevice devices[] = {{u"/dev/ttyUSB0"_s, u"FT232R USB UART"_s, {}},
                                  {u"/dev/ttyUSB4"_s, u"Hidden by the override"_s, {}}};
  EXPECT_EQ(NamePorts(PortMap(u"COM9=/tmp/logger,Simulated logger"_s), devices),
            (QStringList{u"COM9 - Simulated logger"_s, u"COM5 - FT232R USB UART"_s}));
}

TEST(EnumeratePorts, ListsTheOverridesOnAnyMachine) {
  EXPECT_TRUE(EnumeratePorts(PortMap(u"COM9=/tmp/logger,Simulated logger"_s))
                  .contains(u"COM9 - Simulated logger"_s));
}

}  // namespace
}  // namespace tessmar::test
