// What the parts of the demo share: where they talk, and how each of them ends.
#pragma once

#include <ostream>
#include <string>

#include "app/console/console.h"
#include "play/page_driver.h"

namespace quorvale {

class DemoPart {
 protected:
  explicit DemoPart(Terminal& terminal) : terminal_(terminal) {}
  ~DemoPart() = default;

  // Tells why the part goes no further. Always false.
  bool Fail(const std::string& sentence) {
    terminal_.error << "quorvale: " << sentence << "\n";
    return false;
  }
  // True if a run was done; else it is told why not, with `otherwise` where nobody knows.
  bool Succeeded(Outcome outcome, const PageDriver& driver, const std::string& otherwise) {
    if (outcome == Outcome::kDone) return true;
    stopped_ = outcome == Outcome::kStopped;
    return Fail(driver.problem().empty() ? otherwise : driver.problem());
  }
  ExitStatus StatusOf(bool well) const {
    if (stopped_) return ExitStatus::kStopped;
    return well ? ExitStatus::kDone : ExitStatus::kFailed;
  }
  std::ostream& out() { return terminal_.out; }

  Terminal& terminal_;

 private:
  bool stopped_ = false;
};

}  // namespace quorvale
