#include "archive/ArchiveTexts.h"

#include <QDir>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

QString InLanguage(const QString& english, const QString& german) {
  return TextLanguage() == kLanguageGerman ? german : english;
}

}  // namespace

QString TroubleText(ArchiveTrouble trouble) {
  switch (trouble) {
    case ArchiveTrouble::Busy:
      return InLanguage(u"Another program holds it locked."_s,
                        u"Ein anderes Programm hält es gesperrt."_s);
    case ArchiveTrouble::Full:
      return InLanguage(u"The disk is full."_s, u"Der Datenträger ist voll."_s);
    case ArchiveTrouble::Damaged:
      return InLanguage(u"It is damaged and could not be moved aside."_s,
                        u"Es ist beschädigt und ließ sich nicht beiseitelegen."_s);
    case ArchiveTrouble::UnderCheck:
      return InLanguage(u"It is being checked for damage."_s, u"Es wird auf Schäden geprüft."_s);
    case ArchiveTrouble::Foreign:
      return InLanguage(u"The file in its place belongs to another program."_s,
                        u"Die Datei an seiner Stelle gehört einem anderen Programm."_s);
    case ArchiveTrouble::Newer:
      return InLanguage(u"It was written by a later version of this program."_s,
                        u"Es wurde von einer neueren Version dieses Programms geschrieben."_s);
    case ArchiveTrouble::NotAFile:
      return InLanguage(u"There is no regular file in its place."_s,
                        u"An seiner Stelle steht keine gewöhnliche Datei."_s);
    case ArchiveTrouble::NoDriver:
      return InLanguage(u"The package libqt6sql6-sqlite is not installed."_s,
                        u"Das Paket libqt6sql6-sqlite ist nicht installiert."_s);
    case ArchiveTrouble::Unwritable:
      break;
  }
  return InLanguage(u"It cannot be written."_s, u"Es kann nicht geschrieben werden."_s);
}

QString NotKeptText(std::int32_t notKept, std::int32_t records, ArchiveTrouble trouble,
                    const QString& path) {
  const QString head =
      InLanguage(u"%1 of the %2 records of this upload are not in the archive. %3"_s,
                 u"%1 von %2 Datensätzen dieses Abrufs sind nicht im Archiv. %3"_s);
  const QString tail = InLanguage(
      u"They are kept in memory and written as soon as that is possible, while the program runs."
      " Save what matters to a file."_s,
      u"Sie bleiben im Speicher und werden geschrieben, sobald es möglich ist, solange das Programm"
      " läuft. Speichern Sie Wichtiges in eine Datei."_s);
  return head.arg(notKept).arg(records).arg(TroubleText(trouble)) + u"\r\n"_s +
         QDir::toNativeSeparators(path) + u"\r\n\r\n"_s + tail;
}

QString LiveNotKeptText(std::int32_t notKept, std::int32_t samples, ArchiveTrouble trouble,
                        const QString& path, bool lost) {
  const QString head = InLanguage(u"%1 of the %2 live samples are not in the archive. %3"_s,
                                  u"%1 von %2 Live-Messwerten sind nicht im Archiv. %3"_s);
  const QString tail =
      lost ? InLanguage(u"They are lost."_s, u"Sie gehen verloren."_s)
           : InLanguage(
                 u"They are kept in memory and written as soon as that is possible, while the"
                 " program runs."_s,
                 u"Sie bleiben im Speicher und werden geschrieben, sobald es möglich ist,"
                 " solange das Programm läuft."_s);
  return head.arg(notKept).arg(samples).arg(TroubleText(trouble)) + u"\r\n"_s +
         QDir::toNativeSeparators(path) + u"\r\n\r\n"_s + tail;
}

QString MovedAsideText(const QString& aside) {
  return InLanguage(
             u"The archive was damaged. It was moved aside, and a new one was begun:"_s,
             u"Das Archiv war beschädigt. Es wurde beiseitegelegt und ein neues begonnen:"_s) +
         u"\r\n"_s + QDir::toNativeSeparators(aside);
}

}  // namespace tessmar
