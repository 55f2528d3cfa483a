#include "archive/ArchiveTexts.h"

#include <gtest/gtest.h>

#include "archive/ExportTexts.h"
#include "archive/WindowTexts.h"
#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class ArchiveTexts : public testing::Test {
 protected:
  ArchiveTexts() { SetTextLanguage(kLanguageEnglish); }
  void TearDown() override { SetTextLanguage(kLanguageEnglish); }
};

TEST_F(ArchiveTexts, EachTroubleHasItsSentenceInBothLanguages) {
  struct Row {
    ArchiveTrouble Trouble;
    const char16_t* English;
    const char16_t* German;
  };
  using T = ArchiveTrouble;
  const Row rows[] = {
      {T::Busy, u"Another program holds it locked.", u"Ein anderes Programm hält es gesperrt."},
      {T::Full, u"The disk is full.", u"Der Datenträger ist voll."},
      {T::Damaged, u"It is damaged and could not be moved aside.",
       u"Es ist beschädigt und ließ sich nicht beiseitelegen."},
      {T::UnderCheck, u"It is being checked for damage.", u"Es wird auf Schäden geprüft."},
      {T::Foreign, u"The file in its place belongs to another program.",
       u"Die Datei an seiner Stelle gehört einem anderen Programm."},
      {T::Newer, u"It was written by a later version of this program.",
       u"Es wurde von einer neueren Version dieses Programms geschrieben."},
      {T::NotAFile, u"There is no regular file in its place.",
       u"An seiner Stelle steht keine gewöhnliche Datei."},
      {T::NoDriver, u"The package libqt6sql6-sqlite is not installed.",
       u"Das Paket libqt6sql6-sqlite ist nicht installiert."},
      {T::Unwritable, u"It cannot be written.", u"Es kann nicht geschrieben werden."}};
  for (const Row& row : rows) {
    SetTextLanguage(kLanguageEnglish);
    EXPECT_EQ(TroubleText(row.Trouble), QString::fromUtf16(row.English));
    SetTextLanguage(kLanguageGerman);
    EXPECT_EQ(TroubleText(row.Trouble), QString::fromUtf16(row.German));
  }
}

TEST_F(ArchiveTexts, WhatWasNotKeptIsToldWithItsCauseAndItsFile) {
  EXPECT_EQ(NotKeptText(3, 40, ArchiveTrouble::Full, u"/a/archive.sqlite"_s),
            u"3 of the 40 records of this upload are not in the archive. The disk is full.\r\n"
            "/a/archive.sqlite\r\n\r\n"
            "They are kept in memory and written as soon as that is possible, while the program "
            "runs. Save what matters to a file."_s);
  EXPECT_EQ(LiveNotKeptText(2, 9, ArchiveTrouble::Busy, u"/a/b"_s, false),
            u"2 of the 9 live samples are not in the archive. Another program holds it locked.\r\n"
            "/a/b\r\n\r\n"
            "They are kept in memory and written as soon as that is possible, while the program "
            "runs."_s);
  EXPECT_EQ(LiveNotKeptText(2, 9, ArchiveTrouble::Busy, u"/a/b"_s, true),
            u"2 of the 9 live samples are not in the archive. Another program holds it locked.\r\n"
            "/a/b\r\n\r\nThey are lost."_s);
  EXPECT_EQ(MovedAsideText(u"/a/b.damaged"_s),
            u"The archive was damaged. It was moved aside, and a new one was begun:\r\n"
            "/a/b.damaged"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(
      NotKeptText(3, 40, ArchiveTrouble::Full, u"/a"_s),
      u"3 von 40 Datensätzen dieses Abrufs sind nicht im Archiv. Der Datenträger ist voll.\r\n"
      "/a\r\n\r\n"
      "Sie bleiben im Speicher und werden geschrieben, sobald es möglich ist, solange das "
      "Programm läuft. Speichern Sie Wichtiges in eine Datei."_s);
  EXPECT_EQ(LiveNotKeptText(2, 9, ArchiveTrouble::NotAFile, u"/a"_s, false),
            u"2 von 9 Live-Messwerten sind nicht im Archiv. An seiner Stelle steht keine "
            "gewöhnliche Datei.\r\n/a\r\n\r\n"
            "Sie bleiben im Speicher und werden geschrieben, sobald es möglich ist, solange das "
            "Programm läuft."_s);
  EXPECT_TRUE(LiveNotKeptText(2, 9, ArchiveTrouble::NotAFile, u"/a"_s, true)
                  .endsWith(u"\r\n\r\nSie gehen verloren."_s));
  EXPECT_EQ(MovedAsideText(u"/a/b.damaged"_s),
            u"Das Archiv war beschädigt. Es wurde beiseitegelegt und ein neues begonnen:\r\n"
            "/a/b.damaged"_s);
}

// A path is put in behind the numbers; one with a placeholder in it stays what it is.
TEST_F(ArchiveTexts, APathWithAPlaceholderStaysWhole) {
  EXPECT_TRUE(
      NotKeptText(1, 2, ArchiveTrouble::Full, u"/a %1 %2/b"_s).contains(u"\r\n/a %1 %2/b\r\n"_s));
}

TEST_F(ArchiveTexts, TheExportsTextsStandInBothLanguages) {
  EXPECT_EQ(GetText(ExportTextId::Title), u"Export"_s);
  EXPECT_EQ(GetText(ExportTextId::NothingHint),
            u"Choose one upload, or a logger for all its uploads"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(GetText(ExportTextId::Writing).arg(5).arg(7), u"Schreiben: 5 von 7 Datensätzen"_s);
}

TEST_F(ArchiveTexts, KindsAndStatesOfUploadsAreNamed) {
  const std::pair<UploadState, QString> states[] = {
      {UploadState::Running, u"running|läuft"_s},
      {UploadState::Complete, u"complete|vollständig"_s},
      {UploadState::Full, u"buffer full|Puffer voll"_s},
      {UploadState::Cancelled, u"stopped|abgebrochen"_s},
      {UploadState::Failed, u"failed|gescheitert"_s},
      {UploadState::Interrupted, u"interrupted|unterbrochen"_s}};
  for (const auto& [state, names] : states) {
    SetTextLanguage(kLanguageEnglish);
    const QString english = ShownName(state);
    SetTextLanguage(kLanguageGerman);
    EXPECT_EQ(english + u'|' + ShownName(state), names);
  }
  EXPECT_EQ(ShownName(UploadKind::History), u"Speicher"_s);
  EXPECT_EQ(ShownName(UploadKind::Image), u"Abbilddatei"_s);
  EXPECT_EQ(ShownName(UploadKind::Live), u"live"_s);
}

TEST_F(ArchiveTexts, AClockIsToldInGermanToo) {
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(ShownClockOffset(0), u"richtig"_s);
  EXPECT_EQ(ShownClockOffset(-1), u"1 s nach"_s);
  EXPECT_EQ(ShownClockOffset(7199), u"119 min vor"_s);
  EXPECT_EQ(ShownClockOffset(-172799), u"47 h nach"_s);
  EXPECT_EQ(ShownClockOffset(259199), u"2 Tage vor"_s);
}

}  // namespace
}  // namespace tessmar
