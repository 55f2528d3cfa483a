#include "link/QtSerialPort.h"

#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <cerrno>
#include <cstdarg>
#include <memory>
#include <thread>

#include "base/Fault.h"
#include "base/QtMessageLoop.h"
#include "link/Comm.h"
#include "link/LinkBench.h"
#include "link/Pty.h"

namespace {
/// With what the switching of line signals fails in this process; 0: it is left to the device.
int lineSignalError = 0;
int lineSignalsRefused = 0;
}  // namespace

// Stands before the one of the C library for Qt as well.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  const bool isLineSignal = request == TIOCMBIS || request == TIOCMBIC || request == TIOCMSET;
  if (isLineSignal && lineSignalError != 0) {
    ++lineSignalsRefused;
    errno = lineSignalError;
    return -1;
  }
  return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
}

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

const QString kSettings = u"38400,N,8,1"_s;

/// A port on one end of a pseudo-terminal. Its place is a link, so that another device can be put
/// where the first was.
struct PortBench {
  PortBench() { Plug(); }

  void Plug() {
    Far = std::make_unique<Pty>();
    const QString place = Folder.filePath(u"device"_s);
    QFile::remove(place);
    QFile::link(Far->Device(), place);
  }

  /// Runs the loop until something holds, within a generous time.
  bool Until(const std::function<bool()>& holds) {
    const QDeadlineTimer deadline(10'000);
    while (!holds() && !deadline.hasExpired()) Loop.RunOnce();
    return holds();
  }

  QTemporaryDir Folder;
  std::unique_ptr<Pty> Far;
  QtMessageLoop Loop;
  QtSerialPort Port{PortMap(u"COM9=%1/device,Test"_s.arg(Folder.path()))};
};

TEST(SpeedOf, TakesTheNumberAtTheFront) {
  EXPECT_EQ(SpeedOf(u"38400,N,8,1"_s), 38400);
  EXPECT_EQ(SpeedOf(u"9600"_s), 9600);
}

TEST(SpeedOf, IsAConversionFaultWithoutANumber) {
  for (const QString& text : {u",N,8,1"_s, u"fast,N,8,1"_s, QString(), u"-1,N,8,1"_s, u"0"_s}) {
    EXPECT_THROW(SpeedOf(text), ConversionFault);
  }
}

TEST(QtSerialPort, OpensAtEverySpeedThatIsOffered) {
  PortBench bench;
  for (const int speed : {9600, 19200, 28800, 38400, 57600, 115200}) {
    const QString settings = u"%1,N,8,1"_s.arg(speed);
    bench.Port.Open(9, settings);
    EXPECT_TRUE(bench.Port.IsOpen());
    EXPECT_EQ(bench.Port.Number(), 9);
    EXPECT_EQ(bench.Port.Settings(), settings);
    bench.Port.Close();
    EXPECT_FALSE(bench.Port.IsOpen());
  }
}

TEST(QtSerialPort, FaultsForAPortThatDoesNotExist) {
  PortBench bench;
  EXPECT_THROW(bench.Port.Open(17, kSettings), PortFault);
  QtSerialPort nowhere(PortMap(u"COM9=/nonexistent/device"_s));
  EXPECT_THROW(nowhere.Open(9, kSettings), PortFault);
  EXPECT_FALSE(nowhere.IsOpen());
}

TEST(QtSerialPort, FaultsForASettingsTextWithoutASpeed) {
  PortBench bench;
  EXPECT_THROW(bench.Port.Open(9, u",N,8,1"_s), ConversionFault);
  EXPECT_FALSE(bench.Port.IsOpen());
}

TEST(QtSerialPort, FaultsForOperationsOnAClosedPort) {
  PortBench bench;
  EXPECT_EQ(bench.Port.InputCount(), 0);
  EXPECT_THROW(bench.Port.Write(Bytes{1}), PortFault);
  EXPECT_THROW(bench.Port.ReadByte(), PortFault);
  EXPECT_THROW(bench.Port.ReadAll(), PortFault);
  EXPECT_THROW(bench.Port.DiscardInput(), PortFault);
  bench.Port.Close();
}

TEST(QtSerialPort, WritesAtOnce) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Port.Write(Bytes{0xF8, 0x03, 0x0F, 0x0D, 0x0A, 0x00, 0xF9});
  EXPECT_THAT(bench.Far->Receive(), ElementsAre(0xF8, 0x03, 0x0F, 0x0D, 0x0A, 0x00, 0xF9));
}

