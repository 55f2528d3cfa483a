#pragma once

#include <QString>
#include <cstdint>
#include <map>
#include <optional>

namespace tessmar {

/// Which device stands behind each port number: the program knows ports as COM1, COM2 and so on.
///
/// On Linux COM1 to COM4 are /dev/ttyS0 to 3, COM5 to COM12 are /dev/ttyUSB0 to 7 and COM13 to
/// COM16 are /dev/ttyACM0 to 3; on Windows a port is its own device. Overrides replace single
/// numbers: each is a text "COM9=/path/to/device,Friendly name", several separated by ";" or line
/// breaks. The friendly name may be missing; the device then names the port. Lines that begin with
/// "#" and texts of another form are passed over; of two overrides of one number the later stands.
class PortMap {
 public:
  struct Override {
    QString Device;
    QString FriendlyName;
    bool operator==(const Override&) const = default;
  };

  PortMap() = default;
  /// @param environment  overrides that stand above those of the file.
  /// @param file  overrides of the ports file, one a line.
  explicit PortMap(const QString& environment, const QString& file = {});

  /// Puts a device behind a number, above all overrides.
  void Assign(std::int16_t number, const QString& device);

  /// The device of COM<number>; empty when there is none.
  QString Device(int number) const;

  /// The number whose device this is, an override before a usual place; nothing when there is none.
  std::optional<std::int16_t> Number(const QString& device) const;

  /// The overrides by their number, which is 1 or above.
  const std::map<std::int16_t, Override>& Overrides() const { return overrides_; }

 private:
  void AddOverrides(const QString& text);

  std::map<std::int16_t, Override> overrides_;
};

/// Reads the text of a ports file; empty when there is none, it cannot be read, is no regular file
/// or has more than 1 MiB.
QString ReadPortsFile(const QString& path);

}  // namespace tessmar
