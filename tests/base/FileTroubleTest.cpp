#include "base/FileTrouble.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "base/TextTable.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

class FileTroubleTest : public testing::Test {
 protected:
  ~FileTroubleTest() override { SetTextLanguage(kLanguageEnglish); }
};

TEST_F(FileTroubleTest, SaysReasonAndPathInBothLanguages) {
  const FileTrouble trouble(FileCause::DiskFull, u"/data/pond.csv"_s);
  SetTextLanguage(kLanguageEnglish);
  EXPECT_EQ(trouble.Text(), u"The disk is full:\r\n/data/pond.csv"_s);
  SetTextLanguage(kLanguageGerman);
  EXPECT_EQ(trouble.Text(), u"Der Datenträger ist voll:\r\n/data/pond.csv"_s);
  EXPECT_STREQ(trouble.what(), "The disk is full: /data/pond.csv");
}

TEST_F(FileTroubleTest, TellsTheCauseFromTheSystemsNumber) {
  const std::vector<std::pair<int, FileCause>> rows{{ENOENT, FileCause::NotFound},
                                                    {ENOTDIR, FileCause::NoFolder},
                                                    {EISDIR, FileCause::NotAFile},
                                                    {ENXIO, FileCause::NotAFile},
                                                    {EACCES, FileCause::NoPermission},
                                                    {EPERM, FileCause::NoPermission},
                                                    {EROFS, FileCause::WriteProtected},
                                                    {ENOSPC, FileCause::DiskFull},
                                                    {EDQUOT, FileCause::DiskFull},
                                                    {EFBIG, FileCause::TooLarge},
                                                    {EIO, FileCause::Failed}};
  for (const auto& [error, cause] : rows)
    EXPECT_EQ(FileTrouble::FromError(error, u"x"_s).Cause(), cause) << error;
}

TEST_F(FileTroubleTest, GivesTheSystemsWordsForAnythingElse) {
  EXPECT_EQ(FileTrouble::FromError(EIO, u"/x"_s).Text(),
            u"The file could not be read or written (Input/output error):\r\n/x"_s);
}

}  // namespace
}  // namespace tessmar
