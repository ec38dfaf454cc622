#include "core/main/run_modes.h"

#include <optional>

#include "backup/format/settings_file.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmWelcome.h"
#include "core/program/ModGlobal.h"
#include "core/program/full_text.h"
#include "core/program/raised_request.h"
#include "discovery/pages/FrmTwo.h"
#include "schedule/pages/frmSchedule.h"

namespace quorvale {
namespace {

void ReplayCustom(Application& app) {
  app.Get<FrmWelcome>().cmdWC_TakeBackup.Click();
  frmOne& job = app.Get<frmOne>();
  job.OptCustBackup.value = true;
  job.cmdNext.Click();
  // The job page may have refused the name.
  FrmTwo* items = app.Loaded<FrmTwo>();
  if (items != nullptr && items->Visible()) items->cmdNext.Click();
}

void ReplayQuick(Application& app) {
  app.Get<FrmWelcome>().cmdWC_TakeBackup.Click();
  frmOne& job = app.Get<frmOne>();
  job.OptQuick.value = true;
  job.cmdNext.Click();
}

void Replay(Application& app, const std::string& type) {
  FrmWelcome& welcome = app.Get<FrmWelcome>();
  if (type == "Custom") {
    ReplayCustom(app);
  } else if (type == "Quick") {
    ReplayQuick(app);
  } else if (type == "quickbackup") {
    welcome.QuickLink(0);
  } else if (type == "auto") {
    RunAutoWord(app);
  } else if (type == "Schedule") {
    welcome.QuickLink(2);
    app.Get<frmSchedule>().cmdNext.Click();
    welcome.SetEnabled(true);
  } else if (type == "Restore") {
    welcome.cmdWC_Restore.Click();
    welcome.SetEnabled(true);
  }
}

bool ReviewPageShows(Application& app) {
  const frmfour* review = app.Loaded<frmfour>();
  return review != nullptr && review->Visible();
}

// Takes what the copy before this one asked for. False, after a message, if that was another user's
// copy: this one sees other mail and other files, and must not touch them in his place.
bool TakeRequest(Application& app) {
  const std::optional<RaisedRequest> request = TakeRaisedRequest(app);
  if (!request) return true;
  if (IsOwnRequest(app, *request)) {
    app.session().opened_file = request->opened_file;
    return true;
  }
  app.Inform("The administrator privileges are those of another user (" + GetWinUserName(app) +
             "). Nothing has been done, as it would have been done with that user's data. " +
             request->user + " needs administrator privileges of his or her own for it.");
  return false;
}

}  // namespace

void SubMain(Application& app) {
  // A clash does not end the run: the main window decides about a second copy.
  app.platform().system.HoldInstanceMutex(kInstanceMutex);
  FrmWelcome& welcome = app.Get<FrmWelcome>();
  if (!app.Ended() && !welcome.Visible()) welcome.Show();
}

bool GivesWayToOtherCopy(Application& app) {
  return app.CommandLine().empty() && app.platform().system.PreviousInstanceRuns();
}

void RunCommandLine(Application& app, const std::string& word) {
  if (word == kQuickBackupWord) {
    RunQuickBackupWord(app);
  } else if (word == kCustomWord) {
    RunCustomWord(app);
  } else if (word == kAutoWord) {
    RunAutoWord(app);
  }
}

void RunQuickBackupWord(Application& app) {
  FrmWelcome& welcome = app.Get<FrmWelcome>();
  welcome.mQuickCancelled = false;
  app.session().unattended = true;
  welcome.QuickLink(0);
  if (welcome.mQuickCancelled || app.Ended()) return;
  app.Inform("Ready for Scheduled Quick Backup");
  if (!ReviewPageShows(app)) return;
  welcome.ShowStepPanel();
  welcome.MarkBackupStep(4);
}

void RunCustomWord(Application& app) {
  FrmWelcome& welcome = app.Get<FrmWelcome>();
  welcome.ShowStepPanel();
  welcome.MarkBackupStep(3);
  welcome.ShowSide(StepSide::kBackup);
  welcome.cmdWC_TakeBackup.Click();
  // Forces a repaint.
  welcome.PicMainBackupBase.visible = false;
  welcome.PicMainBackupBase.visible = true;
  app.Inform("Ready for Scheduled Custom Backup");
}

void RunAutoWord(Application& app) {
  FrmWelcome& welcome = app.Get<FrmWelcome>();
  welcome.mQuickCancelled = false;
  app.session().unattended = true;
  welcome.QuickLink(0);
  if (welcome.mQuickCancelled || app.Ended()) return;
  StartPreparedBackup(app);
}

void StartPreparedBackup(Application& app) {
  // Filling the review page may have begun the run already. Then its page is gone from sight, and
  // pressing on once more would begin a second one.
  if (ReviewPageShows(app)) app.Get<frmfour>().Timer2.enabled = true;
}

void ResumeAfterElevation(Application& app, const std::string& path) {
  if (!TakeRequest(app)) return app.End();
  SettingsFile settings;
  if (app.files().FileExists(path) && ReadHandOver(app, path, &settings)) {
    if (settings.backup_name) app.Get<frmOne>().txtBackupname.text = *settings.backup_name;
    if (settings.backup_type) Replay(app, *settings.backup_type);
  }
  RemoveTextFile(app, path, true);
  app.Pump();
}

}  // namespace quorvale
