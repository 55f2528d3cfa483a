// The persisted settings: the whole input is the store, and also a value that is put into one.

#include "Fuzz.h"
#include "session/IniSection.h"

namespace {

using namespace tessmar;
using fuzz::Hold;

const QByteArray kSection("Configuration");
const QByteArray kOther("Other");

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray file = fuzz::FileOf(data, size);
  const QString text = QString::fromUtf8(file);
  const IniValues whole{{QStringLiteral("LastFile0"), text}};
  const QByteArray fresh = WithIniSection({}, kSection, whole);
  Hold(ReadIniSection(fresh, kSection) == whole, "what was put into a new store is read from it");
  Hold(WithIniSection(fresh, kSection, whole) == fresh, "putting it again changes nothing");

  // Short ones: a file may have a key in each of its lines.
  const IniValues values{{QStringLiteral("DirectPort"), text.left(64)},
                         {QStringLiteral("LastFile0"), QString::fromLatin1(file.left(64))}};
  const QByteArray merged = WithIniSection(file, kSection, values);
  const IniValues after = ReadIniSection(merged, kSection);
  for (auto value = values.cbegin(); value != values.cend(); ++value)
    Hold(after.value(value.key()) == *value, "what was put into a store is read from it");
  Hold(WithIniSection(merged, kSection, values) == merged, "putting it again changes nothing");
  if (merged == WithIniSection({}, kSection, values)) return 0;
  const IniValues before = ReadIniSection(file, kSection);
  for (auto value = before.cbegin(); value != before.cend(); ++value)
    Hold(values.contains(value.key()) || after.value(value.key()) == *value,
         "the section's other values stay");
  Hold(ReadIniSection(merged, kOther) == ReadIniSection(file, kOther), "other sections stay");
  return 0;
}
