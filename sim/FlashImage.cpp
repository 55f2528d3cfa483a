#include "FlashImage.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

namespace tessmar::sim {
namespace {

constexpr std::size_t kPageSize = 264;
constexpr std::size_t kPages = 4096;
constexpr std::size_t kConfigurationPages = 8;
constexpr std::size_t kIdentifierSize = 8;

void Put(Bytes& image, std::size_t offset, const Bytes& content) {
  std::ranges::copy(content, image.begin() + static_cast<std::ptrdiff_t>(offset));
}

}  // namespace

Bytes FlashImage(SimulatedLogger& logger) {
  Bytes image(kPages * kPageSize, LoggerMemory::kErased);
  const LoggerMemory& memory = logger.Memory();
  Put(image, 0, memory.Read(LoggerMemory::kIdentifierAddress, kIdentifierSize));
  Put(image, LoggerMemory::kFirstArea,
      memory.Read(LoggerMemory::kFirstArea, LoggerMemory::kFirstAreaSize));
  Put(image, kPageSize, memory.Read(LoggerMemory::kSecondArea, LoggerMemory::kSecondAreaSize));

  const std::int64_t perPage = RecordsPerBlock(logger.Options());
  const std::int64_t room = perPage * static_cast<std::int64_t>(kPages - kConfigurationPages);
  const std::int64_t count = logger.Records().Count();
  std::int64_t record = std::max<std::int64_t>(0, count - room);
  for (std::size_t page = kConfigurationPages; record < count; ++page) {
    Bytes content;
    const std::int64_t end = std::min(count, record + perPage);
    for (; record < end; ++record) logger.Records().AppendRecord(content, record);
    Put(image, page * kPageSize, content);
  }
  return image;
}

std::string WriteFile(const std::string& path, const Bytes& content) {
  errno = 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(content.data()),
             static_cast<std::streamsize>(content.size()));
  file.close();
  if (file) return {};
  return path + ": " + (errno != 0 ? std::strerror(errno) : "cannot be written");
}

}  // namespace tessmar::sim
