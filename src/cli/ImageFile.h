#pragma once

#include <QFile>
#include <QString>

#include "cli/CommandOptions.h"
#include "history/BlockSink.h"
#include "history/HistoryBuffer.h"
#include "link/LinkState.h"
#include "settings/LoggerSettings.h"

namespace tessmar {

/// An image file of a logger's memory that a command reads, page by page. Everything throws
/// CommandFailure.
class ImageFile {
 public:
  /// Opens it, puts the channel counts of the options into the link, and fills the settings as far
  /// as an image has them: the set-up of the derived channels keeps its defaults.
  ImageFile(const QString& path, const CommandOptions& options, LinkState& link,
            LoggerSettings& settings);

  /// Each page goes to the sink before it is decoded.
  void ReadRecords(HistoryBuffer& buffer, BlockSink& sink);

 private:
  QString path_;
  QFile file_;
  const LinkState& link_;
};

}  // namespace tessmar
