#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "base/FileDialogs.h"
#include "base/MainScreen.h"
#include "base/MessageLoop.h"
#include "base/Messages.h"
#include "history/BlockSink.h"
#include "history/HistoryBuffer.h"
#include "link/LinkState.h"
#include "measure/LiveDisplay.h"
#include "settings/LoggerSettings.h"
#include "settings/config.h"

class QIODevice;

namespace tessmar {

/// What the operator says ahead of an image import.
struct ImportChoice {
  int AnalogChannels = 0;  ///< 0 to 8.
  int PulseChannels = 0;   ///< 0 to 2.
  bool LaunchSetup = false;
  bool LaunchHistory = false;
};

/// Why records of so many channels cannot be in an image; empty when they can.
QString ImportRefusal(int analogChannels, int pulseChannels);

/// The configuration in the first pages of an image, as far as an image has it: 291 bytes, the last
/// of them 0. Reads 2112 bytes. Throws FileFault when the file does not have them.
///
///     page 0:   8 bytes identifier | 242 bytes, image 0 to 241   | 14 bytes ignored
///     page 1:  48 bytes, image 242 to 289 | 216 bytes ignored
///     pages 2 to 7: ignored
ConfigImage ReadImageConfiguration(QIODevice& file);

/// Reads the data pages behind the configuration into the buffer, which is emptied first, as
/// records of the shape given by the channel counts. The walk ends at erased memory, behind the
/// last page, at the end of the file (a cut record is left out) or when the buffer is full. Throws
/// FileFault when the file cannot be read. Each page with records goes to the sink as a block,
/// before it is decoded; a cut record at the end of the file is no part of it.
void ReadImageRecords(QIODevice& file, const LinkState& link, HistoryBuffer& buffer,
                      BlockSink& sink);

/// What the import asks of the screens around it.
struct ImportScreens {
  /// Shows frmImportSetup. @return nothing when the operator cancels.
  std::function<std::optional<ImportChoice>()> AskChoice;
  std::function<void()> StopTimer1;
  std::function<void()> StartTimer1;
  /// Shows the setup screen; without mayProgram it cannot program a logger.
  std::function<void(bool mayProgram)> ShowSetup;
  std::function<void()> ShowViewer;
  /// Tells what was not kept, once the import has said all it has to say; may be missing.
  std::function<void()> ReportKept = {};
};

/// The Load Logger Image File action: from a raw copy of a logger's flash to settings and history.
/// Needs no connection.
class ImageImport {
 public:
  /// @param sink  takes the pages as they are read.
  /// @param appPath  the folder that the file dialog begins in, without a trailing separator.
  ImageImport(LinkState& link, LoggerSettings& settings, LiveDisplay& display, MainScreen& screen,
              HistoryBuffer& buffer, BlockSink& sink, Messages& messages, FileDialogs& dialogs,
              const MessageLoop& loop, QString appPath, ImportScreens screens);

  void LoadLoggerImageFile();

 private:
  std::optional<QString> AskFile();
  bool Load(const QString& path, const ImportChoice& choice);
  void KeepAndReadRecords(QIODevice& file, const QString& path);
  void ShowSetup();
  void Report(const ImportChoice& choice);

  LinkState& link_;
  LoggerSettings& settings_;
  LiveDisplay& display_;
  MainScreen& screen_;
  HistoryBuffer& buffer_;
  BlockSink& sink_;
  Messages& messages_;
  FileDialogs& dialogs_;
  const MessageLoop& loop_;
  QString appPath_;
  ImportScreens screens_;
};

}  // namespace tessmar
