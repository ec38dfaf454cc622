// The order of names in folders and in the registry.
#pragma once

#include <string>

#include "base/text.h"

namespace quorvale::host {

// The form of a name that is compared and sorted by: names that differ only in case have the same
// one, and letters come before "_", as in the systems' own listings, which sort by capitals.
inline std::string SortName(const std::string& name) {
  std::string folded = FoldCase(name);
  for (char& c : folded) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return folded;
}

}  // namespace quorvale::host
