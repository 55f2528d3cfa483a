#pragma once

#include "link/enumerate.h"

namespace tessmar {

/// The registry of the machine; exists on Windows only.
class WindowsRegistry final : public DeviceRegistry {
 public:
  bool IsNtFamily() const override;
  bool CanOpen(const QString& key) const override;
  QStringList Subkeys(const QString& key) const override;
  std::optional<QString> Value(const QString& key, const QString& name) const override;
};

}  // namespace tessmar
