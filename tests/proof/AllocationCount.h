#pragma once

#include <cstdint>

namespace tessmar::test {

/// Objects of the C++ heap that live at the moment. AllocationCount.cpp puts the counting in the
/// place of operator new for the whole program.
std::int64_t LiveObjects();

}  // namespace tessmar::test