TEST(QtSerialPort, ReadsEveryByteValueAsItIs) {
  Bytes all(256);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(i);
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Far->Send(all);
  ASSERT_TRUE(bench.Until([&] { return bench.Port.InputCount() == 256; }));
  EXPECT_EQ(bench.Port.ReadByte(), 0);
  EXPECT_EQ(bench.Port.ReadByte(), 1);
  EXPECT_EQ(bench.Port.InputCount(), 254);
  EXPECT_EQ(bench.Port.ReadAll(), Bytes(all.begin() + 2, all.end()));
  EXPECT_EQ(bench.Port.InputCount(), 0);
  EXPECT_THROW(bench.Port.ReadByte(), PortFault);
}

TEST(QtSerialPort, ReadsAsMuchAsThereIsAndHasRoom) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Far->Send({1, 2, 3, 4, 5});
  ASSERT_TRUE(bench.Until([&] { return bench.Port.InputCount() == 5; }));
  EXPECT_EQ(bench.Port.ReadByte(), 1);
  Bytes room(3);
  EXPECT_EQ(bench.Port.Read(room), 3U);
  EXPECT_THAT(room, ElementsAre(2, 3, 4));
  EXPECT_EQ(bench.Port.InputCount(), 1);
  EXPECT_EQ(bench.Port.Read(room), 1U);
  EXPECT_THAT(room, ElementsAre(5, 3, 4));
  EXPECT_EQ(bench.Port.Read(room), 0U);
  bench.Port.Close();
  EXPECT_THROW(bench.Port.Read(room), PortFault);
}

TEST(QtSerialPort, DiscardsAlsoWhatTheLoopHasNotSeenYet) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Far->Send({1, 2, 3});
  bench.Port.DiscardInput();
  bench.Far->Send({4});
  ASSERT_TRUE(bench.Until([&] { return bench.Port.InputCount() > 0; }));
  EXPECT_THAT(bench.Port.ReadAll(), ElementsAre(4));
}

TEST(QtSerialPort, ForgetsAtOpeningWhatCameEarlier) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Far->Send({1, 2, 3});
  bench.Port.Close();
  bench.Port.Open(9, kSettings);
  bench.Far->Send({4});
  ASSERT_TRUE(bench.Until([&] { return bench.Port.InputCount() > 0; }));
  EXPECT_THAT(bench.Port.ReadAll(), ElementsAre(4));
}

TEST(QtSerialPort, DropsWhatNobodyReads) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  constexpr int kChunk = 2048;
  constexpr int kLimit = 65536;
  for (int sent = 0; sent < kLimit; sent += kChunk) {
    bench.Far->Send(Bytes(kChunk, 0x11));
    ASSERT_TRUE(bench.Until([&] { return bench.Port.InputCount() == sent + kChunk; }));
  }
  for (int i = 0; i < 3; ++i) {
    bench.Far->Send(Bytes(kChunk, 0x22));
    bench.Loop.RunOnce();
  }
  EXPECT_EQ(bench.Port.InputCount(), kLimit);
  EXPECT_EQ(bench.Port.ReadAll(), Bytes(kLimit, 0x11));
}

// Only what the device has in its own hands already may still arrive.
TEST(QtSerialPort, ClosingDropsWhatTheDeviceDoesNotTake) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Port.Write(Bytes(32'768, 0x55));
  bench.Port.Close();
  std::size_t arrived = 0;
  for (Bytes bytes = bench.Far->Receive(); !bytes.empty(); bytes = bench.Far->Receive()) {
    arrived += bytes.size();
  }
  EXPECT_LE(arrived, 4096u);
}

TEST(QtSerialPort, IgnoresLineSignalsThatTheDeviceDoesNotHave) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Port.SetDtr(true);
  bench.Port.SetRts(true);
  bench.Port.SetHandshaking(Handshaking::RtsCts);
  bench.Port.SetRts(true);
  bench.Port.SetHandshaking(Handshaking::None);
  bench.Port.SetDtr(false);
  bench.Loop.RunPending();
  EXPECT_TRUE(bench.Port.IsOpen());
  bench.Port.Write(Bytes{7});
  EXPECT_THAT(bench.Far->Receive(), ElementsAre(7));
}

TEST(QtSerialPort, NoFailureOfALineSignalRefusesOrClosesAPort) {
  for (const int error : {EPIPE, EIO, EPROTO, ENOSYS, ENOTSUP, EINVAL, ENOTTY, ETIMEDOUT, EPERM,
                          EACCES, ENODEV, ENXIO, EBADF}) {
    SCOPED_TRACE(error);
    PortBench bench;
    LinkState link;
    link.TrapErrors = true;
    Comm comm(bench.Port, bench.Loop, link);
    lineSignalsRefused = 0;
    lineSignalError = error;
    EXPECT_TRUE(comm.OpenPort(9, kSettings));
    comm.SetHandshaking(Handshaking::None);
    comm.SetRts(true);
    bench.Port.SetDtr(false);
    lineSignalError = 0;
    EXPECT_EQ(lineSignalsRefused, 4);
    bench.Loop.RunPending();
    ASSERT_TRUE(bench.Port.IsOpen());
    bench.Port.Write(Bytes{7});
    EXPECT_THAT(bench.Far->Receive(), ElementsAre(7));
    bench.Far->Send({8});
    ASSERT_TRUE(bench.Until([&] { return bench.Port.InputCount() > 0; }));
    EXPECT_THAT(bench.Port.ReadAll(), ElementsAre(8));
  }
}

