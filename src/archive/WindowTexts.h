#pragma once

#include <QString>
#include <cstdint>

#include "archive/ArchiveRows.h"

namespace tessmar {

/// The texts of the archive's window, in the language of the other texts.
enum class WindowTextId : std::uint8_t {
  Caption,
  Loggers,
  Uploads,
  Logbook,
  AllLoggers,
  Bin,
  UnnamedLogger,
  Find,
  FindHint,
  Since,
  Until,
  Started,
  Logger,
  Kind,
  State,
  Records,
  ClockOff,
  Source,
  At,
  What,
  Details,
  KindHistory,
  KindImage,
  KindLive,
  StateRunning,
  StateComplete,
  StateFull,
  StateCancelled,
  StateFailed,
  StateInterrupted,
  EventConnected,
  EventSynced,
  EventCleared,
  EventProgrammed,
  EventInitialized,
  EventCalibrated,
  EventReset,
  EventUploaded,
  EventRenamed,
  EventMerged,
  EventSplit,
  Open,
  Plot,
  Export,
  Rename,
  Merge,
  Split,
  Delete,
  Restore,
  EmptyBin,
  Close,
  RenameTitle,
  RenamePrompt,
  MergeTitle,
  MergePrompt,
  SplitTitle,
  SplitPrompt,
  AskEmptyBin,
  OneUpload,
  UploadsShown,
  Chosen,
  SeriesOfLogger,
  UploadOf,
  PlotSeriesHint,
  PlotUploadHint,
  PlotNothingHint,
  OpenUploadHint,
  OpenNothingHint,
  SeriesEmpty,
  MovedToBin,
  MovedBack,
  BinEmptied,
  UploadTooLarge,
  UploadEmpty,
  SettingsUnknown,
  ChangedElsewhere,
  NotRead,
  NotChanged,
  Damaged,
  NoArchiveYet,
  CsvFiles,
};

QString GetText(WindowTextId id);

/// What the window calls these.
QString ShownName(UploadKind kind);
QString ShownName(UploadState state);
QString ShownName(EventKind kind);

/// "12 s fast", "3 min slow", "right", or empty where nobody knows.
QString ShownClockOffset(std::optional<std::int32_t> seconds);

}  // namespace tessmar
