#include "link/WindowsRegistry.h"

#include <windows.h>

#include <algorithm>
#include <array>

namespace tessmar {
namespace {

constexpr REGSAM kReadAccess = 0x20019;
constexpr DWORD kBufferSize = 256;
constexpr DWORD kNtPlatform = 2;

using Buffer = std::array<char, kBufferSize>;

/// A key open for reading, as long as this lives.
class OpenKey {
 public:
  explicit OpenKey(const QString& path) {
    const QByteArray name = path.toLocal8Bit();
    isOpen_ =
        RegOpenKeyExA(HKEY_LOCAL_MACHINE, name.constData(), 0, kReadAccess, &key_) == ERROR_SUCCESS;
  }
  ~OpenKey() {
    if (isOpen_) RegCloseKey(key_);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;

  bool IsOpen() const { return isOpen_; }
  HKEY Handle() const { return key_; }

 private:
  HKEY key_ = nullptr;
  bool isOpen_ = false;
};

/// The text ahead of the first NUL.
QString Text(const Buffer& buffer, DWORD length) {
  const uint size = qstrnlen(buffer.data(), std::min(length, kBufferSize));
  return QString::fromLocal8Bit(buffer.data(), static_cast<qsizetype>(size));
}

}  // namespace

bool WindowsRegistry::IsNtFamily() const {
  OSVERSIONINFOA version{};
  version.dwOSVersionInfoSize = sizeof version;
  return GetVersionExA(&version) != 0 && version.dwPlatformId == kNtPlatform;
}

bool WindowsRegistry::CanOpen(const QString& key) const {
  return OpenKey(key).IsOpen();
}

QStringList WindowsRegistry::Subkeys(const QString& key) const {
  QStringList names;
  const OpenKey open(key);
  if (!open.IsOpen()) return names;
  Buffer name{};
  for (DWORD index = 0;; ++index) {
    DWORD length = kBufferSize;
    if (RegEnumKeyExA(open.Handle(), index, name.data(), &length, nullptr, nullptr, nullptr,
                      nullptr) != ERROR_SUCCESS) {
      return names;
    }
    names.append(Text(name, length));
  }
}

std::optional<QString> WindowsRegistry::Value(const QString& key, const QString& name) const {
  const OpenKey open(key);
  if (!open.IsOpen()) return std::nullopt;
  Buffer value{};
  DWORD length = kBufferSize;
  if (RegQueryValueExA(open.Handle(), name.toLocal8Bit().constData(), nullptr, nullptr,
                       reinterpret_cast<LPBYTE>(value.data()), &length) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return Text(value, length);
}

}  // namespace tessmar
