#include "result_tables/base/Digest.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

TEST(Digest, IsThatOfTheStandard) {
  EXPECT_EQ(toHexadecimal(sha256Of("")), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(toHexadecimal(sha256Of("abc")),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

}  // namespace
}  // namespace Kestrel::ResultTables
