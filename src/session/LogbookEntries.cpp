#include "session/LogbookEntries.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QByteArray Json(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray OffsetJson(std::optional<std::int32_t> seconds) {
  return seconds ? Json({{u"clock_offset_s"_s, *seconds}}) : QByteArray();
}

}  // namespace

LogbookEntry ClearedEntry(std::int32_t records) {
  return {.Kind = EventKind::Cleared,
          .Text = u"history cleared, %1 records"_s.arg(records),
          .Before = Json({{u"records"_s, records}})};
}

LogbookEntry SyncedEntry(std::optional<std::int32_t> before, std::optional<std::int32_t> after) {
  return {.Kind = EventKind::Synced,
          .Text = before ? u"clock set, it was %1 s off"_s.arg(*before) : u"clock set"_s,
          .Before = OffsetJson(before),
          .After = OffsetJson(after)};
}

}  // namespace tessmar
