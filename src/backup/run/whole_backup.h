// What becomes of a backup whose discs were not all written: its parts become one file again, in
// the backup folder.
#pragma once

#include <functional>
#include <string>

#include "archive/archive.h"
#include "core/program/program.h"

namespace quorvale {

struct WholeBackup {
  std::string path;  // "" if it could not be made: the parts are what they were then
  AccountReason why = AccountReason::kNone;
};

// `archive` is the last part, in the folder of the parts; the file gets its name, in the folder
// above. It is tested before it gets it. `progress` is told the percentage and pumps; false ends
// the work.
WholeBackup MakeWholeBackup(Program& program, const std::string& archive,
                            const std::function<bool(int percent)>& progress);

}  // namespace quorvale
