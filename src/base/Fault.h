#pragma once

#include <stdexcept>
#include <type_traits>
#include <utility>

namespace tessmar {

/// A run-time fault inside an operation. what() is for a developer, in English.
class Fault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The serial port is closed, or refused what was asked of it.
class PortFault : public Fault {
 public:
  using Fault::Fault;
};

/// A text is not the number it had to be, or a number does not fit its field.
class ConversionFault : public Fault {
 public:
  using Fault::Fault;
};

/// An index lies outside its array.
class RangeFault : public Fault {
 public:
  using Fault::Fault;
};

/// A file could not be opened, read or written.
class FileFault : public Fault {
 public:
  using Fault::Fault;
};

/// Whether operations trap their faults. There is one in the process, as a part of LinkState.
struct FaultPolicy {
  bool TrapErrors = false;  ///< Faults become an operation's failure value; false with -d.
};

/// Runs an operation; while FaultPolicy::TrapErrors is true a Fault inside it becomes the
/// operation's failure value, otherwise it passes through to the caller.
///
/// @param failure  the value to give for a fault: false, empty or zero unless stated.
template <typename Operation, typename Result = std::invoke_result_t<Operation>>
requires(!std::is_void_v<Result>) Result
    Trapped(const FaultPolicy& policy, Operation&& operation, Result failure = Result{}) {
  if (!policy.TrapErrors) return std::forward<Operation>(operation)();
  try {
    return std::forward<Operation>(operation)();
  } catch (const Fault&) {
    return failure;
  }
}

/// The same for an operation without a result: a trapped fault just ends it.
template <typename Operation>
requires std::is_void_v<std::invoke_result_t<Operation>>
void Trapped(const FaultPolicy& policy, Operation&& operation) {
  if (!policy.TrapErrors) {
    std::forward<Operation>(operation)();
    return;
  }
  try {
    std::forward<Operation>(operation)();
  } catch (const Fault&) {
    // The operation ends here; what it had done so far stands.
    return;
  }
}

}  // namespace tessmar
