#include "history/ImageImport.h"

#include <QBuffer>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>

#include "base/Fault.h"
#include "base/ReadFile.h"
#include "measure/Sample.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr int kPageSize = 264;
constexpr int kFirstDataPage = 8;
constexpr int kPageCount = 4096;
constexpr int kConfigurationSize = kFirstDataPage * kPageSize;
/// One byte more than the image file gives, so that the set-up of the derived channels begins with
/// a 0 and ends there.
constexpr int kImportImageSize = 291;
constexpr std::uint8_t kErased = 0xFF;

/// A stretch of the configuration pages and its place in the configuration image.
struct Stretch {
  int FileOffset;
  int Size;
  int ImageOffset;
};
constexpr std::array<Stretch, 2> kStretches{{{8, 242, 0}, {264, 48, 242}}};

// Gives the number of bytes read, less than asked for only at the end of the file.
int ReadUpTo(QIODevice& file, std::span<std::uint8_t> bytes) {
  const qint64 count =
      file.read(reinterpret_cast<char*>(bytes.data()), static_cast<qint64>(bytes.size()));
  if (count < 0) throw FileFault("the image file cannot be read");
  return static_cast<int>(count);
}

bool IsErased(std::span<const std::uint8_t> page, int offset) {
  const auto time = page.subspan(static_cast<std::size_t>(offset), 4);
  return std::all_of(time.begin(), time.end(), [](std::uint8_t b) { return b == kErased; });
}

// The records of a page ahead of erased memory. The bytes given are those of the file, so a page
// that the file cuts has fewer.
int CountRecords(std::span<const std::uint8_t> page, int size) {
  const int most = std::min(RecordsPerArea(size), static_cast<int>(page.size()) / size);
  int count = 0;
  while (count < most && !IsErased(page, count * size)) ++count;
  return count;
}

// A page as a block: the number of its records, and its 240 bytes.
std::array<std::uint8_t, kHistoryReplySize> BlockOf(std::span<const std::uint8_t> page, int count) {
  std::array<std::uint8_t, kHistoryReplySize> block;
  block.fill(kErased);
  block[0] = static_cast<std::uint8_t>(count);
  std::copy_n(page.begin(), std::min<std::size_t>(page.size(), kRecordAreaSize), block.begin() + 1);
  return block;
}

// Gives false at erased memory and when the buffer is full.
bool TakePage(std::span<const std::uint8_t> page, const LinkState& link, HistoryBuffer& buffer,
              BlockSink& sink) {
  const int words = link.AnalogChannelCount + link.PulseChannelCount;
  const int size = RecordSize(link.AnalogChannelCount, link.PulseChannelCount);
  const int count = CountRecords(page, size);
  if (count > 0) sink.TakeBlock(BlockOf(page, count));
  for (int k = 0; k < count; ++k) {
    LiveSample record;
    DecodeRecord(link, page, k * size, words, record);
    buffer.Append(record);
    if (buffer.IsFull()) return false;
  }
  return count == RecordsPerArea(size);
}

/// Timer1 stands still from Stop to the end, and runs afterwards in any case.
class Timer1Pause {
 public:
  explicit Timer1Pause(const ImportScreens& screens) : screens_(screens) {}
  ~Timer1Pause() { screens_.StartTimer1(); }
  Timer1Pause(const Timer1Pause&) = delete;
  Timer1Pause& operator=(const Timer1Pause&) = delete;

 private:
  const ImportScreens& screens_;
};

}  // namespace

QString ImportRefusal(int analogChannels, int pulseChannels) {
  if (analogChannels + pulseChannels == 0)
    return u"Error: you cannot have zero for both analog and digital channels"_s;
  const int size = RecordSize(analogChannels, pulseChannels);
  if (kRecordAreaSize % size == 0) return {};
  return u"Error: the selected values for number of analog channels and number of digital channels"
         u"\r\nrequires "_s +
         QString::number(size) + u" bytes for each record which is not a legal record size"_s;
}

ConfigImage ReadImageConfiguration(QIODevice& file) {
  std::array<std::uint8_t, kConfigurationSize> pages{};
  if (ReadUpTo(file, pages) != kConfigurationSize)
    throw FileFault("the image file is shorter than its configuration");
  ConfigImage image(kImportImageSize);
  for (const Stretch& stretch : kStretches)
    std::copy_n(pages.begin() + stretch.FileOffset, stretch.Size,
                image.begin() + stretch.ImageOffset);
  return image;
}

