#include "base/NameBeside.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QRandomGenerator>
#include <algorithm>
#include <ctime>
#include <memory>
#include <string_view>

namespace tessmar {
namespace {

constexpr std::string_view kStart = ".tessmar-";
constexpr int kBase = 36;
/// Of the largest number of 64 bits. All names have so many, so that no other file looks like one.
constexpr qsizetype kDigits = 13;

bool IsNameBeside(std::string_view name) {
  if (!name.starts_with(kStart) || name.size() != kStart.size() + kDigits) return false;
  return std::ranges::all_of(name.substr(kStart.size()), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z');
  });
}

// A file that is written to this moment looks the same. No disk's clock is a day wrong.
bool IsLeft(const struct stat& status) {
  constexpr time_t kDay = 86400;
  return S_ISREG(status.st_mode) && status.st_uid == ::geteuid() &&
         status.st_mtime < std::time(nullptr) - kDay;
}

}  // namespace

QByteArray FolderOf(const QByteArray& file) {
  const qsizetype end = file.lastIndexOf('/');
  if (end < 0) return QByteArrayLiteral(".");
  return end == 0 ? QByteArrayLiteral("/") : file.left(end);
}

QByteArray NameBeside(const QByteArray& file) {
  const auto number = QRandomGenerator::system()->generate64();
  return FolderOf(file) + '/' + QByteArray(kStart.data(), kStart.size()) +
         QByteArray::number(number, kBase).rightJustified(kDigits, '0');
}

void RemoveLeftovers(const QByteArray& folder) {
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.constData()), &::closedir);
  if (!entries) return;
  while (const dirent* const entry = ::readdir(entries.get())) {
    if (!IsNameBeside(entry->d_name)) continue;
    struct stat status {};
    const int place = ::dirfd(entries.get());
    if (::fstatat(place, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && IsLeft(status))
      ::unlinkat(place, entry->d_name, 0);
  }
}

}  // namespace tessmar
