#include "core/main/page_sets.h"

#include "core/main/FrmWelcome.h"

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
      .host = [](Application& app) -> PageHost& { return app.Get<FrmWelcome>(); }};
  return pages;
}

}  // namespace quorvale
