// What the main window asks of the schedule pages.
#pragma once

#include <string>

namespace quorvale {

class Application;

// Shows the page that makes schedules over the main window's panel. False if there is none.
bool ShowSchedulePage(Application& app);
// Presses Next on it, for a run that resumes with raised rights.
void PressScheduleNext(Application& app);
// The next run of this program's schedules as text; "" if there are none.
std::string NextScheduleText(Application& app);

}  // namespace quorvale
