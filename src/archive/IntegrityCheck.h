#pragma once

#include <QString>
#include <atomic>
#include <thread>

namespace tessmar {

/// SQLite's check of a whole archive, which takes seconds for a large one, in a thread of its own
/// with a connection of its own. Nothing else of the program happens there.
class IntegrityCheck {
 public:
  enum class Result {
    Running,
    Sound,
    Damaged,
    Unknown,  ///< The file could not be looked at: it is locked, or gone.
  };

  /// Begins the check.
  explicit IntegrityCheck(const QString& path);
  /// Waits for its end.
  ~IntegrityCheck();
  IntegrityCheck(const IntegrityCheck&) = delete;
  IntegrityCheck& operator=(const IntegrityCheck&) = delete;

  Result Found() const { return result_.load(); }
  /// The same, once it is over.
  Result Wait();

 private:
  std::atomic<Result> result_ = Result::Running;
  std::thread thread_;
};

}  // namespace tessmar
