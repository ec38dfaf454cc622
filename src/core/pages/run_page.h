// A page on which long work goes on, as somebody sees it who watches the program from outside: how
// far it is, how it is stopped, how it ended.
#pragma once

#include <optional>
#include <string>

namespace quorvale {

struct RunProgress {
  int percent = 0;                     // of the whole
  std::optional<int> archive_percent;  // of what the archive component does, while it does
  std::string doing;                   // a few words for a person
};

// How the last run of a program ended.
enum class RunEnd {
  kNone,  // there was none, or it is under way
  kDone,
  kStopped,
  kFailed,
};

class RunPage {
 public:
  virtual ~RunPage() = default;
  virtual RunProgress Progress() const = 0;
  // Stops the work as the user would, with the question that the page asks. False if it cannot be
  // stopped now.
  virtual bool StopRun() = 0;
};

}  // namespace quorvale
