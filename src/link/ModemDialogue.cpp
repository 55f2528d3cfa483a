#include "link/ModemDialogue.h"

#include "base/Fault.h"

namespace tessmar {
namespace {

using namespace Qt::StringLiterals;

constexpr Rgb kTalking{255, 0, 0};
constexpr Rgb kConnected{0, 140, 0};

constexpr std::int16_t kResetPauseTicks = 10;
constexpr std::int16_t kReplyTicks = 30;
constexpr std::int16_t kCarrierTicks = 20;
constexpr std::int16_t kSettleTicks = 20;

/// The echo of a command may come ahead of its answer.
constexpr int kRepliesPerCommand = 2;

}  // namespace

ModemDialogue::ModemDialogue(Comm& comm, LinkState& link, QStringList commands, QString number,
                             Window window)
    : comm_(comm),
      link_(link),
      commands_(std::move(commands)),
      number_(std::move(number)),
      window_(std::move(window)) {}

void ModemDialogue::Start() {
  comm_.SetHandshaking(Handshaking::RtsCts);
  comm_.SetRts(true);
  window_.SetTextColour(kTalking);
  window_.Append(u"Sending Reset Command to Modem...\r\n"_s);
}

void ModemDialogue::Tick() {
  if (isTicking_) return;
  isTicking_ = true;
  if (Trapped(
          link_, [this] { return Advance(); }, Next::End) == Next::Tick) {
    isTicking_ = false;
    return;
  }
  // The end of the program is nobody's error.
  if (comm_.Loop().Ending()) result_ = ModemResult::Cancel;
  window_.Hide();
}

void ModemDialogue::Cancel() {
  result_ = ModemResult::Cancel;
  isCancelled_ = true;
}

ModemDialogue::Next ModemDialogue::Advance() {
  if (IsStopped()) return Next::End;
  return nextCommand_ < commands_.size() ? SendCommand() : Dial();
}

ModemDialogue::Next ModemDialogue::SendCommand() {
  comm_.DiscardInput();
  if (nextCommand_ == 0) Pause(kResetPauseTicks);
  SendLine(commands_[nextCommand_]);
  if (IsStopped()) return Next::End;
  for (int reply = 0; reply < kRepliesPerCommand; ++reply) {
    const bool isAccepted = ReadReply(kReplyTicks).contains(u"OK");
    if (IsStopped()) return Next::End;
    if (isAccepted) {
      ++nextCommand_;
      return Next::Tick;
    }
  }
  return Next::Tick;
}

ModemDialogue::Next ModemDialogue::Dial() {
  SendLine(u"ATDT"_s + number_);
  bool hasCarrier = false;
  while (!hasCarrier) {
    hasCarrier = ReadReply(kCarrierTicks).contains(u"CONNECT");
    if (IsStopped()) return Next::End;
  }
  result_ = ModemResult::Connect;
  window_.SetTextColour(kConnected);
  Pause(kSettleTicks);
  return Next::End;
}

void ModemDialogue::SendLine(const QString& line) {
  const QByteArray bytes = (line + u'\r').toLatin1();
  comm_.Write({reinterpret_cast<const std::uint8_t*>(bytes.constData()),
               static_cast<std::size_t>(bytes.size())});
}

QString ModemDialogue::ReadReply(std::int16_t ticks) {
  link_.WaitTicks = ticks;
  QString reply;
  do {
    RunLoop();
    const QString arrived = TakeArrived();
    if (arrived.isEmpty()) continue;
    window_.Append(arrived);
    reply += arrived;
    if (reply.endsWith(u'\n')) break;
  } while (link_.WaitTicks != 0 && !IsStopped());
  return reply;
}

void ModemDialogue::Pause(std::int16_t ticks) {
  link_.WaitTicks = ticks;
  do {
    comm_.Loop().RunOnce();
  } while (link_.WaitTicks != 0 && !IsStopped());
}

void ModemDialogue::RunLoop() {
  if (comm_.InputCount() > 0) {
    comm_.Loop().RunPending();
  } else {
    comm_.Loop().RunOnce();
  }
}

QString ModemDialogue::TakeArrived() {
  try {
    if (comm_.InputCount() == 0) return {};
    const std::vector<std::uint8_t> bytes = comm_.ReadAll();
    return QString::fromLatin1(reinterpret_cast<const char*>(bytes.data()),
                               static_cast<qsizetype>(bytes.size()));
  } catch (const Fault&) {
    // Listening goes on until its time is over, whatever the port says.
    return {};
  }
}

bool ModemDialogue::IsStopped() const {
  return isCancelled_ || comm_.Loop().Ending();
}

}  // namespace tessmar
