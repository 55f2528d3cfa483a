#include "archive/IntegrityCheck.h"

#include "archive/Store.h"

namespace tessmar {
namespace {

IntegrityCheck::Result Check(const QString& path) {
  using Result = IntegrityCheck::Result;
  try {
    Store store(path);
    store.Open(Store::Access::Read);
    return store.IntegrityComplaints().isEmpty() ? Result::Sound : Result::Damaged;
  } catch (const ArchiveFault& fault) {
    return fault.Trouble() == ArchiveTrouble::Damaged ? Result::Damaged : Result::Unknown;
  }
}

}  // namespace

IntegrityCheck::IntegrityCheck(const QString& path)
    : thread_([this, path] { result_ = Check(path); }) {}

IntegrityCheck::~IntegrityCheck() {
  Wait();
}

IntegrityCheck::Result IntegrityCheck::Wait() {
  if (thread_.joinable()) thread_.join();
  return Found();
}

}  // namespace tessmar
