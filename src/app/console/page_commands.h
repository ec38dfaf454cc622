// The commands of the console edition that work one page: the logs and the settings.
#pragma once

#include <string>

#include "app/console/console.h"
#include "play/hands.h"
#include "play/running_machine.h"

namespace quorvale {

class PageCommands {
 public:
  PageCommands(RunningMachine& computer, Terminal& terminal)
      : computer_(computer), terminal_(terminal) {}

  // Each starts the program afresh and answers whether it was done. If not, a message box or
  // problem() says why.
  bool ListLogs();
  bool ShowLog(const std::string& name);
  bool DeleteLog(const std::string& name);
  bool ListSettings();
  bool GetSetting(const std::string& name);
  bool SetSetting(const std::string& name, const std::string& value);

  const std::string& problem() const { return problem_; }

 private:
  Hands hands() { return Hands(*computer_.app(), computer_.ui()); }
  bool Act(const std::string& problem);
  bool Open(const std::string& button);
  bool ChooseLog(const std::string& name);
  // The control of a setting; null, with the problem, if there is no such setting.
  ui::Control* Setting(const std::string& name);
  bool ChooseFolder(const std::string& button, const ui::Control& box, const std::string& folder);

  RunningMachine& computer_;
  Terminal& terminal_;
  std::string problem_;
};

}  // namespace quorvale
