// What the frames cost, apart from the line: check values, a block's reply received, a request
// sent, a record decoded.

#include <benchmark/benchmark.h>

#include <array>

#include "base/Fault.h"
#include "bench/EchoPort.h"
#include "measure/Sample.h"

namespace tessmar::bench {
namespace {

void CheckValueOfABlock(benchmark::State& state) {
  const auto payload = BlockPayload();
  for (auto _ : state) benchmark::DoNotOptimize(Crc16(payload, 0, kHistoryReplySize - 1));
  state.SetBytesProcessed(state.iterations() * kHistoryReplySize);
}
BENCHMARK(CheckValueOfABlock);

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
}  // namespace tessmar::bench

BENCHMARK_MAIN();
