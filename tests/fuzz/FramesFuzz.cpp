// Frames on the line: what is sent, and what is received, split anywhere.

#include "Fuzz.h"
#include "link/LinkBench.h"

namespace {

using namespace tessmar;
using fuzz::Bytes;
using fuzz::Hold;
using fuzz::Input;

/// Below this many milliseconds between two pieces no wait for the next byte ends.
constexpr int kLongestGapMs = 900;

/// A cut through what is on the line, and the time that passes there.
struct Cut {
  std::size_t Place;
  qint64 GapMs;
};

std::vector<Cut> TakeCuts(Input& input) {
  std::vector<Cut> cuts(static_cast<std::size_t>(input.Below(16)));
  for (Cut& cut : cuts) {
    cut.Place = static_cast<std::size_t>(input.Byte());
    cut.GapMs = input.Byte() * kLongestGapMs / 256;
  }
  std::ranges::sort(cuts, {}, &Cut::Place);
  return cuts;
}

/// What ReceiveFrame makes of bytes that come in pieces; empty when it fails.
Bytes Received(const Bytes& line, std::size_t size, const std::vector<Cut>& cuts) {
  test::LinkBench bench;
  std::size_t begin = 0;
  qint64 ms = 10;
  for (const Cut& cut : cuts) {
    const std::size_t end = std::clamp(cut.Place, begin, line.size());
    // Nothing that comes is a wait for the bytes that do.
    if (end == begin) continue;
    bench.Arrive({line.begin() + static_cast<std::ptrdiff_t>(begin),
                  line.begin() + static_cast<std::ptrdiff_t>(end)},
                 ms);
    begin = end;
    ms += cut.GapMs;
  }
  bench.Arrive({line.begin() + static_cast<std::ptrdiff_t>(begin), line.end()}, ms);
  Bytes payload(size);
  return bench.Channel.ReceiveFrame(payload) ? payload : Bytes();
}

void CheckSend(const Bytes& payload, const Bytes& frame) {
  test::LinkBench bench;
  bench.Answering({0xFA});
  int retries = 0;
  Hold(bench.Channel.SendFrame(payload, retries), "an acknowledged frame was sent");
  Hold(bench.Port.Written == frame, "what is sent is the frame of the payload");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const bool raw = input.Flag();
  const std::vector<Cut> cuts = TakeCuts(input);
  if (raw) {
    // The bytes behind a start byte as they come.
    const auto wanted = static_cast<std::size_t>(input.Byte() + 1);
    Bytes line{0xF8};
    const Bytes rest = input.Rest();
    line.insert(line.end(), rest.begin(), rest.end());
    Hold(Received(line, wanted, {}) == Received(line, wanted, cuts),
         "bytes that come in pieces give what they give as a whole");
    return 0;
  }
  const Bytes payload = input.Take(253);
  if (payload.empty()) return 0;
  const Bytes frame = test::FrameOf(payload);
  CheckSend(payload, frame);
  Hold(Received(frame, payload.size(), {}) == payload, "what was packed unpacks to the same");
  Hold(Received(frame, payload.size(), cuts) == payload, "and so it does in pieces");
  return 0;
}
