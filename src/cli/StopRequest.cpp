#include "cli/StopRequest.h"

namespace tessmar {

void StopRequest::Press() {
  ++presses_;
  if (IsUncut()) {
    if (!heldSince_) heldSince_ = clock_.SteadyMs();
    return;
  }
  if (presses_ > 1) endWaits_();
}

void StopRequest::Tick() {
  if (!heldSince_ || clock_.SteadyMs() - *heldSince_ < kLongestFinishMs) return;
  if (IsUncut()) endWaits_();
  heldSince_.reset();
}

}  // namespace tessmar
