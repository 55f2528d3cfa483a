#include "base/TerminationSignals.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <array>
#include <csignal>

namespace tessmar {
namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

/// Begins with signals that end a program, however the tests were started.
class Signals : public testing::Test {
 protected:
  Signals() {
    for (std::size_t i = 0; i < before_.size(); ++i) {
      sigaction(kSignals[i], nullptr, &before_[i]);
      std::signal(kSignals[i], SIG_DFL);
    }
  }
  ~Signals() override {
    for (std::size_t i = 0; i < before_.size(); ++i) sigaction(kSignals[i], &before_[i], nullptr);
  }
  static auto HandlerOf(int number) {
    struct sigaction present = {};
    sigaction(number, nullptr, &present);
    return present.sa_handler;
  }
  static void Raise(int number) {
    std::raise(number);
    QCoreApplication::processEvents();
  }

 private:
  std::array<struct sigaction, 3> before_ = {};
};

TEST_F(Signals, AreToldInTheMessageLoopEachOnce) {
  int told = 0;
  const TerminationSignals signals([&told] { ++told; });
  for (const int number : kSignals) {
    told = 0;
    std::raise(number);
    EXPECT_EQ(told, 0) << number;
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 1) << number;
  }
}

TEST_F(Signals, ManyBeforeTheLoopLooksAreAllHeardOfAndHoldNothingUp) {
  int told = 0;
  const TerminationSignals signals([&told] { ++told; });
  for (int i = 0; i < 3; ++i) std::raise(SIGTERM);
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  EXPECT_EQ(told, 3);
}

TEST_F(Signals, EndTheProgramAgainWhenNobodyListensAnyMore) {
  {
    const TerminationSignals signals([] {});
  }
  for (const int number : kSignals) EXPECT_EQ(HandlerOf(number), SIG_DFL);
  int told = 0;
  const TerminationSignals again([&told] { ++told; });
  Raise(SIGINT);
  EXPECT_EQ(told, 1);
}

TEST_F(Signals, ThatWereIgnoredBeforeStayIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  int told = 0;
  {
    const TerminationSignals signals([&told] { ++told; });
    Raise(SIGHUP);
    EXPECT_EQ(told, 0);
    Raise(SIGTERM);
    EXPECT_EQ(told, 1);
  }
  EXPECT_EQ(HandlerOf(SIGHUP), SIG_IGN);
}

}  // namespace
}  // namespace tessmar
