// What a logger answers to each request, good or not: the clock, the status, the version, memory
// blocks and samples. The input is a list of requests, each with its answers.

#include "Fuzz.h"
#include "base/Fault.h"
#include "link/CommandsBench.h"
#include "measure/LiveDisplay.h"
#include "settings/LoggerSettings.h"
#include "settings/config.h"
#include "support/Links.h"

namespace {

using namespace tessmar;
using fuzz::Bytes;
using fuzz::Hold;
using fuzz::Input;

constexpr int kMostRequests = 6;

/// Lets the next things that are written be answered: with bytes as they come, or with an
/// acknowledge and a good frame around them.
void TakeAnswers(Input& input, test::CommandsBench& bench) {
  const int answers = input.Below(4);
  for (int i = 0; i < answers; ++i) {
    const int form = input.Below(4);
    const qint64 delay = input.Byte() * 8;
    Bytes bytes = input.TakeCounted();
    if (form != 0) bytes = test::FrameOf(bytes);
    if (form >= 2) bytes.insert(bytes.begin(), 0xFA);
    if (form == 3) bytes.insert(bytes.begin(), 0xFA);
    bench.Answering(bytes, delay);
  }
}

void CheckClock(test::CommandsBench& bench) {
  const QString text = bench.Commands.GetLoggerTime();
  Hold(text.size() >= 12 && text.contains(u':'), "a clock always has a text");
  bench.Answers.clear();
}

void CheckStatus(test::CommandsBench& bench) {
  const LinkState before = bench.Link;
  if (!bench.Commands.GetLoggerStatus()) {
    Hold(bench.Link.RecordCount == before.RecordCount &&
             bench.Link.LoggerStatusWord == before.LoggerStatusWord,
         "a status that did not come changes nothing");
    return;
  }
  Hold(bench.Link.RecordCount >= 0 && bench.Link.RecordCount <= 0xFFFFFF, "a count of 24 bits");
  Hold(!bench.Link.LoggingStateText.isEmpty(), "each status has its words");
}

void CheckVersion(test::CommandsBench& bench, bool handshake) {
  const LinkState before = bench.Link;
  int passes = 0;
  const bool good = handshake ? bench.Commands.SyncWithLogger([&] { return ++passes > 2; })
                              : bench.Commands.GetLoggerVersion();
  const LinkState& link = bench.Link;
  if (!good) {
    Hold(link.AnalogChannelCount == before.AnalogChannelCount &&
             link.PulseChannelCount == before.PulseChannelCount &&
             link.LoggerModelCode == before.LoggerModelCode,
         "a version that cannot be changes nothing");
    return;
  }
  Hold(link.AnalogChannelCount >= 1 && link.AnalogChannelCount <= 8, "1 to 8 analog channels");
  Hold(link.PulseChannelCount >= 0 && link.PulseChannelCount <= 2, "0 to 2 pulse channels");
}

void CheckMemory(Input& input, test::CommandsBench& bench) {
  Bytes buffer = input.Take(static_cast<std::size_t>(input.Below(8)));
  const Bytes before = buffer;
  const int count = 1 + input.Below(242);
  const auto address = static_cast<std::uint32_t>(input.Number(3));
  bench.Commands.ReadMemoryBlock(buffer, static_cast<int>(before.size()), count, address);
  Hold(buffer.size() == before.size() + static_cast<std::size_t>(count), "the buffer grows");
  Hold(std::equal(before.begin(), before.end(), buffer.begin()), "what was read before stays");
}

/// A sample's way to the screen, for any set-up of the logger.
void CheckSample(Input& input, test::CommandsBench& bench, const LoggerSettings& settings) {
  std::array<std::uint8_t, kSampleReplySize> reply{};
  if (bench.Commands.GetSample(reply) != SampleAnswer::Sample) return;
  const int analog = 1 + input.Below(8);
  LinkState link = test::LinkWith(analog, input.Below(3));
  CompactSampleReply(reply, link.AnalogChannelCount, link.PulseChannelCount);
  LiveSample sample;
  DecodeRecord(link, reply, 0, link.AnalogChannelCount + link.PulseChannelCount, sample);
  LiveRing ring;
  test::FakeMainScreen screen;
  LiveDisplay display(link, settings, ring, screen, bench.Locale);
  display.RefreshMainScreen();
  display.PushLiveSample(sample);
  display.DrawMeters();
  display.DecodeRelayVoltage();
  for (const auto& meter : screen.Meters)
    Hold(meter.Fraction >= 0 && meter.Fraction <= 1, "a meter is drawn within itself");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  LoggerSettings settings;
  LoadDefaultSettings(settings, 8);
  for (int i = 0; i < kMostRequests && !input.AtEnd(); ++i) {
    test::CommandsBench bench;
    const int request = input.Below(8);
    if (request == 7) {
      UnpackConfigImage(test::LinkWith(8, 2), input.Take(kConfigImageSize), settings);
      continue;
    }
    TakeAnswers(input, bench);
    if (request == 0) CheckClock(bench);
    if (request == 1) CheckStatus(bench);
    if (request == 2 || request == 3) CheckVersion(bench, request == 3);
    if (request == 4) CheckMemory(input, bench);
    if (request == 5) CheckSample(input, bench, settings);
    if (request == 6) bench.Commands.ReadClock();
    Hold(bench.Port.Written.size() < 100'000, "a request is not sent without an end");
  }
  return 0;
}
