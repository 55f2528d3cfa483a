#pragma once

#include <QString>
#include <cstdint>

#include "measure/Series.h"

namespace tessmar {

/// The texts of the plot's window, in the language of the other texts.
enum class PlotTextId : std::int32_t {
  Caption,
  LiveCaption,
  Channels,
  Channel,
  PulseChannel,
  Plot,
  Back,
  BackHint,
  Forward,
  ForwardHint,
  Fit,
  FitHint,
  FixedScale,
  FixedScaleHint,
  CorrectedTime,
  CorrectedTimeHint,
  ByDay,
  ShowRow,
  ShowRowHint,
  SaveCsv,
  Picture,
  Print,
  Copy,
  Close,
  LoggerTimeAxis,
  CorrectedTimeAxis,
  Statistics,
  Day,
  ChannelHead,
  Least,
  Mean,
  Greatest,
  First,
  Last,
  Sum,
  Cursor,
  NoRecords,
  OneMark,
  Marks,
  OneDispute,
  Disputes,
  OneStepBack,
  StepsBack,
  Joined,
  JoinedPoints,
  OneWithoutCorrectedTime,
  WithoutCorrectedTime,
  PictureTitle,
  PngFiles,
  SvgFiles,
  PdfFiles,
  UnknownPicture,
  PictureFailed,
  SaveTitle,
  NothingInView,
  Described,
  DescribedChannel,
  DescribedEmpty,
  Following,
  HoldingStill,
  SamplingOff,
  Disconnected,
  NoSampleSince,
  WaitingForSample,
};

QString PlotText(PlotTextId id);

/// How a channel is called: "Channel 3 (mg/L)", "Pulse channel 1 (mm)".
QString ChannelName(const Series& series);

}  // namespace tessmar
