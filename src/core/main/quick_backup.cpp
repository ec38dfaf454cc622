#include "core/main/quick_backup.h"

#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmQuickSteps.h"
#include "core/main/FrmWelcome.h"
#include "discovery/pages/FrmTwo.h"

namespace quorvale {
namespace {

constexpr int kReadingPause = 1000;  // milliseconds: lets a user read the rows

}  // namespace

void CommitCompleteBackup(Application& app, const std::string& file_name) {
  FrmTwo& items = app.Get<FrmTwo>();
  items.TickAll();
  items.savedetails();
  frmThree& options = app.Get<frmThree>();
  if (!file_name.empty()) options.txtcurrent.text = file_name;
  options.savedetails();
  // The media page is passed over, so an earlier job's choice must not stand.
  Session& session = app.session();
  session.gMediaFtp = false;
  session.gMediaDisc = false;
  session.gMediaDiscCount = 0;
}

void PrepareQuickBackup(Application& app) {
  FrmQuickSteps& steps = app.Get<FrmQuickSteps>();
  const auto pause = [&app] {
    app.Pump();
    app.platform().system.Sleep(kReadingPause);
  };
  steps.Show();
  steps.BeginRow(1);
  pause();
  steps.EndRow(1);
  if (app.Ended()) return;

  steps.BeginRow(2);
  frmOne& job = app.Get<frmOne>();
  job.savedetails();
  job.OptQuick.value = true;
  pause();
  if (app.Ended()) return;
  CommitCompleteBackup(app, "");
  pause();
  steps.EndRow(2);
  if (app.Ended()) return;

  steps.BeginRow(3);
  app.Pump();
  if (app.Ended()) return;
  // Filling the page presses its Next in an automatic run, which needs an enabled window.
  app.page_host().SetEnabled(true);
  app.Get<frmfour>().FillReview();
  steps.EndRow(3);
}

void ShowPreparedBackup(Application& app) {
  app.Get<FrmQuickSteps>().Hide();
  FrmWelcome& welcome = app.Get<FrmWelcome>();
  welcome.ShowStepPanel();
  welcome.ShowSide(StepSide::kBackup);
  // In an automatic run the review page may have pressed on already: to the run, or, with too
  // little space, back to the items. Then that page is the one to see.
  const frmFinish* run = app.Loaded<frmFinish>();
  const FrmTwo* items = app.Loaded<FrmTwo>();
  if (run != nullptr && run->Visible()) {
    welcome.MarkBackupStep(5);
  } else if (items != nullptr && items->Visible()) {
    welcome.MarkBackupStep(1);
  } else {
    app.Get<frmfour>().Show();
    welcome.MarkBackupStep(4);
  }
}

}  // namespace quorvale
