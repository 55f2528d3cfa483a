#include "link/PortMap.h"

#include <QRegularExpression>
#include <array>

#include "base/FileTrouble.h"
#include "base/ReadFile.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

#ifndef Q_OS_WIN
struct UsualPlace {
  int FirstNumber;
  int Count;
  const char16_t* Device;  ///< Without its number, which counts from 0.
};

constexpr std::array<UsualPlace, 3> kUsualPlaces{{
    {1, 4, u"/dev/ttyS"},
    {5, 8, u"/dev/ttyUSB"},
    {13, 4, u"/dev/ttyACM"},
}};
#endif

QString UsualDevice(int number) {
#ifdef Q_OS_WIN
  return number > 0 ? u"COM%1"_s.arg(number) : QString();
#else
  for (const UsualPlace& place : kUsualPlaces) {
    const int index = number - place.FirstNumber;
    if (index >= 0 && index < place.Count) {
      return QString::fromUtf16(place.Device) + QString::number(index);
    }
  }
  return {};
#endif
}

}  // namespace

PortMap::PortMap(const QString& environment, const QString& file) {
  AddOverrides(file);
  AddOverrides(environment);
}

void PortMap::AddOverrides(const QString& text) {
  static const QRegularExpression separators(u"[;\\r\\n]"_s);
  static const QRegularExpression form(u"^COM(\\d{1,5})\\s*=([^,]+)(?:,(.*))?$"_s,
                                       QRegularExpression::CaseInsensitiveOption);
  for (const QString& entry : text.split(separators, Qt::SkipEmptyParts)) {
    const QRegularExpressionMatch match = form.match(entry.trimmed());
    if (!match.hasMatch()) continue;
    const std::int16_t number = match.captured(1).toShort();
    const QString device = match.captured(2).trimmed();
    const QString name = match.captured(3).trimmed();
    if (number < 1 || device.isEmpty()) continue;
    overrides_[number] = {device, name.isEmpty() ? device : name};
  }
}

void PortMap::Assign(std::int16_t number, const QString& device) {
  overrides_[number] = {device, device};
}

QString PortMap::Device(int number) const {
  if (number < 1 || number > INT16_MAX) return {};
  const auto found = overrides_.find(static_cast<std::int16_t>(number));
  return found != overrides_.end() ? found->second.Device : UsualDevice(number);
}

std::optional<std::int16_t> PortMap::Number(const QString& device) const {
  for (const auto& [number, override] : overrides_) {
    if (override.Device == device) return number;
  }
  constexpr std::int16_t kLastUsualNumber = 16;
  for (std::int16_t number = 1; number <= kLastUsualNumber; ++number) {
    if (!overrides_.contains(number) && UsualDevice(number) == device) return number;
  }
  return std::nullopt;
}

QString ReadPortsFile(const QString& path) {
  constexpr qint64 kLargestFile = qint64{1024} * 1024;
  try {
    return QString::fromUtf8(ReadWholeFile(path, kLargestFile));
  } catch (const FileTrouble&) {
    return {};
  }
}

}  // namespace tessmar
