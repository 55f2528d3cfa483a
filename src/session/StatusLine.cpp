#include "session/StatusLine.h"

#include <QLocale>
#include <utility>

#include "base/TextTable.h"
#include "measure/LoggerFacts.h"

namespace tessmar {

using namespace Qt::StringLiterals;

StatusLine::StatusLine(const LinkState& link, const LoggerSettings& settings,
                       const SystemLocale& locale, MainScreen& screen, NotArchived notArchived)
    : link_(link),
      settings_(settings),
      locale_(locale),
      screen_(screen),
      notArchived_(std::move(notArchived)) {}

void StatusLine::Show() {
  const bool connected = link_.Connected;
  if (connected) {
    AskArchive();
  } else {
    askedCount_ = -1;
  }
  ShowText(u"lblArchived"_s, connected ? archivedText_ : QString());
  ShowText(u"lblClockDrift"_s, connected ? ClockDriftText(link_.ClockOffsetS) : QString());
  ShowText(u"lblMemoryFull"_s,
           connected ? MemoryText(ForecastMemory(link_, settings_), locale_.Uses24HourClock())
                     : QString());
}

// The archive is a file: asking it with every tick would cost more than all the rest.
void StatusLine::AskArchive() {
  constexpr int kCallsPerSecond = 10;
  if (--untilAsked_ > 0 && askedCount_ == link_.RecordCount) return;
  untilAsked_ = kCallsPerSecond;
  askedCount_ = link_.RecordCount;
  archivedText_ = ArchivedText();
}

QString StatusLine::ArchivedText() const {
  if (link_.RecordCount == 0) return {};
  const std::optional<std::int32_t> notArchived = notArchived_();
  if (!notArchived) return {};
  const QLocale numbers(TextLanguage() == kLanguageGerman ? QLocale::German : QLocale::English);
  const QString all = numbers.toString(link_.RecordCount);
  if (*notArchived == 0)
    return InLanguage(u"all %1 records are in the archive", u"alle %1 Datensätze sind im Archiv")
        .arg(all);
  return InLanguage(u"%1 of %2 records are not in the archive yet",
                    u"%1 von %2 Datensätzen sind noch nicht im Archiv")
      .arg(numbers.toString(*notArchived), all);
}

void StatusLine::ShowText(const QString& control, const QString& text) {
  if (screen_.Caption(control) != text) screen_.SetCaption(control, text);
}

}  // namespace tessmar
