// A backup of all that this computer has, prepared without its pages being gone through.
#pragma once

#include <string>

#include "core/pages/application.h"

namespace quorvale {

// Ticks and commits everything, with the options as they stand and the hard disk as the only
// medium. `file_name` goes into the page of options first, unless it is empty.
void CommitCompleteBackup(Application& app, const std::string& file_name);

// Goes through the steps of a quick backup in the small window that shows them, up to the filled
// review page. The run may have ended when it returns.
void PrepareQuickBackup(Application& app);
// Shows the page that a prepared backup has come to, with its step.
void ShowPreparedBackup(Application& app);

}  // namespace quorvale
