// History blocks: an upload from a logger that answers each request as the input says.

#include "Fuzz.h"
#include "history/PullHistory.h"
#include "link/CommandsBench.h"
#include "support/FakeBlockSink.h"

namespace {

using namespace tessmar;
using fuzz::Bytes;
using fuzz::Hold;
using fuzz::Input;

constexpr int kRoom = 300;
constexpr int kMostRequests = 60;

/// A logger that answers a request for history as the input says.
class FuzzedLogger {
 public:
  FuzzedLogger(Input& input, test::LinkBench& bench, int recordSize)
      : input_(input), bench_(bench), recordSize_(recordSize) {
    bench.Port.OnWrite = [this](const Bytes& /*frame*/) { Answer(); };
  }

  int Requests() const { return requests_; }

 private:
  void Answer() {
    ++requests_;
    switch (input_.Below(8)) {
      case 0:
        return;
      case 1:
        Send(input_.TakeCounted());
        return;
      case 2:
        Send(Acknowledged(Block(input_.Take(kHistoryReplySize))));
        return;
      case 3:
        Send(Acknowledged(last_));
        return;
      case 4: {
        const Bytes block = Acknowledged(NewBlock());
        Send(block);
        Send(block);
        return;
      }
      default:
        Send(Acknowledged(NewBlock()));
    }
  }

  /// Some records, their bytes the next of the input; none at its end.
  Bytes NewBlock() {
    const int records = input_.AtEnd() ? 0 : input_.Below(RecordsPerArea(recordSize_) + 1);
    Bytes bytes{static_cast<std::uint8_t>(records)};
    const auto stamp = static_cast<std::uint32_t>(input_.Number(4));
    for (int i = 0; i < records; ++i) {
      for (int byte = 0; byte < recordSize_; ++byte)
        bytes.push_back(static_cast<std::uint8_t>(byte < 4 ? (stamp + i) >> 8 * byte : ++word_));
    }
    return Block(bytes);
  }
  const Bytes& Block(const Bytes& bytes) {
    last_ = bytes;
    last_.resize(kHistoryReplySize);
    return last_;
  }
  static Bytes Acknowledged(const Bytes& block) {
    return block.empty() ? Bytes() : test::operator+(Bytes{0xFA}, test::FrameOf(block));
  }
  void Send(const Bytes& bytes) { bench_.Arrive(bytes, 10 + input_.Below(4) * 700); }

  Input& input_;
  test::LinkBench& bench_;
  int recordSize_;
  int requests_ = 0;
  std::uint8_t word_ = 0;
  Bytes last_;
};

/// The records of a block, read without the program. A record that the block cuts off, as the last
/// of eleven of 22 bytes, has no time and the words ahead of the cut.
void AddRecords(const Bytes& block, int words, std::vector<LiveSample>& records) {
  const std::size_t size = 4 + 2 * static_cast<std::size_t>(words);
  for (std::size_t i = 0; i < block[0]; ++i) {
    const std::size_t at = 1 + i * size;
    LiveSample record;
    record.HasTime = at + size <= block.size();
    if (record.HasTime)
      record.PackedTime = block[at] | block[at + 1] << 8 | block[at + 2] << 16 |
                          static_cast<std::uint32_t>(block[at + 3]) << 24;
    for (std::size_t word = at + 4; word + 1 < std::min(at + size, block.size()); word += 2)
      record.Value[(word - at - 4) / 2] = block[word] | block[word + 1] << 8;
    records.push_back(record);
  }
}

/// 240 bytes by a record's, rounded to the nearest number.
int MostRecords(int words) {
  const int size = 4 + 2 * words;
  return size == 22 ? 11 : kRecordAreaSize / size;
}

void CheckKept(const test::FakeBlockSink& sink, const HistoryBuffer& buffer, int words) {
  Hold(sink.Starts.size() == 1 && sink.Ends.size() == 1, "an upload begins and ends once");
  std::vector<LiveSample> records;
  std::size_t block = 0;
  for (const std::string& entry : sink.Log) {
    if (entry == "anew") records.clear();
    if (entry != "block") continue;
    Hold(sink.Blocks[block].size() == kHistoryReplySize, "a block is kept as it came");
    Hold(sink.Blocks[block][0] <= MostRecords(words), "a kept block can be");
    AddRecords(sink.Blocks[block++], words, records);
  }
  Hold(records.size() >= static_cast<std::size_t>(buffer.Count()), "what is shown was kept");
  Hold(sink.Ends[0] == UploadEnd::BufferFull ||
           records.size() == static_cast<std::size_t>(buffer.Count()),
       "what was kept is shown");
  for (std::int32_t i = 0; i < buffer.Count(); ++i)
    Hold(buffer.Record(i) == records[static_cast<std::size_t>(i)], "a record is what it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  test::CommandsBench bench;
  bench.Link.AnalogChannelCount = static_cast<std::int16_t>(1 + input.Below(8));
  bench.Link.PulseChannelCount = static_cast<std::int16_t>(input.Below(3));
  const int words = bench.Link.AnalogChannelCount + bench.Link.PulseChannelCount;
  const int recordSize = RecordSize(bench.Link.AnalogChannelCount, bench.Link.PulseChannelCount);
  Hold(recordSize == 4 + 2 * words, "a record has its stamp and its words");
  const auto promised = static_cast<std::int32_t>(input.Number(2));

  FuzzedLogger logger(input, bench, recordSize);
  HistoryBuffer buffer(kRoom);
  HistoryUpload upload(bench.Link, buffer, promised);
  test::FakeBlockSink sink;
  const UploadWatcher watcher{.Running = [&] { return logger.Requests() < kMostRequests; },
                              .Changed = [] {}};
  const UploadEnd end =
      PullHistory(upload, bench.Commands, bench.Channel, bench.Link, watcher, sink);
  CheckKept(sink, buffer, words);
  Hold(sink.Ends[0] == end, "the end that is told is the end");
  Hold(end != UploadEnd::BufferFull || buffer.IsFull(), "a full buffer is full");
  return 0;
}
