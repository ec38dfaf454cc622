#include "platform/ui/keyboard_guard.h"

#include <gtest/gtest.h>

namespace quorvale {
namespace {

constexpr std::uint32_t kAlt = 0x12;
constexpr std::uint32_t kTab = 9;

TEST(KeyboardGuard, AltAndTabAreSwallowedWhileAWindowOfThisProcessIsInFront) {
  for (std::uint32_t message : {0x100u, 0x101u, 0x104u, 0x105u}) {
    EXPECT_TRUE(KeyboardGuardSwallows(0, message, kAlt, true)) << message;
    EXPECT_TRUE(KeyboardGuardSwallows(0, message, kTab, true)) << message;
  }
}

TEST(KeyboardGuard, WithAnotherProgramInFrontAltWorks) {
  EXPECT_FALSE(KeyboardGuardSwallows(0, 0x104, kAlt, false));
  EXPECT_FALSE(KeyboardGuardSwallows(0, 0x100, kTab, false));
}

TEST(KeyboardGuard, OtherKeysMessagesAndCodesGoOn) {
  for (std::uint32_t key : {0x0Du, 0x1Bu, 0x41u, 0x70u, 0x11u, 0x10u}) {
    EXPECT_FALSE(KeyboardGuardSwallows(0, 0x100, key, true)) << key;
  }
  for (std::uint32_t message : {0u, 0x102u, 0x103u, 0x106u, 0x200u}) {
    EXPECT_FALSE(KeyboardGuardSwallows(0, message, kAlt, true)) << message;
  }
  EXPECT_FALSE(KeyboardGuardSwallows(-1, 0x100, kAlt, true));
  EXPECT_FALSE(KeyboardGuardSwallows(3, 0x100, kAlt, true));
}

}  // namespace
}  // namespace quorvale
