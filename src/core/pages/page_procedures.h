// The shared procedures that show a message or work on a form.
#pragma once

#include <functional>
#include <string>

#include "core/pages/application.h"

namespace quorvale {

// Makes the folder of a path that ends in "\\"; tells the user when that fails.
bool MakeDirectoryPath(Application& app, const std::string& path);
// Tells the user that a folder could not be made.
void TellFolderRefused(Application& app, const std::string& path);
// Shows an address in the browser; tells the user when there is none.
void OpenUrl(Application& app, const std::string& url);
// From now on F1 on the form does that and nothing else.
void OnF1(ui::Form& form, std::function<void()> action);
// From now on F1 on the page opens a topic of the help.
void OpenHelpOnF1(Application& app, ui::Form& page, const std::string& topic);
// The rounding of a page's corners, unless it is minimised.
void RoundPage(const Application& app, ui::Form& page);

}  // namespace quorvale
