#include "link/ConnectChoices.h"

#include "base/Blanks.h"
#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kHighestPort = 16;
constexpr int kHighestPlainPort = 8;
constexpr int kUsualDirectBaud = 3;
constexpr int kUsualModemBaud = 0;

int IndexOr(const QStringList& items, const QString& wanted, int otherwise) {
  const qsizetype index = items.indexOf(wanted);
  return index < 0 ? otherwise : static_cast<int>(index);
}

}  // namespace

QString ExtractPort(const QString& entry) {
  QString name = TrimBlanks(entry);
  const qsizetype blank = name.indexOf(u' ');
  if (blank > 0) name.truncate(blank);
  return name.toUpper();
}

std::int16_t PortNumber(const QString& portName) {
  bool isNumber = false;
  const std::int16_t number = portName.mid(3).toShort(&isNumber);
  if (!isNumber) throw ConversionFault("the port name has no number");
  return number;
}

QStringList PortItems(const QStringList& enumerated) {
  QStringList items;
  for (int number = 1; number <= kHighestPort; ++number) {
    const QString name = u"COM%1"_s.arg(number);
    const QString start = name + u" - "_s;
    const auto found = std::find_if(enumerated.begin(), enumerated.end(),
                                    [&](const QString& entry) { return entry.startsWith(start); });
    if (found != enumerated.end()) {
      items.append(*found);
    } else if (number <= kHighestPlainPort) {
      items.append(name);
    }
  }
  return items;
}

QStringList DirectBaudItems() {
  return {u"9600"_s, u"19200"_s, u"28800"_s, u"38400"_s, u"57600"_s, u"115200"_s};
}

QStringList ModemBaudItems() {
  return {u"9600"_s, u"19200"_s};
}

int InitialPortIndex(const QStringList& items, const QString& lastPort) {
  for (int i = 0; i < items.size(); ++i) {
    if (ExtractPort(items[i]) == lastPort) return i;
  }
  return 0;
}

int InitialDirectBaudIndex(const QString& lastBaud) {
  return IndexOr(DirectBaudItems(), lastBaud, kUsualDirectBaud);
}

int InitialModemBaudIndex(const QString& lastBaud) {
  return IndexOr(ModemBaudItems(), lastBaud, kUsualModemBaud);
}

}  // namespace tessmar
