#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

namespace Kestrel::TestSupport {

/// Slot of a virtual operation in its class's table, read from a pointer to it (Itanium C++ ABI). A
/// destructor takes two slots.
template <typename Pointer>
std::size_t slotOf(Pointer pointer) {
  std::size_t raw = 0;
  std::memcpy(&raw, &pointer, sizeof raw);
  EXPECT_EQ(raw % sizeof(void*), 1U) << "not virtual";
  return raw / sizeof(void*);
}

}  // namespace Kestrel::TestSupport
