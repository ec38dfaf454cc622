// The line between a run and whoever watches it: what happens goes up, "stop" comes down.
#pragma once

#include <string>

#include "core/program/program.h"
#include "restore/run/restore_events.h"

namespace quorvale {

class RunMonitor {
 public:
  RunMonitor(const Program& program, RestoreEvents events);

  // Lets messages in. False once the run was stopped or the program ended; it stays false until
  // Restart, and nobody is asked again.
  bool KeepGoing();
  // Lets messages in and then tells which item is next. False, and nothing is told, after a stop.
  bool BeginItem(const std::string& item);
  // For the next run of the same page.
  void Restart() { stopped_ = false; }

  // None of these is empty.
  const RestoreEvents& events() const { return events_; }

 private:
  const Program& program_;
  RestoreEvents events_;
  bool stopped_ = false;
};

}  // namespace quorvale
