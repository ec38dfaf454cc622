// The commands of the console edition that work the schedule pages.
#pragma once

#include <string>
#include <vector>

#include "app/console/console.h"
#include "play/hands.h"
#include "play/running_machine.h"

namespace quorvale {

struct ScheduleWish {
  std::string name;
  std::string at;  // "21:30" or "09:30 PM"
  bool daily = false;
  std::vector<std::string> days;  // MO, TU, WE, TH, FR, SA, SU
  std::string type;               // quick, custom, auto
};

// The days of a list like "MO,FR"; empty if one of them is none.
std::vector<std::string> ReadDays(const std::string& text);
// True for the words that a schedule's type can be.
bool IsScheduleType(const std::string& type);

class ScheduleCommands {
 public:
  ScheduleCommands(RunningMachine& computer, Terminal& terminal)
      : computer_(computer), terminal_(terminal) {}

  // Each starts the program afresh and answers whether it was done. If not, a message box or
  // problem() says why.
  bool Add(const ScheduleWish& wish);
  bool List();
  bool Show(const std::string& name);
  bool Delete(const std::string& name);

  const std::string& problem() const { return problem_; }

 private:
  Hands hands() { return Hands(*computer_.app(), computer_.ui()); }
  bool Act(const std::string& problem);
  bool OpenCreatePage();
  bool OpenManagePage();
  bool TickDays(const ScheduleWish& wish);
  bool ChooseRow(const std::string& name);
  bool IsListed(const std::string& name);

  RunningMachine& computer_;
  Terminal& terminal_;
  std::string problem_;
};

}  // namespace quorvale
