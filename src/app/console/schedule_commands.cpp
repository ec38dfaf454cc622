#include "app/console/schedule_commands.h"

#include <ostream>

#include "base/text.h"
#include "schedule/pages/frmSchedTwo.h"
#include "schedule/pages/frmSchedule.h"
#include "schedule/run/schedule_jobs.h"

namespace quorvale {
namespace {

struct Pair {
  const char* word;
  const char* name;
};
constexpr Pair kDays[] = {{"MO", "ChkM"}, {"TU", "ChkT"}, {"WE", "ChkW"}, {"TH", "ChkR"},
                          {"FR", "ChkF"}, {"SA", "ChkS"}, {"SU", "ChkU"}};
constexpr Pair kTypes[] = {
    {"quick", "QuickBackup(Complete)"}, {"custom", "Custom Backup"}, {"auto", "Automatic Backup"}};

template <size_t N>
std::string NameOf(const Pair (&pairs)[N], const std::string& word) {
  for (const Pair& pair : pairs) {
    if (EqualsNoCase(word, pair.word)) return pair.name;
  }
  return "";
}

}  // namespace

std::vector<std::string> ReadDays(const std::string& text) {
  std::vector<std::string> days = Split(text, ",");
  for (const std::string& day : days) {
    if (NameOf(kDays, day).empty()) return {};
  }
  return days;
}

bool IsScheduleType(const std::string& type) { return !NameOf(kTypes, type).empty(); }

bool ScheduleCommands::Act(const std::string& problem) {
  if (problem_.empty()) problem_ = problem;
  return problem_.empty();
}

bool ScheduleCommands::OpenCreatePage() {
  computer_.Start("");
  return Act(hands().Click("FrmWelcome", "lblQuicklinks(2)"));
}

// The program may start itself again on the way. A box says so if it may not go there.
bool ScheduleCommands::OpenManagePage() {
  if (!OpenCreatePage() || !Act(hands().Click("frmSchedule", "cmdNext"))) return false;
  if (computer_.ProgramEnded()) computer_.FollowRestart();
  const frmSchedTwo* page = computer_.app()->Loaded<frmSchedTwo>();
  return page != nullptr && page->Visible();
}

bool ScheduleCommands::TickDays(const ScheduleWish& wish) {
  if (wish.daily) return Act(hands().Check("frmSchedule", "chkDaily", true));
  for (const std::string& day : wish.days) {
    // Daily is ticked with the seventh day, which leaves nothing to tick.
    if (computer_.app()->Get<frmSchedule>().chkDaily.value == 1) return true;
    if (!Act(hands().Check("frmSchedule", NameOf(kDays, day), true))) return false;
  }
  return true;
}

bool ScheduleCommands::Add(const ScheduleWish& wish) {
  if (!OpenCreatePage()) return false;
  const std::optional<LocalTime> time = ReadTimeBox(wish.at, LocalTime());
  if (!time) return Act("\"" + wish.at + "\" is no time of day.");
  if (!Act(hands().Set("frmSchedule", "txtSchedName", wish.name)) ||
      !Act(hands().Choose("frmSchedule", "cmbCommandLine", NameOf(kTypes, wish.type))) ||
      !Act(hands().Set("frmSchedule", "DTPTime", TimeBoxText(*time))) || !TickDays(wish)) {
    return false;
  }
  if (!Act(hands().Click("frmSchedule", "Command6"))) return false;
  switch (computer_.app()->Get<frmSchedule>().last_creation) {
    case frmSchedule::Creation::kTaken:
      return true;
    case frmSchedule::Creation::kRefused:
      return Act("The scheduler did not take \"" + wish.name + "\".");
    case frmSchedule::Creation::kNotAsked:
      break;  // a box of the page says why
  }
  return false;
}

bool ScheduleCommands::List() {
  if (!OpenManagePage()) return false;
  for (const ui::ListView::Row& row : computer_.app()->Get<frmSchedTwo>().ListView1.rows()) {
    terminal_.out << row.cells[0] << "\t" << row.cells[1] << "\n";
  }
  return true;
}

bool ScheduleCommands::IsListed(const std::string& name) {
  return computer_.app()->Get<frmSchedTwo>().checkAllReadyExist(name);
}

bool ScheduleCommands::ChooseRow(const std::string& name) {
  if (!IsListed(name)) return Act("There is no schedule \"" + name + "\".");
  return Act(hands().Choose("frmSchedTwo", "ListView1", name));
}

bool ScheduleCommands::Show(const std::string& name) {
  if (!OpenManagePage() || !ChooseRow(name)) return false;
  const std::string text = computer_.app()->Get<frmSchedTwo>().Text1.text;
  terminal_.out << ReplaceAll(text, "\r\n", "\n");
  return true;
}

bool ScheduleCommands::Delete(const std::string& name) {
  if (!OpenManagePage() || !ChooseRow(name)) return false;
  return Act(hands().Click("frmSchedTwo", "cmdDelete")) && !IsListed(name);
}

}  // namespace quorvale
