// When the window with the account of a run opens. Pages ask for it here and do not name it.
#pragma once

#include <string>

#include "core/pages/application.h"

namespace quorvale {

// Opens the window with an account that was kept, and takes it for looked at. False if there is no
// account in that file.
bool OpenAccount(Application& app, const std::string& path);

// At the end of a run, behind its message boxes and when its account has been kept: opens the
// window where the account is of this kind of run and has something to tell that the person does
// not know. A run that was only stopped is known; one that nobody attends shows nothing, and the
// home page tells it.
void ShowAccount(Application& app, AccountRun run, bool attended);

// The window goes, if it is open.
void CloseAccount(Application& app);

}  // namespace quorvale
