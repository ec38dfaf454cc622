#include "restore/run/run_monitor.h"

#include <utility>

namespace quorvale {

RunMonitor::RunMonitor(const Program& program, RestoreEvents events)
    : program_(program), events_(std::move(events)) {
  if (!events_.phase_begins) events_.phase_begins = [](RestorePhase) {};
  if (!events_.phase_ends) events_.phase_ends = [](RestorePhase) {};
  if (!events_.item) events_.item = [](const std::string&) {};
  if (!events_.file) events_.file = [](const std::string&) {};
  if (!events_.percent) events_.percent = [](int) {};
  if (!events_.keep_going) events_.keep_going = [] { return true; };
}

bool RunMonitor::KeepGoing() {
  if (!stopped_) stopped_ = !events_.keep_going() || program_.Ended();
  return !stopped_;
}

bool RunMonitor::BeginItem(const std::string& item) {
  if (!KeepGoing()) return false;
  events_.item(item);
  return true;
}

}  // namespace quorvale
