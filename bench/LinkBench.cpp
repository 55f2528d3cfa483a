// What the frames cost, apart from the line: check values, a block's reply received, a request
// sent, a record decoded.

#include <benchmark/benchmark.h>

#include <array>
#include <numeric>

#include "base/Fault.h"
#include "link/Comm.h"
#include "link/cmd.h"
#include "measure/Sample.h"

namespace tessmar {
namespace {

/// A message loop in which nothing ever happens.
class IdleLoop final : public MessageLoop {
 public:
  void RunOnce() override {}
  void RunPending() override {}
  bool Ending() const override { return false; }
};

/// A port whose input queue is one answer, as often as it is asked for.
class EchoPort final : public SerialPort {
 public:
  explicit EchoPort(std::vector<std::uint8_t> answer) : answer_(std::move(answer)) {}

  void Open(std::int16_t, const QString&) override {}
  void Close() override {}
  bool IsOpen() const override { return true; }
  std::int16_t Number() const override { return 1; }
  QString Settings() const override { return {}; }
  int InputCount() const override { return static_cast<int>(answer_.size() - taken_); }
  void DiscardInput() override { taken_ = answer_.size(); }
  std::uint8_t ReadByte() override { return answer_[taken_++]; }
  std::vector<std::uint8_t> ReadAll() override { return {}; }
  void Write(std::span<const std::uint8_t>) override { taken_ = 0; }
  void SetDtr(bool) override {}
  void SetRts(bool) override {}
  void SetHandshaking(Handshaking) override {}

  void Again() { taken_ = 0; }

 private:
  std::vector<std::uint8_t> answer_;
  std::size_t taken_ = 0;
};

std::array<std::uint8_t, kHistoryReplySize> BlockPayload() {
  std::array<std::uint8_t, kHistoryReplySize> payload{};
  std::iota(payload.begin(), payload.end(), std::uint8_t{10});
  return payload;
}

void CheckValueOfABlock(benchmark::State& state) {
  const auto payload = BlockPayload();
  for (auto _ : state) benchmark::DoNotOptimize(Crc16(payload, 0, kHistoryReplySize - 1));
  state.SetBytesProcessed(state.iterations() * kHistoryReplySize);
}
BENCHMARK(CheckValueOfABlock);

// Every byte value is in it, so that seven of them are escaped.
std::vector<std::uint8_t> BlockFrame() {
  const auto payload = BlockPayload();
  const std::uint16_t check = Crc16(payload, 0, kHistoryReplySize - 1);
  std::vector<std::uint8_t> frame{kStartOfFrame, kHistoryReplySize + 2};
  const auto append = [&frame](std::uint8_t byte) {
    const bool escaped = byte >= kStartOfFrame && byte <= kEscape;
    if (escaped) frame.push_back(kEscape);
    frame.push_back(escaped ? static_cast<std::uint8_t>(byte - kStartOfFrame) : byte);
  };
  for (const std::uint8_t byte : payload) append(byte);
  append(static_cast<std::uint8_t>(check & 0xFF));
  append(static_cast<std::uint8_t>(check >> 8));
  frame.push_back(kEndOfFrame);
  return frame;
}

void ReceiveABlock(benchmark::State& state) {
  LinkState link;
  IdleLoop loop;
  EchoPort port(BlockFrame());
  Comm comm(port, loop, link);
  std::array<std::uint8_t, kHistoryReplySize> reply{};
  for (auto _ : state) {
    port.Again();
    if (!comm.ReceiveFrame(reply)) state.SkipWithError("the block is refused");
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ReceiveABlock);

void SendARequest(benchmark::State& state) {
  LinkState link;
  IdleLoop loop;
  EchoPort port({kAcknowledge});
  port.DiscardInput();
  Comm comm(port, loop, link);
  const std::array<std::uint8_t, 2> request{static_cast<std::uint8_t>(Opcode::GetHistoryBlock), 1};
  for (auto _ : state) {
    int retries = 0;
    if (!comm.SendFrame(request, retries)) state.SkipWithError("the request is not acknowledged");
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SendARequest);

void DecodeARecord(benchmark::State& state) {
  const LinkState link;
  const auto payload = BlockPayload();
  LiveSample record;
  for (auto _ : state) {
    DecodeRecord(link, payload, 1, kSampleValues, record);
    benchmark::DoNotOptimize(record);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(DecodeARecord);

}  // namespace
}  // namespace tessmar

BENCHMARK_MAIN();