TEST(QtSerialPort, ClosesWhenTheDeviceGoesAwayWithoutSpinning) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Far->HangUp();
  ASSERT_TRUE(bench.Until([&] { return !bench.Port.IsOpen(); }));
  EXPECT_EQ(bench.Port.InputCount(), 0);
  EXPECT_THROW(bench.Port.Write(Bytes{1}), PortFault);
  EXPECT_THROW(bench.Port.ReadByte(), PortFault);

  // Each turn of an idle loop sleeps until its alarm.
  bench.Loop.RunPending();
  int turns = 0;
  QElapsedTimer elapsed;
  elapsed.start();
  while (elapsed.elapsed() < 300) {
    bench.Loop.RunOnce();
    ++turns;
  }
  EXPECT_LE(turns, 10);
}

TEST(QtSerialPort, FaultsWhenTheDeviceIsFoundGoneByAWrite) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Far->HangUp();
  EXPECT_THROW(bench.Port.Write(Bytes{1}), PortFault);
  EXPECT_FALSE(bench.Port.IsOpen());
}

TEST(QtSerialPort, OpensAgainWhenTheDeviceIsBack) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Far->HangUp();
  ASSERT_TRUE(bench.Until([&] { return !bench.Port.IsOpen(); }));
  EXPECT_THROW(bench.Port.Open(9, kSettings), PortFault);
  bench.Plug();
  bench.Port.Open(9, kSettings);
  bench.Port.Write(Bytes{7});
  EXPECT_THAT(bench.Far->Receive(), ElementsAre(7));
}

TEST(QtSerialPort, OpensAgainBeforeTheLoopHasSeenTheLoss) {
  PortBench bench;
  bench.Port.Open(9, kSettings);
  bench.Far->HangUp();
  EXPECT_THROW(bench.Port.Write(Bytes{1}), PortFault);
  bench.Plug();
  bench.Port.Open(9, kSettings);
  bench.Loop.RunPending();
  EXPECT_TRUE(bench.Port.IsOpen());
}

TEST(QtSerialPort, EndsAWaitWhenTheDeviceGoesAway) {
  PortBench bench;
  LinkState link;
  link.TrapErrors = true;
  Comm comm(bench.Port, bench.Loop, link);
  ASSERT_TRUE(comm.OpenPort(9, kSettings));
  QTimer::singleShot(20, &bench.Loop, [&] { bench.Far->HangUp(); });
  // No timer lowers the ticks here, so that only the loss can end the wait.
  comm.WaitForBytes(1, 1);
  EXPECT_FALSE(comm.IsPortOpen());
}

/// Answers every frame of a known length with an acknowledge and a block, until the line goes.
void AnswerBlocks(Pty& far, const Bytes& reply, std::size_t requestSize) {
  std::size_t waiting = 0;
  while (true) {
    const Bytes request = far.Receive(5'000);
    if (request.empty()) return;
    waiting += request.size();
    for (; waiting >= requestSize; waiting -= requestSize) far.Send(reply);
  }
}

TEST(QtSerialPort, CarriesHistoryBlocksThroughTheFrames) {
  PortBench bench;
  LinkState link;
  link.TrapErrors = true;
  link.LinkTimeoutTicks = 1000;
  Comm comm(bench.Port, bench.Loop, link);
  ASSERT_TRUE(comm.OpenPort(9, u"115200,N,8,1"_s));

  Bytes block(241);
  for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<std::uint8_t>(i * 7);
  const Bytes request{0x0D, 0x01};
  std::thread logger(
      [&] { AnswerBlocks(*bench.Far, Bytes{0xFA} + FrameOf(block), FrameOf(request).size()); });
  constexpr int kBlocks = 500;
  int good = 0;
  for (int i = 0; i < kBlocks; ++i) {
    int retries = 0;
    Bytes received(241);
    if (comm.SendFrame(request, retries) && comm.ReceiveFrame(received) && received == block) {
      ++good;
    }
  }
  comm.ClosePort();
  logger.join();
  EXPECT_EQ(good, kBlocks);
}

}  // namespace
}  // namespace tessmar::test
