#include "archive/JournalContext.h"

#include <QUuid>
#include <utility>

#include "archive/ProcessOwner.h"
#include "settings/config.h"

namespace tessmar {
namespace {

QByteArray ImageOf(const LinkState& link, const LoggerSettings& settings) {
  ConfigImage image;
  PackConfigImage(link, settings, image);
  image.resize(kConfigImageSize);
  return {reinterpret_cast<const char*>(image.data()), static_cast<qsizetype>(image.size())};
}

}  // namespace

LoggerName ConnectedLogger(const JournalContext& context) {
  return {context.AsRead ? context.AsRead().Name : context.Settings.LoggerName,
          context.Link.LoggerModelCode, context.Link.FirmwareVersion};
}

const LoggerSettings* KnownSettingsOf(const JournalContext& context) {
  if (!context.AsRead) return &context.Settings;
  const LoggerAsRead& read = context.AsRead();
  return read.Settings ? &*read.Settings : nullptr;
}

LinkState OwnShape(const JournalContext& context) {
  return context.AsRead ? WithOwnChannels(context.Link, context.AsRead()) : context.Link;
}

KeptUpload BeginningUpload(const JournalContext& context, const UploadStart& start) {
  const bool image = start.Kind == UploadKind::Image;
  const LinkState link = image ? context.Link : OwnShape(context);
  KeptUpload upload{
      .Row = {.Uuid = QUuid::createUuid().toString(QUuid::WithoutBraces),
              .Kind = start.Kind,
              .Started = context.Time.Now().toUTC(),
              .Owner = OwnOwner(),
              .Promised = start.Promised,
              .Analog = link.AnalogChannelCount,
              .Pulse = link.PulseChannelCount,
              .ClockOffsetS = image ? std::nullopt : link.ClockOffsetS,
              .Source = image ? start.Source : context.Source(),
              .Program = context.Program},
      .Logger = image ? LoggerName{context.Settings.LoggerName, {}, {}} : ConnectedLogger(context)};
  const LoggerSettings* settings = image ? &context.Settings : KnownSettingsOf(context);
  if (settings != nullptr) {
    upload.Settings = *settings;
    upload.Row.Settings = ImageOf(link, *settings);
  }
  return upload;
}

}  // namespace tessmar
