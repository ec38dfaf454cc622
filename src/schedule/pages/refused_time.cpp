#include "schedule/pages/refused_time.h"

#include "base/text.h"

namespace quorvale {
namespace {

constexpr char kTimeFormatHint[] =
    "Valid format for time is HH:MM AM/PM , hour:minute followed by a blank space then am/pm";

}  // namespace

void RefuseTime(Application& app, const std::string& text) {
  const std::string problem = Trim(text).empty()
                                  ? "Please enter time at which you want the schedule to run. "
                                  : text + " is not a valid time. ";
  app.ui().MessageBox({.text = problem + kTimeFormatHint, .title = "Invalid Time"});
}

}  // namespace quorvale
