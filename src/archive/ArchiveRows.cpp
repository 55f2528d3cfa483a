#include "archive/ArchiveRows.h"

#include <QTimeZone>
#include <QUuid>
#include <algorithm>
#include <array>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

template <typename Value>
struct Word {
  Value Means;
  const char* Text;
};

constexpr std::array kPlaceNames{"a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8", "p1", "p2"};
static_assert(kPlaceNames.size() == kPlaces);

constexpr std::array kKinds{Word<UploadKind>{UploadKind::History, "history"},
                            Word<UploadKind>{UploadKind::Image, "image"},
                            Word<UploadKind>{UploadKind::Live, "live"}};

constexpr std::array kStates{Word<UploadState>{UploadState::Running, "running"},
                             Word<UploadState>{UploadState::Complete, "complete"},
                             Word<UploadState>{UploadState::Full, "full"},
                             Word<UploadState>{UploadState::Cancelled, "cancelled"},
                             Word<UploadState>{UploadState::Failed, "failed"},
                             Word<UploadState>{UploadState::Interrupted, "interrupted"}};

constexpr std::array kEvents{Word<EventKind>{EventKind::Connected, "connected"},
                             Word<EventKind>{EventKind::Synced, "synced"},
                             Word<EventKind>{EventKind::Cleared, "cleared"},
                             Word<EventKind>{EventKind::Programmed, "programmed"},
                             Word<EventKind>{EventKind::Initialized, "initialized"},
                             Word<EventKind>{EventKind::Calibrated, "calibrated"},
                             Word<EventKind>{EventKind::Reset, "reset"},
                             Word<EventKind>{EventKind::Uploaded, "uploaded"},
                             Word<EventKind>{EventKind::Renamed, "renamed"},
                             Word<EventKind>{EventKind::Merged, "merged"},
                             Word<EventKind>{EventKind::Split, "split"}};

template <typename Words, typename Value>
QString TextOf(const Words& words, Value value) {
  const auto found = std::find_if(words.begin(), words.end(),
                                  [value](const auto& word) { return word.Means == value; });
  return found == words.end() ? QString() : QString::fromLatin1(found->Text);
}

template <typename Value, std::size_t Count>
std::optional<Value> ValueOf(const std::array<Word<Value>, Count>& words, const QString& text) {
  const auto found = std::find_if(words.begin(), words.end(), [&text](const auto& word) {
    return text == QLatin1StringView(word.Text);
  });
  if (found == words.end()) return std::nullopt;
  return found->Means;
}

constexpr QUuid kLoggerSpace(0x6f1d1a52, 0x2a1c, 0x5c0e, 0x9d, 0x43, 0x7d, 0x0c, 0x6b, 0x0e, 0x5a,
                             0x11);

}  // namespace

QString PlaceName(int place) {
  if (place < 0 || place >= kPlaces) throw RangeFault("a record has ten places");
  return QString::fromLatin1(kPlaceNames[static_cast<std::size_t>(place)]);
}

QString NameOf(UploadKind kind) {
  return TextOf(kKinds, kind);
}

QString NameOf(UploadState state) {
  return TextOf(kStates, state);
}

QString NameOf(EventKind kind) {
  return TextOf(kEvents, kind);
}

std::optional<UploadKind> UploadKindOf(const QString& name) {
  return ValueOf(kKinds, name);
}

std::optional<UploadState> UploadStateOf(const QString& name) {
  return ValueOf(kStates, name);
}

std::optional<EventKind> EventKindOf(const QString& name) {
  return ValueOf(kEvents, name);
}

QString UtcText(const QDateTime& time) {
  return time.isValid() ? time.toUTC().toString(u"yyyy-MM-ddTHH:mm:ss'Z'"_s) : QString();
}

QDateTime UtcTime(const QString& text) {
  return QDateTime::fromString(text, Qt::ISODate);
}

QString LoggerUuid(const QString& name, std::optional<int> model) {
  const QString known = model ? QString::number(*model) : QString();
  return QUuid::createUuidV5(kLoggerSpace, known + u'/' + name).toString(QUuid::WithoutBraces);
}

}  // namespace tessmar
