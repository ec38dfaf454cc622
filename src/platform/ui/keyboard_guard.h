// Which keys the guard of the main window keeps from leaving a page.
#pragma once

#include <cstdint>

namespace quorvale {

// True if a low-level keyboard event must go no further: code 0, a key or system key going down or
// up, the key Alt (0x12) or Tab (9), and a window of this process in front.
bool KeyboardGuardSwallows(int code, std::uint32_t message, std::uint32_t virtual_key,
                           bool own_window_in_front);

}  // namespace quorvale
