#include "archive/ExportTable.h"

#include <QDateTime>
#include <QTimeZone>

namespace tessmar {

using namespace Qt::StringLiterals;

QString ExportHeading(const ExportColumn& column) {
  if (!column.Name.isEmpty() && !column.Unit.isEmpty())
    return u"%1 (%2)"_s.arg(column.Name, column.Unit);
  if (!column.Name.isEmpty()) return column.Name;
  return column.Unit.isEmpty() ? column.Place : column.Unit;
}

QString IsoLoggerTime(std::int64_t seconds) {
  return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(u"yyyy-MM-ddTHH:mm:ss"_s);
}

QString IsoUtcTime(std::int64_t milliseconds) {
  const QDateTime time = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
  return time.toString(milliseconds % 1000 == 0 ? u"yyyy-MM-ddTHH:mm:ssZ"_s
                                                : u"yyyy-MM-ddTHH:mm:ss.zzzZ"_s);
}

}  // namespace tessmar
