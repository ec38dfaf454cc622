#include "platform/ui/keyboard_guard.h"

namespace quorvale {

bool KeyboardGuardSwallows(int code, std::uint32_t message, std::uint32_t virtual_key,
                           bool own_window_in_front) {
  constexpr std::uint32_t kKeyDown = 0x100;
  constexpr std::uint32_t kKeyUp = 0x101;
  constexpr std::uint32_t kSystemKeyDown = 0x104;
  constexpr std::uint32_t kSystemKeyUp = 0x105;
  constexpr std::uint32_t kTab = 9;
  constexpr std::uint32_t kAlt = 0x12;
  const bool is_key_event = message == kKeyDown || message == kKeyUp || message == kSystemKeyDown ||
                            message == kSystemKeyUp;
  if (code != 0 || !is_key_event || !own_window_in_front) return false;
  return virtual_key == kAlt || virtual_key == kTab;
}

}  // namespace quorvale
