// What a restore tells while it runs, and how it ended.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quorvale {

// In the order of a run.
enum class RestorePhase {
  kPrepare,      // the archive is tested and its directory read
  kWindowsMail,  // on Windows Vista only
  kOutlookExpress,
  kOutlook,
  kInternetExplorer,
  kAddedFiles,
  kAddedFolders,
  kOtherFiles,
};

// Each may be empty. All come on the caller's thread, inside RestoreRun::Run.
struct RestoreEvents {
  std::function<void(RestorePhase)> phase_begins;
  // The phase is over and the run goes on.
  std::function<void(RestorePhase)> phase_ends;
  // What is put back from now on: an item's path, or the name of a place ("Desktop").
  std::function<void(const std::string& item)> item;
  // The member of the archive that is at work.
  std::function<void(const std::string& member)> file;
  // How far the archive operation is.
  std::function<void(int percent)> percent;
  // The place to pump messages. False stops the run at the next item, or inside a file.
  std::function<bool()> keep_going;
};

enum class RestoreOutcome { kDone, kStopped };

struct RestoreResult {
  RestoreOutcome outcome = RestoreOutcome::kStopped;
  // Something could not go home and stands below FolderForLeftItems. Data files that the user
  // wanted there are not meant.
  bool left_in_restore_folder = false;
  // Path and profile of Outlook's personal folder files that came home with the last profile.
  std::vector<std::pair<std::string, std::string>> data_files;
};

}  // namespace quorvale
