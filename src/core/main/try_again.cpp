#include "core/main/try_again.h"

#include <utility>

#include "backup/pages/frmOne.h"
#include "base/paths.h"
#include "core/main/FrmWelcome.h"
#include "core/pages/account_table.h"
#include "core/program/ModGlobal.h"
#include "discovery/pages/FrmTwo.h"
#include "restore/pages/frmROne.h"

namespace quorvale {
namespace {

// "Mail", or "Mail 2" where there is a backup of that name.
std::string FreeJobName(Application& app, const std::string& name) {
  const std::string folder = WithBackslash(app.settings().backup_folder());
  std::string free_name = name;
  for (int number = 2; app.files().FileExists(folder + free_name + ".obk"); ++number) {
    free_name = name + " " + std::to_string(number);
  }
  return free_name;
}

void BackUpAgain(Application& app, const Account& account) {
  app.Get<FrmWelcome>().cmdWC_TakeBackup.Click();
  frmOne& job = app.Get<frmOne>();
  if (!account.name().empty() && !HasSpecialCharacters(account.name())) {
    job.txtBackupname.text = FreeJobName(app, account.name());
  }
  app.Get<FrmTwo>().TickAgain(EntriesToTryAgain(account));
  job.cmdNext.Click();
}

void RestoreAgain(Application& app, const Account& account) {
  app.Get<FrmWelcome>().cmdWC_Restore.Click();
  frmROne* job = app.Loaded<frmROne>();
  // Without the rights for it no page was shown, or another copy goes on.
  if (job == nullptr || !job->Visible()) return;
  Session& session = app.session();
  session.again_archive = account.archive;
  for (AccountEntry& entry : EntriesToTryAgain(account)) {
    session.again_items.push_back(std::move(entry.item));
  }
  job->UseBackup(account.archive);
  if (!job->txtDefaultPassword.enabled) job->cmdNext.Click();
}

}  // namespace

void TryAgain(Application& app, const Account& account) {
  app.page_host().HomePage();
  if (account.run() == AccountRun::kBackup) return BackUpAgain(app, account);
  RestoreAgain(app, account);
}

}  // namespace quorvale
