#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <span>
#include <vector>

#include "base/Fault.h"
#include "link/SerialPort.h"

namespace tessmar::test {

using Bytes = std::vector<std::uint8_t>;

/// A port in memory. Tests put bytes into its input queue with Arrive and look at what was written;
/// OnWrite lets a scripted or simulated logger answer.
class FakeSerialPort final : public SerialPort {
 public:
  void Open(std::int16_t number, const QString& settings) override {
    ++Opened;
    if (RefuseToOpen) throw PortFault("refused");
    number_ = number;
    settings_ = settings;
    open_ = true;
    Log.push_back("open");
  }
  void Close() override {
    if (open_) Log.push_back("close");
    open_ = false;
    input_.clear();
  }
  bool IsOpen() const override { return open_; }
  std::int16_t Number() const override { return number_; }
  QString Settings() const override { return settings_; }

  int InputCount() const override { return static_cast<int>(input_.size()); }
  void DiscardInput() override {
    Check();
    input_.clear();
  }
  std::uint8_t ReadByte() override {
    Check();
    if (input_.empty()) throw PortFault("nothing to read");
    const std::uint8_t byte = input_.front();
    input_.pop_front();
    return byte;
  }
  std::size_t Read(std::span<std::uint8_t> room) override {
    Check();
    const std::size_t count = std::min(room.size(), input_.size());
    const auto end = input_.begin() + static_cast<std::ptrdiff_t>(count);
    std::copy(input_.begin(), end, room.begin());
    input_.erase(input_.begin(), end);
    return count;
  }
  std::vector<std::uint8_t> ReadAll() override {
    Check();
    Bytes all(input_.begin(), input_.end());
    input_.clear();
    return all;
  }
  void Write(std::span<const std::uint8_t> bytes) override {
    Check();
    Written.insert(Written.end(), bytes.begin(), bytes.end());
    Writes.emplace_back(bytes.begin(), bytes.end());
    if (OnWrite) OnWrite(Bytes(bytes.begin(), bytes.end()));
  }
  void SetDtr(bool on) override { Log.push_back(on ? "dtr on" : "dtr off"); }
  void SetRts(bool on) override { Log.push_back(on ? "rts on" : "rts off"); }
  void SetHandshaking(Handshaking handshaking) override {
    Log.push_back(handshaking == Handshaking::None ? "no handshaking" : "rts/cts");
  }

  /// Puts bytes into the input queue, if the port is open.
  void Arrive(const Bytes& bytes) {
    if (open_) input_.insert(input_.end(), bytes.begin(), bytes.end());
  }

  /// The adapter is pulled out: the port closes itself.
  void Unplug() { Close(); }

  bool RefuseToOpen = false;
  int Opened = 0;
  Bytes Written;                 ///< Everything that was sent.
  std::vector<Bytes> Writes;     ///< The same, write by write.
  std::vector<std::string> Log;  ///< Opening, closing and line signals, in order.
  std::function<void(const Bytes&)> OnWrite;

 private:
  void Check() const {
    if (!open_) throw PortFault("the port is closed");
  }

  std::deque<std::uint8_t> input_;
  std::int16_t number_ = 0;
  QString settings_;
  bool open_ = false;
};

}  // namespace tessmar::test
