#include "core/main/page_sets.h"

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmWelcome.h"
#include "core/main/quick_backup.h"
#include "discovery/pages/FrmTwo.h"
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

template <class T>
WizardPage& PageOf(Application& app) {
  return app.Get<T>();
}

}  // namespace

void ResetBackupPages(Application& app) {
  ShowMainWindow(app);
  for (const char* page : {"frmOne", "FrmTwo", "frmThree", "frmfour", "frmFinish", "FrmProcess",
                           "FrmBackupMedia", "FrmQuickSteps"}) {
    app.Unload(page);
  }
  app.session().gStopRequested = false;
}

void ResetRestorePages(Application& app) {
  ShowMainWindow(app);
  for (const char* page : {"frmROne", "frmRTwo", "frmRfour", "frmRFinish"}) app.Unload(page);
  app.session().gOutlookProfileEdited = false;
  app.session().gStopRequested = false;
}

const PageTable& ProgramPages() {
  static const PageTable pages{
      .host = [](Application& app) -> PageHost& { return app.Get<FrmWelcome>(); },
      .rows = {{PageRole::kBackupJob, StepSide::kBackup, 0, PageOf<frmOne>},
               {PageRole::kBackupItems, StepSide::kBackup, 1, PageOf<FrmTwo>},
               {PageRole::kBackupOptions, StepSide::kBackup, 2, PageOf<frmThree>},
               {PageRole::kBackupMedia, StepSide::kBackup, 3, PageOf<FrmBackupMedia>},
               {PageRole::kBackupReview, StepSide::kBackup, 4, PageOf<frmfour>},
               {PageRole::kRestoreJob, StepSide::kRestore, 0, PageOf<frmROne>},
               {PageRole::kRestoreItems, StepSide::kRestore, 1, PageOf<frmRTwo>},
               {PageRole::kRestoreReview, StepSide::kRestore, 2, PageOf<frmRfour>},
               {PageRole::kSchedule, StepSide::kSchedule, 0, PageOf<frmSchedule>},
               {PageRole::kScheduleList, StepSide::kSchedule, 1, PageOf<frmSchedTwo>}},
      .commit_complete_backup = CommitCompleteBackup};
  return pages;
}

}  // namespace quorvale
