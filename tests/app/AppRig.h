#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "app/ScriptedLogger.h"
#include "settings/config.h"
#include "support/CoreRig.h"
#include "support/FakeLogbook.h"

namespace tessmar::test {

struct AppOutside : CoreOutside {
  FakeClock Clock;
  FakeLogbook Book;
};

/// Everything behind the main window, in virtual time, with a logger called "Pond 7" on the line.
/// The connection dialog connects by itself, directly, to COM1.
struct AppParts : AppOutside, JoinedCore {
  AppParts()
      : JoinedCore(*this, Clock, Book, [this] { Dialog(); },
                   {[this] { ++HistoryShown; },
                    [this] {
                      ++SetupShown;
                      SetupScreen();
                    },
                    [this] { ++ImportShown; }}) {
    Loop.OnTick = [this] {
      Poll.Timer1Tick();
      if (Timer2Runs) Poll.Timer2Tick();
    };
    StoreInLogger("Pond 7");
  }

  void StoreInLogger(const char* name) {
    LoggerSettings stored;
    LoadDefaultSettings(stored, 8);
    stored.LoggerName = QString::fromLatin1(name);
    ConfigImage image;
    ASSERT_TRUE(PackConfigImage(Link, stored, image));
    ASSERT_EQ(image.size(), 315u);
    std::copy_n(image.begin(), 242, Logger.Memory.begin() + 8);
    std::copy_n(image.begin() + 242, 48, Logger.Memory.begin() + 256);
    std::copy_n(image.begin() + 290, 25, Logger.Memory.begin() + 768);
  }

  /// What the dialog does for a direct connection.
  void ConnectDirectly() {
    if (!Line.OpenPort(1, QStringLiteral("38400,N,8,1"))) return;
    Link.LinkTimeoutTicks = 10;
    Line.SetHandshaking(Handshaking::None);
    if (Commands.SyncWithLogger([] { return false; })) {
      Link.Connected = true;
    } else {
      Line.ClosePort();
    }
  }

  /// A session, with the screen showing it and nothing recorded.
  void Connect() {
    TheSession.Connect();
    ASSERT_TRUE(Link.Connected);
    Loop.RunFor(200);
    Forget();
  }

  void Forget() {
    Port.Writes.clear();
    Port.Log.clear();
    Logger.Opcodes.clear();
    Messages.All.clear();
    Screen.Written.clear();
    Screen.Paints = 0;
    Screen.WaitCursorShown = 0;
  }

  /// Ticks the box and lets continuous sampling begin.
  void StartSampling() {
    Screen.Checked[QStringLiteral("chkSampleContinuously")] = true;
    Poll.Timer1Tick();
    ASSERT_TRUE(Link.SampleContinuously);
  }
  void StopSampling() { Screen.Checked[QStringLiteral("chkSampleContinuously")] = false; }

  /// Presses everything that the main window offers but Sync Time, which asks before it looks.
  void PressEverything() {
    Actions.Connect();
    Actions.ConnectEntry();
    Actions.DisconnectEntry();
    Actions.GetSample();
    Actions.GetHistory();
    Actions.ClearHistory();
    Actions.Setup();
    Actions.ResetPulseAccumulators();
  }

  ScriptedLogger Logger{Port};
  bool Timer2Runs = true;
  int HistoryShown = 0;
  int SetupShown = 0;
  int ImportShown = 0;
  std::function<void()> Dialog = [this] { ConnectDirectly(); };
  std::function<void()> SetupScreen = [] {};
};

class AppRig : public testing::Test, protected AppParts {};

/// Frames of the host as they stand on the wire.
namespace wire {
inline const Bytes kVersion{0xF8, 0x03, 0x0F, 0x40, 0x04, 0xF9};
inline const Bytes kReadIdentifier{0xF8, 0x07, 0x08, 0x00, 0x00, 0x00, 0x08, 0xE0, 0x07, 0xF9};
inline const Bytes kReadArea1{0xF8, 0x07, 0x08, 0x08, 0x00, 0x00, 0xF2, 0x62, 0x24, 0xF9};
inline const Bytes kReadArea2{0xF8, 0x07, 0x08, 0x00, 0x01, 0x00, 0x30, 0xB0, 0x15, 0xF9};
inline const Bytes kReadArea3{0xF8, 0x07, 0x08, 0x00, 0x03, 0x00, 0x19, 0xD0, 0x0B, 0xF9};
inline const Bytes kStatus{0xF8, 0x03, 0x0C, 0x00, 0x05, 0xF9};
inline const Bytes kTime{0xF8, 0x03, 0x00, 0x00, 0x00, 0xF9};
inline const Bytes kStart{0xF8, 0x04, 0x09, 0x01, 0xC7, 0x90, 0xF9};
inline const Bytes kGetSample{0xF8, 0x03, 0x0A, 0x80, 0x07, 0xF9};
inline const Bytes kInitializeFlash{0xF8, 0x09, 0x06, 0xA6, 0x6A, 0x00,
                                    0x00, 0x00, 0x02, 0xE7, 0x0E, 0xF9};
inline const Bytes kWriteIdentifier{0xF8, 0x11, 0x07, 0xA7, 0x7A, 0x00, 0x00, 0x07, 0x00, 0x54,
                                    0x4D, 0x32, 0x20, 0x32, 0x31, 0x39, 0x20, 0xA7, 0x64, 0xF9};
inline const Bytes kSetTime{0xF8, 0x0A, 0x01, 0x12, 0x05, 0x15, 0x01,
                            0x27, 0x12, 0x10, 0x42, 0xC0, 0xF9};
inline const Bytes kClearHistory{0xF8, 0x05, 0x04, 0xA4, 0x4A, 0xBA, 0xF6, 0xF9};
inline const Bytes kResetPulses{0xF8, 0x04, 0x0E, 0x03, 0x44, 0x61, 0xF9};

/// What follows the handshake's letters and the version in a normal direct connection.
inline const std::vector<Bytes> kNormalConnection{
    {0x55},     {0x54},  {0x4D}, kVersion, kReadIdentifier, kReadArea1, kReadArea2,
    kReadArea3, kStatus, kTime,  kStart,   kStart,          kGetSample};
}  // namespace wire

}  // namespace tessmar::test
