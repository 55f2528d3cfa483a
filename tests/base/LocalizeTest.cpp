#include "base/Localize.h"

#include <gtest/gtest.h>

namespace tessmar {
namespace {

TEST(DetectUserLocale, GivesLanguageAndClock) {
  const UserLocale german =
      DetectUserLocale(SystemLocale(QLocale(QLocale::German, QLocale::Germany)));
  EXPECT_EQ(german.Language, 7);
  EXPECT_TRUE(german.Use24HourClock);
  const UserLocale american =
      DetectUserLocale(SystemLocale(QLocale(QLocale::English, QLocale::UnitedStates)));
  EXPECT_EQ(american.Language, 9);
  EXPECT_FALSE(american.Use24HourClock);
  const UserLocale spanish =
      DetectUserLocale(SystemLocale(QLocale(QLocale::Spanish, QLocale::Spain)));
  EXPECT_EQ(spanish.Language, 10);
  EXPECT_TRUE(spanish.Use24HourClock);
}

}  // namespace
}  // namespace tessmar
