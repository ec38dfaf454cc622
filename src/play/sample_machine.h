// Fills a new machine with what a person has on a computer after some years: mail, settings,
// documents. All of it is generated, the same for the same plan.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "play/new_machine.h"

namespace quorvale {

struct SampleOptions {
  std::uint64_t big_file_bytes = 50u << 20;  // of the one large file among the documents
  int messages_per_folder = 40;
};

// What the sample holds beside the things that every backup finds by itself.
struct SampleExtras {
  std::vector<std::string> folders;  // for "Add Other Folders"
  std::vector<std::string> files;    // for "Add More Files"
};
SampleExtras ExtrasOf(const MachinePlan& plan);

// False if something could not be written.
bool FillSample(Platform& platform, const MachinePlan& plan, const SampleOptions& options = {});

}  // namespace quorvale
