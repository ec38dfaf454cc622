#include "schedule/schedule_page.h"

namespace quorvale {

// This edition schedules nothing: no page, and no runs to tell of.
bool ShowSchedulePage(Application&) { return false; }

void PressScheduleNext(Application&) {}

std::string NextScheduleText(Application&) { return ""; }

}  // namespace quorvale
