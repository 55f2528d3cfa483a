#include "app/Application.h"

#include <gtest/gtest.h>

#include <QTimer>
#include <string>
#include <vector>

namespace tessmar {
namespace {

void FaultInTheLoop(const char* what) {
  QTimer::singleShot(0, qApp, [what] { throw Fault(what); });
}

class FaultsInTheLoop : public testing::Test {
 protected:
  ~FaultsInTheLoop() override { application_.OnFault = nullptr; }

  Application& application_ = dynamic_cast<Application&>(*qApp);
  std::vector<std::string> told_;
};

TEST_F(FaultsInTheLoop, AreToldOneAfterTheOther) {
  application_.OnFault = [this](const Fault& fault) { told_.emplace_back(fault.what()); };
  for (const char* what : {"first", "second"}) {
    FaultInTheLoop(what);
    QApplication::processEvents();
  }
  EXPECT_EQ(told_, (std::vector<std::string>{"first", "second"}));
}

// A timer that faults at every tick goes on under the message of its first fault.
TEST_F(FaultsInTheLoop, ArePassedOverWhileOneIsTold) {
  application_.OnFault = [this](const Fault& fault) {
    told_.emplace_back(fault.what());
    if (told_.size() > 1) return;
    FaultInTheLoop("meanwhile");
    QApplication::processEvents();
  };
  FaultInTheLoop("first");
  QApplication::processEvents();
  EXPECT_EQ(told_, std::vector<std::string>{"first"});
}

}  // namespace
}  // namespace tessmar
