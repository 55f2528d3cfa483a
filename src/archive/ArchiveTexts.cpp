#include "archive/ArchiveTexts.h"

#include <QDir>

#include "base/TextTable.h"

namespace tessmar {

using namespace Qt::StringLiterals;

QString TroubleText(ArchiveTrouble trouble) {
  switch (trouble) {
    case ArchiveTrouble::Busy:
      return InLanguage(u"Another program holds it locked.",
                        u"Ein anderes Programm hält es gesperrt.");
    case ArchiveTrouble::Full:
      return InLanguage(u"The disk is full.", u"Der Datenträger ist voll.");
    case ArchiveTrouble::Damaged:
      return InLanguage(u"It is damaged and could not be moved aside.",
                        u"Es ist beschädigt und ließ sich nicht beiseitelegen.");
    case ArchiveTrouble::UnderCheck:
      return InLanguage(u"It is being checked for damage.", u"Es wird auf Schäden geprüft.");
    case ArchiveTrouble::Foreign:
      return InLanguage(u"The file in its place belongs to another program.",
                        u"Die Datei an seiner Stelle gehört einem anderen Programm.");
    case ArchiveTrouble::Newer:
      return InLanguage(u"It was written by a later version of this program.",
                        u"Es wurde von einer neueren Version dieses Programms geschrieben.");
    case ArchiveTrouble::NotAFile:
      return InLanguage(u"There is no regular file in its place.",
                        u"An seiner Stelle steht keine gewöhnliche Datei.");
    case ArchiveTrouble::NoDriver:
      return InLanguage(u"The package libqt6sql6-sqlite is not installed.",
                        u"Das Paket libqt6sql6-sqlite ist nicht installiert.");
    case ArchiveTrouble::Unwritable:
      break;
  }
  return InLanguage(u"It cannot be written.", u"Es kann nicht geschrieben werden.");
}

QString NotKeptText(std::int32_t notKept, std::int32_t records, ArchiveTrouble trouble,
                    const QString& path) {
  const QString head = InLanguage(u"%1 of the %2 records of this upload are not in the archive. %3",
                                  u"%1 von %2 Datensätzen dieses Abrufs sind nicht im Archiv. %3");
  const QString tail = InLanguage(
      u"They are kept in memory and written as soon as that is possible, while the program runs."
      " Save what matters to a file.",
      u"Sie bleiben im Speicher und werden geschrieben, sobald es möglich ist, solange das Programm"
      " läuft. Speichern Sie Wichtiges in eine Datei.");
  return head.arg(notKept).arg(records).arg(TroubleText(trouble)) + u"\r\n"_s +
         QDir::toNativeSeparators(path) + u"\r\n\r\n"_s + tail;
}

QString LiveNotKeptText(std::int32_t notKept, std::int32_t samples, ArchiveTrouble trouble,
                        const QString& path, bool lost) {
  const QString head = InLanguage(u"%1 of the %2 live samples are not in the archive. %3",
                                  u"%1 von %2 Live-Messwerten sind nicht im Archiv. %3");
  const QString tail =
      lost ? InLanguage(u"They are lost.", u"Sie gehen verloren.")
           : InLanguage(
                 u"They are kept in memory and written as soon as that is possible, while the"
                 " program runs.",
                 u"Sie bleiben im Speicher und werden geschrieben, sobald es möglich ist,"
                 " solange das Programm läuft.");
  return head.arg(notKept).arg(samples).arg(TroubleText(trouble)) + u"\r\n"_s +
         QDir::toNativeSeparators(path) + u"\r\n\r\n"_s + tail;
}

QString MovedAsideText(const QString& aside) {
  return InLanguage(u"The archive was damaged. It was moved aside, and a new one was begun:",
                    u"Das Archiv war beschädigt. Es wurde beiseitegelegt und ein neues begonnen:") +
         u"\r\n"_s + QDir::toNativeSeparators(aside);
}

}  // namespace tessmar
