#pragma once

#include <QString>

#include "base/MainScreen.h"
#include "base/MessageLoop.h"
#include "history/BlockSink.h"
#include "measure/Sample.h"
#include "session/ConnectionWords.h"
#include "session/LiveLogger.h"

namespace tessmar {

inline constexpr Rgb kConnectedColour{0, 128, 0};
inline constexpr Rgb kDisconnectedColour{192, 0, 0};

/// The work of the main window's two timers, and the Get Sample action, which waits for it.
///
/// Both timers fire every 100 ms, in the one thread's message loop. A tick that arrives while
/// another of the same timer is in progress is dropped. After the program has begun to end a tick
/// does nothing.
///
/// Faults inside a tick end it; with TrapErrors off they leave it, and Busy is cleared first.
class PollLoop {
 public:
  /// @param words  of the connection; filled before the timers start.
  PollLoop(const LiveLogger& logger, MainScreen& screen, MessageLoop& loop,
           const ConnectionWords& words);

  /// While the meters are under construction, which they are at first, they are not painted.
  void SetUnderConstruction(bool underConstruction) { underConstruction_ = underConstruction; }

  /// While paused, as during an image import, labels, controls and meters stand still and nothing
  /// is sampled. Time is still counted for waits, so that none of them lasts for ever.
  void SetPaused(bool paused) { paused_ = paused; }

  /// While held, as under the setup screen, which frees the link, continuous sampling does not
  /// begin; a ticked box has its effect afterwards.
  void HoldSampling(bool held) { samplingHeld_ = held; }

  /// Every sample of continuous sampling goes to the sink from now on, each run as an upload of its
  /// own that begins with its first sample. The sink outlives this.
  void KeepSamples(BlockSink& sink) { sink_ = &sink; }

  /// Ends the upload of a run that the end of the program has cut off.
  void StopKeeping();

  /// Counts time for all waits, moves the state into labels and controls, paints the meters.
  void Timer1Tick();

  /// Runs one step of the sampling cycle while sampling is wanted.
  void Timer2Tick();

  /// The Get Sample action: reads configuration, status and clock, and waits up to 25 Timer2 ticks
  /// for a fresh sample. Does nothing, silently, unless an operation may start.
  void GetSample();

  /// The second half of it, on a link that the caller holds: waits up to 25 Timer2 ticks for a
  /// fresh sample, which goes to the display. @return true when the logger answered in that time,
  /// be it that it has no sample.
  bool AwaitSample();

 private:
  void ShowState();
  void ShowText(const QString& control, const QString& text);
  void SwitchSampling();
  void SetControls();
  void DisableWhileSampling();
  void RunSamplingStep();
  void RequestSample();
  void TakeSample(std::span<std::uint8_t, kSampleReplySize> reply);
  void Keep(std::span<const std::uint8_t, kSampleReplySize> reply);

  LiveLogger logger_;
  LinkState& link_;
  MainScreen& screen_;
  MessageLoop& loop_;
  const ConnectionWords& words_;
  BlockSink* sink_ = nullptr;
  bool keeping_ = false;  ///< An upload of live samples is open at the sink.
  bool underConstruction_ = true;
  bool paused_ = false;
  bool samplingHeld_ = false;
  bool inTimer1_ = false;
  bool inTimer2_ = false;
};

}  // namespace tessmar
