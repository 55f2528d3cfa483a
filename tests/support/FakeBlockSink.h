#pragma once

#include <functional>
#include <string>
#include <vector>

#include "history/BlockSink.h"

namespace tessmar::test {

/// Keeps what it was told, in order.
class FakeBlockSink final : public BlockSink {
 public:
  using Block = std::vector<std::uint8_t>;

  void Begin(const UploadStart& start) override {
    Starts.push_back(start);
    Log.push_back("begin");
  }
  void TakeBlock(std::span<const std::uint8_t> block) override {
    Blocks.emplace_back(block.begin(), block.end());
    Log.push_back("block");
    if (OnBlock) OnBlock();
  }
  void BeginAnew() override { Log.push_back("anew"); }
  void End(UploadEnd end) override {
    Ends.push_back(end);
    Log.push_back("end");
  }

  std::vector<UploadStart> Starts;
  std::vector<Block> Blocks;
  std::vector<UploadEnd> Ends;
  std::vector<std::string> Log;
  std::function<void()> OnBlock;
};

}  // namespace tessmar::test
