// One restore, from the committed job to files and settings at home. Knows no form and asks nobody;
// what it has to tell goes to the events.
//
// The room: RestoreRun owns the order of the phases; each product has a file of its own; all take
// their members out of the backup through the Extractor. It may use what stands below rank 7, no
// form, no message box. What a person is told about a run is the page's.
#pragma once

#include <string>

#include "core/program/program.h"
#include "restore/run/extractor.h"
#include "restore/run/outlook_express_restore.h"
#include "restore/run/outlook_restore.h"
#include "restore/run/restore_account.h"
#include "restore/run/restore_events.h"
#include "restore/run/restore_tools.h"
#include "restore/run/run_monitor.h"
#include "restore/run/windows_mail_restore.h"

namespace quorvale {

class RestoreRun {
 public:
  // `job` is read when the run begins and while it lasts.
  RestoreRun(Program& program, const RestoreJob& job, RestoreEvents events);
  RestoreRun(const RestoreRun&) = delete;
  RestoreRun& operator=(const RestoreRun&) = delete;

  // All phases in their order. What a stopped run restored stays, and so does what it staged. The
  // program's account is then this run's, and has ended.
  RestoreResult Run();
  // Removes what the run staged. True when `folder` is gone then.
  bool DeleteRestoreFolder(const std::string& folder);

  // The steps.
  void PrepareArchive();
  void RestoreWindowsMail();
  void RestoreOutlookExpress();
  void RestoreOutlook();
  void RestoreInternetExplorer();
  void RestoreAddedFiles();
  void OFolder();
  void OtherFiles();
  // The history's date of the last restore.
  void SetLastRestore();

  // What the steps stand on.
  const RestoreTools& tools() const { return tools_; }
  OutlookExpressRestore& outlook_express() { return outlook_express_; }
  OutlookRestore& outlook() { return outlook_; }
  WindowsMailRestore& windows_mail() { return windows_mail_; }

 private:
  // False when the run was stopped.
  bool RunPhases();
  // Tells the account of the items that no step had a turn for.
  void TellRest();
  void EndAccount();

  Program& program_;
  const RestoreJob& job_;
  RunMonitor monitor_;
  RestoreAccount account_;
  Extractor extractor_;
  RestoreResult result_;
  AccountReason why_failed_ = AccountReason::kNone;
  RestoreTools tools_;
  OutlookExpressRestore outlook_express_;
  OutlookRestore outlook_;
  WindowsMailRestore windows_mail_;
};

}  // namespace quorvale
