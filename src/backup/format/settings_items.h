// What the writer and the reader of settings files both know of an item's line
// "<OE Key='key' >path".
#pragma once

#include <cstddef>

namespace quorvale::settings_items {

// What stands between key and path: the blank belongs to the format.
inline constexpr char kAttributeEnd[] = "' >";

// No element name of an item is longer.
inline constexpr size_t kLongestElement = 16;

}  // namespace quorvale::settings_items
