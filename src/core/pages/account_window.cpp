#include "core/pages/account_window.h"

#include <algorithm>

#include "core/pages/frmAccount.h"
#include "core/program/account_folder.h"

namespace quorvale {
namespace {

// Nothing more than what the person did is told by it.
bool WasOnlyStopped(const Account& account) {
  if (account.end() != AccountEnd::kStopped) return false;
  // Of a stopped backup nothing is left, so nothing is missing in it.
  return account.run() == AccountRun::kBackup ||
         std::all_of(
             account.entries().begin(), account.entries().end(),
             [](const AccountEntry& entry) { return entry.reason == AccountReason::kStopped; });
}

void MarkSeen(Application& app) {
  MarkAccountsSeen(app);
  app.page_host().ShowUnseenAccount();
}

void Open(Application& app, const Account& account) {
  frmAccount& window = app.Get<frmAccount>();
  window.Use(account);
  window.Show();
}

}  // namespace

bool OpenAccount(Application& app, const std::string& path) {
  Account account;
  if (!LoadAccount(app, path, &account)) return false;
  const bool is_unseen = path == UnseenAccount(app);
  Open(app, account);
  if (is_unseen) MarkSeen(app);
  return true;
}

void ShowAccount(Application& app, AccountRun run, bool attended) {
  const Account& account = app.account();
  const bool has_ended = account.end() != AccountEnd::kNotEnded;
  if (app.Ended() || account.run() != run || !has_ended || !account.HasToTell()) return;
  if (!attended) return;
  if (!WasOnlyStopped(account)) Open(app, account);
  MarkSeen(app);
}

void CloseAccount(Application& app) { app.Unload<frmAccount>(); }

}  // namespace quorvale
