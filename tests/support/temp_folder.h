// A folder of the host for the files of one test, gone afterwards.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "play/scratch_folder.h"

namespace quorvale {

class TempFolder : public ScratchFolder {
 public:
  TempFolder() {
    if (path().empty()) ADD_FAILURE() << "no temporary folder";
  }
  std::string operator/(const std::string& name) const { return path() + "/" + name; }
};

}  // namespace quorvale
