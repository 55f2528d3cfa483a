// Small fixed workloads on the hot paths, for `bench/instructions`: that counts the instructions of
// each function below, which a busy machine does not change. Prints their names and items.

#include <QBuffer>
#include <QCoreApplication>
#include <array>
#include <cstdio>

#include "base/Fault.h"
#include "bench/EchoPort.h"
#include "bench/FullHistory.h"
#include "history/CsvExport.h"
#include "history/HistoryUpload.h"
#include "measure/Sample.h"
#include "settings/config.h"

namespace tessmar::bench {

// Each does so many items and gives how many went well. What they need is made before. They are not
// in a nameless namespace and never become a part of their caller, so that a profile has them.

[[gnu::noinline]] int SendRequests(Comm& comm, int items) {
  const std::array<std::uint8_t, 2> request{static_cast<std::uint8_t>(Opcode::GetHistoryBlock), 1};
  int sent = 0;
  for (int i = 0; i < items; ++i) {
    int retries = 0;
    sent += comm.SendFrame(request, retries) ? 1 : 0;
  }
  return sent;
}

[[gnu::noinline]] int ReceiveBlocks(Comm& comm, EchoPort& port, int items) {
  std::array<std::uint8_t, kHistoryReplySize> reply{};
  int received = 0;
  for (int i = 0; i < items; ++i) {
    port.Again();
    received += comm.ReceiveFrame(reply) ? 1 : 0;
  }
  return received;
}

[[gnu::noinline]] int TakeBlocks(HistoryUpload& upload, int items) {
  HistoryUpload::Reply reply{};
  reply[0] = 10;
  int taken = 0;
  for (int i = 0; i < items; ++i) {
    upload.NextRequest();
    reply[1] = static_cast<std::uint8_t>(reply[1] + 1);
    taken += upload.TakeBlock(reply) == HistoryUpload::Verdict::GoOn ? 1 : 0;
  }
  return taken;
}

[[gnu::noinline]] int DecodeRecords(const LinkState& link, int items) {
  const auto payload = BlockPayload();
  LiveSample record;
  int sum = 0;
  for (int i = 0; i < items; ++i) {
    DecodeRecord(link, payload, 1 + i % 10, kSampleValues, record);
    sum += record.Value[0] > 0 ? 1 : 0;
  }
  return sum;
}

[[gnu::noinline]] int WriteCellsOfNoise(QBuffer& out, const HistoryTable& table) {
  WriteCsvRows(out, table, false);
  return table.RowCount() * (table.ColumnCount() - 1);
}

[[gnu::noinline]] int WriteCellsThatStandStill(QBuffer& out, const HistoryTable& table) {
  WriteCsvRows(out, table, false);
  return table.RowCount() * (table.ColumnCount() - 1);
}

[[gnu::noinline]] int PackNoise(HistoryTable& table) {
  table.Pack([](std::int32_t) {});
  return table.RowCount();
}

[[gnu::noinline]] int PackSettings(const LinkState& link, const LoggerSettings& settings,
                                   int items) {
  ConfigImage image;
  int sum = 0;
  for (int i = 0; i < items; ++i) {
    PackConfigImage(link, settings, image);
    sum += image[0] > 0 ? 1 : 0;
  }
  return sum;
}

namespace {

constexpr int kItems = 1000;

bool Show(const char* name, int items) {
  std::printf("%s\t%d\n", name, items);
  return items == kItems || items == 10 * kItems;
}

bool MeasureLink() {
  LinkState link;
  IdleLoop loop;
  EchoPort acknowledging({kAcknowledge});
  acknowledging.DiscardInput();
  Comm asking(acknowledging, loop, link);
  EchoPort answering(BlockFrame());
  Comm listening(answering, loop, link);
  return Show("SendRequests", SendRequests(asking, kItems)) &&
         Show("ReceiveBlocks", ReceiveBlocks(listening, answering, kItems)) &&
         Show("DecodeRecords", DecodeRecords(link, kItems));
}

bool MeasureHistory() {
  const LinkState link = test::LinkWith(8, 2);
  HistoryBuffer buffer;
  HistoryUpload upload(link, buffer, HistoryBuffer::kCapacity);
  if (!Show("TakeBlocks", TakeBlocks(upload, kItems))) return false;
  const FullHistory noise(true, kItems);
  const FullHistory still(false, kItems);
  QBuffer out;
  out.open(QIODevice::WriteOnly);
  HistoryTable table = noise.Table();
  return Show("WriteCellsOfNoise", WriteCellsOfNoise(out, table)) &&
         Show("WriteCellsThatStandStill", WriteCellsThatStandStill(out, still.Table())) &&
         Show("PackNoise", PackNoise(table)) &&
         Show("PackSettings", PackSettings(link, AllEnabled(), kItems));
}

}  // namespace
}  // namespace tessmar::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const bool whole = tessmar::bench::MeasureLink() && tessmar::bench::MeasureHistory();
  if (!whole) std::fprintf(stderr, "bench_instructions: not every item was done\n");
  return whole ? 0 : 1;
}
