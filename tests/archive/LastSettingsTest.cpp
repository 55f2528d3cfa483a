#include <gtest/gtest.h>

#include <QFileInfo>

#include "archive/JournalRig.h"

// How a logger was left, as the journal knows it: from the file, and from what is still on its way
// into the file.

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray Image(char mark) {
  return QByteArray(315, mark);
}

class LastSettings : public JournalRig {
 protected:
  LastSettings() { clock_.Present = QDateTime(QDate(2027, 3, 3), QTime(12, 0), Qt::UTC); }

  void Program(char mark) {
    journal_->Note({.Kind = EventKind::Programmed, .Before = Image('-'), .After = Image(mark)});
  }
  void Find(char mark) {
    journal_->Note(
        {.Kind = EventKind::Connected,
         .After = "{\"records\":5,\"settings\":\"" + Image(mark).toHex().toUpper() + "\"}"});
  }
  /// The first byte of the image, and where it comes from; empty for nothing.
  QString Known() {
    const std::optional<KnownSettings> known = journal_->LastSettings();
    if (!known) return {};
    EXPECT_EQ(known->Image.size(), 315);
    return QChar::fromLatin1(known->Image.at(0)) + u' ' + NameOf(known->From) + u' ' +
           UtcText(known->At);
  }
};

TEST_F(LastSettings, OfALoggerNeverSeenAreUnknownAndNoFileIsMade) {
  EXPECT_EQ(Known(), QString());
  EXPECT_FALSE(QFileInfo::exists(Path()));
  journal_.emplace(QString(), Context());
  EXPECT_EQ(Known(), QString());
}

TEST_F(LastSettings, AreThoseOfTheNewestTelling) {
  Program('a');
  EXPECT_EQ(Known(), u"a programmed 2027-03-03T12:00:00Z"_s) << "not in the file yet";
  Pass(60000);
  EXPECT_EQ(Known(), u"a programmed 2027-03-03T12:00:00Z"_s);
  Find('b');
  EXPECT_EQ(Known(), u"b connected 2027-03-03T12:01:00Z"_s);
  Pass(60000);
  journal_->Note({.Kind = EventKind::Connected, .After = "{\"records\":5}"});
  journal_->Note({.Kind = EventKind::Cleared, .Before = "{\"records\":5}"});
  Pass(60000);
  EXPECT_EQ(Known(), u"b connected 2027-03-03T12:01:00Z"_s);
  Program('c');
  Pass(60000);
  EXPECT_EQ(Known(), u"c programmed 2027-03-03T12:03:00Z"_s);
}

TEST_F(LastSettings, OfTwoTellingsInOneSecondTheSecondCounts) {
  Find('a');
  Program('b');
  EXPECT_EQ(Known(), u"b programmed 2027-03-03T12:00:00Z"_s);
  Pass(300);
  EXPECT_EQ(Known(), u"b programmed 2027-03-03T12:00:00Z"_s);
}

TEST_F(LastSettings, CanBeThoseOfAnUploadButNotOfAnImportedFile) {
  Program('a');
  Pass(60000);
  Upload({24, 1});
  EXPECT_EQ(Known(), u"P uploaded 2027-03-03T12:01:00Z"_s);
  Pass(60000);
  journal_->Begin({.Kind = UploadKind::Image, .Source = u"old.bin"_s});
  Take({24});
  journal_->End(UploadEnd::Complete);
  Pass(60000);
  EXPECT_EQ(Known(), u"P uploaded 2027-03-03T12:01:00Z"_s);
  Find('b');
  EXPECT_EQ(Known().left(1), u"b"_s);
}

TEST_F(LastSettings, AreThoseOfAnUploadThatIsNotInTheFileYet) {
  Program('a');
  Pass(60000);
  journal_->Begin({.Kind = UploadKind::Image, .Source = u"old.bin"_s});
  Take({24});
  journal_->End(UploadEnd::Complete);
  EXPECT_EQ(Known(), u"a programmed 2027-03-03T12:00:00Z"_s) << "an imported file tells nothing";
  journal_->Begin({.Promised = 24});
  Take({24});
  EXPECT_EQ(Known(), u"P uploaded 2027-03-03T12:01:00Z"_s);
  settings_.LoggerName = u"Weir"_s;
  EXPECT_EQ(Known(), QString()) << "another logger's";
}

TEST_F(LastSettings, EndWithAnInitialisation) {
  Program('a');
  Pass(60000);
  journal_->Note({.Kind = EventKind::Initialized});
  EXPECT_EQ(Known(), QString());
  Pass(60000);
  EXPECT_EQ(Known(), QString());
  Find('b');
  EXPECT_EQ(Known().left(1), u"b"_s);
}

TEST_F(LastSettings, AreThoseOfTheConnectedLoggerAlone) {
  Program('a');
  Pass(300);
  settings_.LoggerName = u"Pond 8"_s;
  EXPECT_EQ(Known(), QString());
  Program('b');
  settings_.LoggerName = u"Pond 7"_s;
  EXPECT_EQ(Known().left(1), u"a"_s);
  link_.LoggerModelCode = 221;
  EXPECT_EQ(Known(), QString());
}

TEST_F(LastSettings, OfAnArchiveThatCannotBeReadAreUnknown) {
  Program('a');
  Pass(300);
  journal_.reset();
  Put("this is no archive at all, only words, and more of them than a header has bytes");
  journal_.emplace(Path(), Context());
  EXPECT_EQ(Known(), QString());
}

}  // namespace
}  // namespace tessmar::test