void ReadImageRecords(QIODevice& file, const LinkState& link, HistoryBuffer& buffer,
                      BlockSink& sink) {
  buffer.Clear();
  std::array<std::uint8_t, kPageSize> page{};
  for (int number = kFirstDataPage; number < kPageCount; ++number) {
    const int count = ReadUpTo(file, page);
    const auto bytes = std::span<const std::uint8_t>(page).first(static_cast<std::size_t>(count));
    if (!TakePage(bytes, link, buffer, sink) || count < kPageSize) return;
  }
}

ImageImport::ImageImport(LinkState& link, LoggerSettings& settings, LiveDisplay& display,
                         MainScreen& screen, HistoryBuffer& buffer, BlockSink& sink,
                         Messages& messages, FileDialogs& dialogs, const MessageLoop& loop,
                         QString appPath, ImportScreens screens)
    : link_(link),
      settings_(settings),
      display_(display),
      screen_(screen),
      buffer_(buffer),
      sink_(sink),
      messages_(messages),
      dialogs_(dialogs),
      loop_(loop),
      appPath_(std::move(appPath)),
      screens_(std::move(screens)) {}

void ImageImport::LoadLoggerImageFile() {
  const std::optional<ImportChoice> choice = screens_.AskChoice();
  if (!choice) return;
  link_.AnalogChannelCount = static_cast<std::int16_t>(choice->AnalogChannels);
  link_.PulseChannelCount = static_cast<std::int16_t>(choice->PulseChannels);

  const Timer1Pause pause(screens_);
  const std::optional<QString> path = AskFile();
  if (!path) return;
  const bool loaded = Trapped(link_, [&] { return Load(*path, *choice); });
  if (!loaded) messages_.MsgBox(u"Error Loading Image File"_s, kExclamation, {});
}

std::optional<QString> ImageImport::AskFile() {
  return dialogs_.AskOpen({.Title = u"Load Logger Image File (.bin)"_s,
                           .InitialName = appPath_ + u"/*.bin"_s,
                           .Filter = u"Binary Files (*.bin)|*.bin"_s,
                           .DefaultExtension = u".bin"_s});
}

bool ImageImport::Load(const QString& path, const ImportChoice& choice) {
  QByteArray bytes = ReadFileStart(path, qint64{kPageCount} * kPageSize);
  QBuffer file(&bytes);
  file.open(QIODevice::ReadOnly);
  const ConfigImage image = ReadImageConfiguration(file);
  screens_.StopTimer1();
  // The image ends within the set-up of the derived channels, so this never succeeds as a whole.
  UnpackConfigImage(link_, image, settings_);
  display_.RefreshMainScreen();
  screen_.SetCaption(u"lblLoggerName"_s, settings_.LoggerName);
  if (choice.LaunchSetup) ShowSetup();
  KeepAndReadRecords(file, path);
  Report(choice);
  return true;
}

void ImageImport::KeepAndReadRecords(QIODevice& file, const QString& path) {
  sink_.Begin({.Kind = UploadKind::Image, .Source = path});
  auto failed = qScopeGuard([this] { sink_.End(UploadEnd::Failed); });
  ReadImageRecords(file, link_, buffer_, sink_);
  failed.dismiss();
  sink_.End(buffer_.IsFull() ? UploadEnd::BufferFull : UploadEnd::Complete);
}

// The setup screen frees the link when it opens and takes it when it closes, for a reading of the
// logger that does not follow here.
void ImageImport::ShowSetup() {
  const QScopedValueRollback<bool> heldAsBefore(link_.Busy);
  screens_.ShowSetup(link_.Connected);
}

void ImageImport::Report(const ImportChoice& choice) {
  if (buffer_.IsFull())
    messages_.MsgBox(u"History buffer full: upload terminated."_s, kInformation, {});
  const bool none = buffer_.Count() == 0;
  messages_.MsgBox(none ? u"No records recovered!"_s
                        : QString::number(buffer_.Count()) + u" records recovered"_s,
                   kInformation, {});
  if (screens_.ReportKept && !loop_.Ending()) screens_.ReportKept();
  if (none) return;
  if (choice.LaunchHistory && !loop_.Ending()) screens_.ShowViewer();
}

}  // namespace tessmar
