#include "setup/RecentFiles.h"

#include <gtest/gtest.h>

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;
using Entries = std::array<QString, 4>;

Entries Promoted(const Entries& before, const QString& path) {
  RecentFiles files{u"/home"_s, before};
  PromoteRecentFile(files, path);
  EXPECT_EQ(files.SetupFolder, u"/home"_s);
  return files.RecentSetupFiles;
}

TEST(PromoteRecentFile, PutsANewPathAtTheHeadAndDropsTheOldest) {
  EXPECT_EQ(Promoted({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, u"x"_s),
            (Entries{u"x"_s, u"a"_s, u"b"_s, u"c"_s}));
  EXPECT_EQ(Promoted({}, u"x"_s), (Entries{u"x"_s, u""_s, u""_s, u""_s}));
}

TEST(PromoteRecentFile, LeavesTheHeadWhereItIs) {
  EXPECT_EQ(Promoted({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, u"a"_s),
            (Entries{u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
}

TEST(PromoteRecentFile, MovesAKnownPathUp) {
  EXPECT_EQ(Promoted({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, u"b"_s),
            (Entries{u"b"_s, u"a"_s, u"c"_s, u"d"_s}));
  EXPECT_EQ(Promoted({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, u"c"_s),
            (Entries{u"c"_s, u"a"_s, u"b"_s, u"d"_s}));
}

TEST(PromoteRecentFile, OverwritesTheLastEntryByTheShift) {
  EXPECT_EQ(Promoted({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, u"d"_s),
            (Entries{u"d"_s, u"a"_s, u"b"_s, u"c"_s}));
}

TEST(PromoteRecentFile, TakesAnEntryOfTheListItself) {
  RecentFiles files{QString(), {u"a"_s, u"b"_s, u"c"_s, u"d"_s}};
  PromoteRecentFile(files, files.RecentSetupFiles[2]);
  EXPECT_EQ(files.RecentSetupFiles, (Entries{u"c"_s, u"a"_s, u"b"_s, u"d"_s}));
}

TEST(FileNameOfPath, GivesTheNameBehindTheLastSeparator) {
  EXPECT_EQ(FileNameOfPath(u"/home/pond.set"_s), u"pond.set"_s);
  EXPECT_EQ(FileNameOfPath(u"/ab/pond.set"_s), u"pond.set"_s);
}

TEST(FileNameOfPath, GivesTheWholePathWhereThereIsNoFolderToLeaveOut) {
  EXPECT_EQ(FileNameOfPath(u"pond.set"_s), u"pond.set"_s);
  EXPECT_EQ(FileNameOfPath(u"/a/pond.set"_s), u"/a/pond.set"_s);
  EXPECT_EQ(FileNameOfPath(u"/pond.set"_s), u"/pond.set"_s);
  EXPECT_EQ(FileNameOfPath(u"/home/ponds/"_s), u"/home/ponds/"_s);
  EXPECT_EQ(FileNameOfPath(u""_s), u""_s);
}

TEST(SplitPath, SplitsAtTheLastSeparator) {
  const std::optional<FolderAndName> parts = SplitPath(u"/home/x/pond.set"_s);
  ASSERT_TRUE(parts);
  EXPECT_EQ(parts->Folder, u"/home/x"_s);
  EXPECT_EQ(parts->Name, u"pond.set"_s);
}

TEST(SplitPath, GivesNothingWithoutFolderOrName) {
  for (const QString& path : {u"pond.set"_s, u"/pond.set"_s, u"/home/"_s, u"/"_s, u""_s}) {
    EXPECT_FALSE(SplitPath(path)) << path.toStdString();
  }
}

}  // namespace
}  // namespace tessmar
