// "Try these again", where a run's account is shown.
#pragma once

#include "core/pages/application.h"

namespace quorvale {

// Opens the wizard of the account's run anew, at its page of items, with what EntriesToTryAgain
// gives ticked and nothing else. A backup gets a name that no other one has. A restore is of the
// same backup; where that wants a password, or cannot be opened, the first page waits.
void TryAgain(Application& app, const Account& account);

}  // namespace quorvale
