#include "core/main/page_sets.h"

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmSettings.h"
#include "core/main/frmStartUp.h"
#include "core/main/quick_backup.h"
#include "core/main/try_again.h"
#include "discovery/pages/FrmTwo.h"
#include "restore/pages/frmRFinish.h"
#include "restore/pages/frmROne.h"
#include "restore/pages/frmRTwo.h"
#include "restore/pages/frmRfour.h"
#include "schedule/pages/frmSchedTwo.h"
#include "schedule/pages/frmSchedule.h"

namespace quorvale {
namespace {

// A run that was closed in the middle of its work gets no new main window.
void ShowMainWindow(Application& app) {
  if (!app.Ended()) app.Get<FrmWelcome>().Show();
}

}  // namespace

void ResetBackupPages(Application& app) {
  ShowMainWindow(app);
  for (const char* page : {"frmOne", "FrmTwo", "frmThree", "frmfour", "frmFinish", "FrmProcess",
                           "FrmBackupMedia", "FrmQuickSteps"}) {
    app.Unload(page);
  }
  app.session().unattended = false;
  app.session().gStopRequested = false;
}

void ResetRestorePages(Application& app) {
  ShowMainWindow(app);
  for (const char* page : {"frmROne", "frmRTwo", "frmRfour", "frmRFinish"}) app.Unload(page);
  app.session().gOutlookProfileEdited = false;
  app.session().again_archive.clear();
  app.session().again_items.clear();
  app.session().gStopRequested = false;
}

const PageTable& ProgramPages() {
  static const PageTable pages{
      .host = [](Application& app) -> PageHost& { return app.Get<FrmWelcome>(); },
      .rows = {RowFor<frmOne>(PageRole::kBackupJob, StepSide::kBackup, 0),
               RowFor<FrmTwo>(PageRole::kBackupItems, StepSide::kBackup, 1),
               RowFor<frmThree>(PageRole::kBackupOptions, StepSide::kBackup, 2),
               RowFor<FrmBackupMedia>(PageRole::kBackupMedia, StepSide::kBackup, 3),
               RowFor<frmfour>(PageRole::kBackupReview, StepSide::kBackup, 4),
               RowFor<frmFinish>(PageRole::kBackupRun, StepSide::kBackup, 5),
               RowFor<frmROne>(PageRole::kRestoreJob, StepSide::kRestore, 0),
               RowFor<frmRTwo>(PageRole::kRestoreItems, StepSide::kRestore, 1),
               RowFor<frmRfour>(PageRole::kRestoreReview, StepSide::kRestore, 2),
               RowFor<frmRFinish>(PageRole::kRestoreRun, StepSide::kRestore, 3),
               RowFor<frmSchedule>(PageRole::kSchedule, StepSide::kSchedule, 0),
               RowFor<frmSchedTwo>(PageRole::kScheduleList, StepSide::kSchedule, 1),
               RowFor<frmSettings>(PageRole::kSettings, StepSide::kSettings, 0),
               RowFor<frmStartUp>(PageRole::kStartUp, StepSide::kSettings, 1)},
      .commit_complete_backup = CommitCompleteBackup,
      .try_again = TryAgain};
  return pages;
}

}  // namespace quorvale
