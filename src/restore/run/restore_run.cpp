#include "restore/run/restore_run.h"

#include <utility>

#include "base/paths.h"
#include "core/program/ModGlobal.h"
#include "restore/run/internet_explorer_restore.h"
#include "restore/run/user_files_restore.h"

namespace quorvale {
namespace {

struct PhaseStep {
  RestorePhase phase;
  void (RestoreRun::*run)();
};
constexpr PhaseStep kPhases[] = {
    {RestorePhase::kPrepare, &RestoreRun::PrepareArchive},
    {RestorePhase::kWindowsMail, &RestoreRun::RestoreWindowsMail},
    {RestorePhase::kOutlookExpress, &RestoreRun::RestoreOutlookExpress},
    {RestorePhase::kOutlook, &RestoreRun::RestoreOutlook},
    {RestorePhase::kInternetExplorer, &RestoreRun::RestoreInternetExplorer},
    {RestorePhase::kAddedFiles, &RestoreRun::RestoreAddedFiles},
    {RestorePhase::kAddedFolders, &RestoreRun::OFolder},
    {RestorePhase::kOtherFiles, &RestoreRun::OtherFiles},
};

}  // namespace

RestoreRun::RestoreRun(Program& program, const RestoreJob& job, RestoreEvents events)
    : program_(program),
      monitor_(program, std::move(events)),
      extractor_(program, job, monitor_),
      tools_{program, job, monitor_, extractor_, result_},
      outlook_express_(tools_),
      outlook_(tools_),
      windows_mail_(tools_, outlook_) {}

RestoreResult RestoreRun::Run() {
  monitor_.Restart();
  result_ = {};
  const bool finished = RunPhases();
  // The registry editor may still be reading what is staged.
  program_.registry_editor().WaitForRuns();
  outlook_express_.PointIdentityAtStore();
  if (finished && monitor_.KeepGoing()) {
    SetLastRestore();
    result_.outcome = RestoreOutcome::kDone;
  }
  return result_;
}

bool RestoreRun::RunPhases() {
  for (const PhaseStep& step : kPhases) {
    if (step.phase == RestorePhase::kWindowsMail && !IsVista(program_)) continue;
    monitor_.events().phase_begins(step.phase);
    (this->*step.run)();
    if (!monitor_.KeepGoing()) return false;
    monitor_.events().phase_ends(step.phase);
  }
  return true;
}

bool RestoreRun::DeleteRestoreFolder(const std::string& folder) {
  extractor_.RemoveStaged();
  return !program_.files().FolderExists(WithoutBackslash(folder));
}

void RestoreRun::PrepareArchive() { extractor_.Open(); }

void RestoreRun::RestoreWindowsMail() { windows_mail_.RestoreWindowsMail(); }

void RestoreRun::RestoreOutlookExpress() { outlook_express_.RestoreOutlookExpress(); }

void RestoreRun::RestoreOutlook() { outlook_.RestoreOutlook(); }

void RestoreRun::RestoreInternetExplorer() { quorvale::RestoreInternetExplorer(tools_); }

void RestoreRun::RestoreAddedFiles() { quorvale::RestoreAddedFiles(tools_); }

void RestoreRun::OFolder() { quorvale::OFolder(tools_); }

void RestoreRun::OtherFiles() { quorvale::OtherFiles(tools_); }

void RestoreRun::SetLastRestore() {
  program_.registry().SaveRegString(RegistryRoot::kCurrentUser, kHistoryKey, "Last Restore",
                                    HistoryStamp(program_, program_.platform().system.Now()));
}

}  // namespace quorvale
