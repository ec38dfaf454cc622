// The pages of the two wizards, and what unloads them.
#pragma once

#include "core/pages/application.h"

namespace quorvale {

// Both show the main window, unload every page of the wizard with what was entered there, and
// clear what a stopped run left in the session.
void ResetBackupPages(Application& app);
void ResetRestorePages(Application& app);

// What the application tells its pages of this room.
const PageTable& ProgramPages();

}  // namespace quorvale
