#include "setup/RecentFiles.h"

#include <algorithm>
#include <utility>

namespace tessmar {
namespace {

constexpr QChar kSeparator = u'/';
/// Paths whose last separator stands ahead of this are short enough to be shown whole.
constexpr qsizetype kShortFolder = 3;

}  // namespace

void PromoteRecentFile(RecentFiles& files, QString path) {
  auto& entries = files.RecentSetupFiles;
  const auto last = entries.end() - 1;
  // The last entry is overwritten in any case, so it is not searched.
  const auto place = std::find(entries.begin(), last, path);
  if (place == entries.begin()) return;
  std::move_backward(entries.begin(), place, place + 1);
  entries.front() = std::move(path);
}

QString FileNameOfPath(const QString& path) {
  const qsizetype separator = path.lastIndexOf(kSeparator);
  if (separator < kShortFolder || separator == path.size() - 1) return path;
  return path.mid(separator + 1);
}

std::optional<FolderAndName> SplitPath(const QString& path) {
  const qsizetype separator = path.lastIndexOf(kSeparator);
  if (separator <= 0 || separator == path.size() - 1) return std::nullopt;
  return FolderAndName{path.left(separator), path.mid(separator + 1)};
}

}  // namespace tessmar
