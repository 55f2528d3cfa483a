#include "proof/AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
// The archive's checkpoint is a thread of its own.
std::atomic<std::int64_t> liveObjects{0};

void* Allocate(std::size_t size) {
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  ++liveObjects;
  return memory;
}

void Release(void* memory) noexcept {
  if (memory == nullptr) return;
  --liveObjects;
  std::free(memory);
}
}  // namespace

void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  Release(memory);
}
void operator delete[](void* memory) noexcept {
  Release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  Release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  Release(memory);
}

namespace tessmar::test {

std::int64_t LiveObjects() {
  return liveObjects;
}

}  // namespace tessmar::test
