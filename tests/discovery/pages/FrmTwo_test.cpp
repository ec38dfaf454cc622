#include "discovery/pages/FrmTwo.h"

#include <gtest/gtest.h>

namespace quorvale {
namespace {

TEST(CLargeInt, HalvesOfALargeNumberAreTakenUnsigned) {
  EXPECT_DOUBLE_EQ(CLargeInt(5, 0), 5);
  EXPECT_DOUBLE_EQ(CLargeInt(-1, 0), 4294967295.0);
  EXPECT_DOUBLE_EQ(CLargeInt(0, 1), 4294967296.0);
  EXPECT_DOUBLE_EQ(CLargeInt(-1, -1), 18446744073709551615.0);
}

}  // namespace
}  // namespace quorvale
