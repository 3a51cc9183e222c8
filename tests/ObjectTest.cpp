#include "VantaService_Parameterization/Object.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

namespace Kestrel {
namespace {

/// Slot of a virtual operation in its class's table, read from a pointer to it (Itanium C++ ABI).
template <typename Pointer>
std::size_t slotOf(Pointer pointer) {
  std::size_t raw = 0;
  std::memcpy(&raw, &pointer, sizeof raw);
  EXPECT_EQ(raw % sizeof(void*), 1U) << "not virtual";
  return raw / sizeof(void*);
}

using Objects = std::vector<std::shared_ptr<Object>>;
using Reason = ObjectTreeChangeReasonEx;

TEST(ObjectVirtualTable, HasItsOperationsInTheFixedOrder) {
  EXPECT_EQ(slotOf(&Object::registerInterfaces), 0U);
  EXPECT_EQ(slotOf(&Object::unregisterInterfaces), 1U);
  // The destructor takes two slots.
  EXPECT_EQ(slotOf(&Object::convertKEDDataToCurrent), 4U);
  EXPECT_EQ(slotOf(&Object::finalizeLoading), 5U);
  EXPECT_EQ(slotOf(&Object::blockFinalizeLoading), 6U);
  EXPECT_EQ(slotOf(&Object::getSigmaVariationParameters), 7U);
  EXPECT_EQ(slotOf(&Object::getRelevantChildren), 8U);
  EXPECT_EQ(slotOf(&Object::getStandardPath), 9U);
  EXPECT_EQ(slotOf(&Object::isDesignRootObject), 10U);
  EXPECT_EQ(slotOf(&Object::isNominalRealization), 11U);
  EXPECT_EQ(slotOf<void (Object::*)(Reason, Objects const&)>(&Object::propagateTreeChanged), 12U);
  EXPECT_EQ(slotOf<void (Object::*)(Reason, std::shared_ptr<Object>)>(&Object::propagateTreeChanged), 13U);
}

}  // namespace
}  // namespace Kestrel
