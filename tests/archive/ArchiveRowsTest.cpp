#include "archive/ArchiveRows.h"

#include <gtest/gtest.h>

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

TEST(ArchiveRows, PlacesAreNamedAsTheColumnsAre) {
  EXPECT_EQ(PlaceName(0), u"a1"_s);
  EXPECT_EQ(PlaceName(7), u"a8"_s);
  EXPECT_EQ(PlaceName(8), u"p1"_s);
  EXPECT_EQ(PlaceName(9), u"p2"_s);
  EXPECT_THROW(PlaceName(-1), RangeFault);
  EXPECT_THROW(PlaceName(10), RangeFault);
}

TEST(ArchiveRows, KindsAndStatesHaveTheirWords) {
  EXPECT_EQ(NameOf(UploadKind::History), u"history"_s);
  EXPECT_EQ(NameOf(UploadKind::Image), u"image"_s);
  EXPECT_EQ(NameOf(UploadKind::Live), u"live"_s);
  const struct {
    UploadState State;
    const char* Name;
  } states[] = {{UploadState::Running, "running"}, {UploadState::Complete, "complete"},
                {UploadState::Full, "full"},       {UploadState::Cancelled, "cancelled"},
                {UploadState::Failed, "failed"},   {UploadState::Interrupted, "interrupted"}};
  for (const auto& row : states) {
    EXPECT_EQ(NameOf(row.State), QString::fromLatin1(row.Name));
    EXPECT_EQ(UploadStateOf(QString::fromLatin1(row.Name)), row.State);
  }
  EXPECT_EQ(UploadStateOf(u"lost"_s), std::nullopt);
  EXPECT_EQ(UploadKindOf(u"image"_s), UploadKind::Image);
}

TEST(ArchiveRows, EventsHaveTheirWords) {
  const struct {
    EventKind Kind;
    const char* Name;
  } rows[] = {{EventKind::Connected, "connected"},
              {EventKind::Synced, "synced"},
              {EventKind::Cleared, "cleared"},
              {EventKind::Programmed, "programmed"},
              {EventKind::Initialized, "initialized"},
              {EventKind::Calibrated, "calibrated"},
              {EventKind::Reset, "reset"},
              {EventKind::Uploaded, "uploaded"},
              {EventKind::Renamed, "renamed"},
              {EventKind::Merged, "merged"},
              {EventKind::Split, "split"}};
  for (const auto& row : rows) {
    EXPECT_EQ(NameOf(row.Kind), QString::fromLatin1(row.Name));
    EXPECT_EQ(EventKindOf(QString::fromLatin1(row.Name)), row.Kind);
  }
}

TEST(ArchiveRows, TimesAreUtcWithZ) {
  const QDateTime time(QDate(2026, 3, 3), QTime(12, 0, 1), Qt::OffsetFromUTC, 3600);
  EXPECT_EQ(UtcText(time), u"2026-03-03T11:00:01Z"_s);
  EXPECT_EQ(UtcTime(u"2026-03-03T11:00:01Z"_s), time);
  EXPECT_EQ(UtcText(QDateTime()), QString());
  EXPECT_FALSE(UtcTime(QString()).isValid());
}

// The values are those of Python's uuid.uuid5 with the same name space and texts.
TEST(ArchiveRows, ALoggersUuidFollowsFromNameAndModelOnEveryComputer) {
  EXPECT_EQ(LoggerUuid(u"Pond 7"_s, 220), u"5cc62ff0-0033-5a1d-a1fe-0f1b446b03c7"_s);
  EXPECT_EQ(LoggerUuid(u"Pond 7"_s, std::nullopt), u"092b59a7-b411-5533-98e4-8788ef2daca0"_s);
  EXPECT_EQ(LoggerUuid(u"M\u00fchle"_s, 0), u"5e11f4a6-a2ed-52ec-8783-c30f3b777397"_s);
}

}  // namespace
}  // namespace tessmar
