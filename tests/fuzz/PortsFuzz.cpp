// The ports file and the overrides of the environment: the whole input is either.

#include "Fuzz.h"
#include "link/PortMap.h"

namespace {

using namespace tessmar;
using fuzz::Hold;

void Check(const PortMap& map) {
  QString written;
  for (const auto& [number, override] : map.Overrides()) {
    Hold(number >= 1, "a port has a number from 1 on");
    Hold(!override.Device.isEmpty() && !override.FriendlyName.isEmpty(), "a port has a device");
    Hold(map.Device(number) == override.Device, "a number leads to its device");
    const auto back = map.Number(override.Device);
    Hold(back && map.Device(*back) == override.Device, "a device leads to a number of its own");
    written += QStringLiteral("COM%1=%2,%3\n")
                   .arg(QString::number(number), override.Device, override.FriendlyName);
  }
  Hold(PortMap({}, written).Overrides() == map.Overrides(), "overrides written down are the same");
  // Numbers that no port has.
  for (const int number : {0, -1, 40000, 65536 + 9, INT32_MIN, INT32_MAX})
    Hold(map.Device(number).isEmpty(), "a number that no port has leads to no device");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QString text = QString::fromUtf8(fuzz::FileOf(data, size));
  const PortMap file({}, text);
  const PortMap environment(text);
  Check(file);
  Hold(file.Overrides() == environment.Overrides(), "both places take the same form");
  Hold(PortMap(text, text).Overrides() == file.Overrides(), "the same twice changes nothing");
  return 0;
}
