#include "schedule/pages/frmSchedule.h"

#include "backup/format/settings_file.h"
#include "base/scoped_flag.h"
#include "base/text.h"
#include "core/pages/account_window.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/pages/raised_rights.h"
#include "core/program/ModGlobal.h"
#include "core/program/command_words.h"
#include "discovery/products/watched_programs.h"
#include "schedule/pages/refused_time.h"
#include "schedule/run/schedule_jobs.h"

namespace quorvale {
namespace {

constexpr char kSchedulerService[] = "Schedule";
constexpr char kScheduleWord[] = "Schedule";

// The types of a scheduled backup, and the words that start them.
struct BackupType {
  const char* label;
  const char* word;
};
constexpr BackupType kTypes[] = {{"QuickBackup(Complete)", kQuickBackupWord},
                                 {"Custom Backup", kCustomWord},
                                 {"Automatic Backup", kAutoWord}};

// Of Monday to Sunday, in a trigger's day mask.
constexpr std::uint16_t kDayBits[] = {2, 4, 8, 16, 32, 64, 1};

std::string WordOf(const std::string& label) {
  for (const BackupType& type : kTypes) {
    if (label == type.label) return type.word;
  }
  return "";
}

}  // namespace

frmSchedule::frmSchedule(Application& app) : WizardPage(app, kName, PageRole::kSchedule) {
  for (const BackupType& type : kTypes) cmbCommandLine.AddItem(type.label);
  PlaceControls();
  ConnectHandlers();
}

void frmSchedule::PlaceControls() {
  using namespace page_layout;
  constexpr int kLabelWidth = 150;
  constexpr int kFieldLeft = kContentLeft + kLabelWidth + 10;
  // Of Monday to Sunday: so that the gaps behind the names are alike.
  constexpr int kDayWidths[] = {78, 80, 96, 84, 68, 82, 72};
  constexpr int kWideButton = 120;
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceSubheading(&lblSubheading);
  lblSchedName.bounds = ContentRow(1, kContentLeft, kLabelWidth);
  txtSchedName.bounds = ContentRow(1, kFieldLeft, 260);
  lblCommandLine.bounds = ContentRow(3, kContentLeft, kLabelWidth);
  cmbCommandLine.bounds = ContentRow(3, kFieldLeft, 260);
  lblTime.bounds = ContentRow(5, kContentLeft, kLabelWidth);
  DTPTime.bounds = ContentRow(5, kFieldLeft, 110);
  txttime.bounds = ContentRow(5, kFieldLeft + 120, 80);
  txttime.visible = false;
  chkDaily.bounds = ContentRow(7, kContentLeft, kLabelWidth);
  int left = kContentLeft;
  const std::array<ui::CheckBox*, 7> boxes = DayBoxes();
  for (size_t i = 0; i < boxes.size(); ++i) {
    boxes[i]->bounds = ContentRow(8, left, kDayWidths[i]);
    left += kDayWidths[i];
  }
  Command6.bounds = ContentRow(10, kContentLeft, kWideButton, kButtonHeight);
  // In the middle of the button's height.
  const int refresh_top = Command6.bounds.get().top + 3;
  cmdRefresh.bounds = {kContentRight - 68, refresh_top, 20, 20};
  Label32.bounds = {kContentRight - 44, refresh_top, 44, 20};
  Label32.is_link = true;
  Label32.fore_color = kHeadingColor;
  for (ui::Control* control : std::initializer_list<ui::Control*>{&cmdRefresh, &Label32}) {
    control->tooltip = "Clear the name and set the present time";
  }
  PlaceButtons(nullptr, &cmdNext, &cmdCancel);
  cmdNext.bounds = {kCancelLeft - kButtonGap - kWideButton, kButtonTop, kWideButton, kButtonHeight};
  // Enter makes the schedule, as the page's own act.
  cmdNext.is_default = false;
  Command6.is_default = true;
  SetTabOrder({&lblSchedName, &txtSchedName, &lblCommandLine, &cmbCommandLine, &lblTime, &DTPTime,
               &chkDaily, &ChkM, &ChkT, &ChkW, &ChkR, &ChkF, &ChkS, &ChkU, &Command6, &Label32});
}

void frmSchedule::ConnectHandlers() {
  Command6.on_click = [this] { Command6_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdRefresh.on_click = [this] { cmdRefresh_Click(); };
  Label32.on_click = [this] { cmdRefresh_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  chkDaily.on_click = [this] { chkDaily_Click(); };
  for (ui::CheckBox* box : DayBoxes()) box->on_click = [this] { DayBox_Click(); };
  txttime.on_lost_focus = [this] { txttime_Validate(); };
  OpenHelpOnF1(app_, *this, kScheduleHelpTopic);
}

void frmSchedule::Load() {
  page_layout::HostPage(app_, *this);
  cmbCommandLine.list_index = 0;
  ShowPresentTime();
}

void frmSchedule::ShowPresentTime() {
  DTPTime.value = app_.platform().system.Now();
  DTPTime.Notify(ui::Property::kValue);
  txttime.text = TimeBoxText(DTPTime.value);
}

// --- Days ---------------------------------------------------------------------------------------

std::array<ui::CheckBox*, 7> frmSchedule::DayBoxes() {
  return {&ChkM, &ChkT, &ChkW, &ChkR, &ChkF, &ChkS, &ChkU};
}

int frmSchedule::TickedDays() {
  int ticked = 0;
  for (const ui::CheckBox* box : DayBoxes()) ticked += box->value;
  return ticked;
}

void frmSchedule::chkDaily_Click() {
  if (setting_days_) return;
  const ScopedFlag setting(setting_days_);
  for (ui::CheckBox* box : DayBoxes()) {
    box->value = chkDaily.value.get();
    box->enabled = chkDaily.value == 0;
  }
}

void frmSchedule::DayBox_Click() {
  if (setting_days_) return;
  const int ticked = TickedDays();
  if (ticked == 0) chkDaily.value = 0;
  if (ticked == 7) chkDaily.value = 1;
}

// --- Creating -----------------------------------------------------------------------------------

void frmSchedule::Command6_Click() {
  last_creation = Creation::kNotAsked;
  if (!ServiceIsRunning(app_.platform().services, kSchedulerService)) {
    app_.Inform(
        "Windows Scheduler service is currently not running. Please enable it to create a "
        "schedule.");
    return;
  }
  PageOf(PageRole::kScheduleList).TakeOver();
  const std::string name = Trim(txtSchedName.text.get());
  if (!MayCreate(name)) return;
  last_creation = CreateJob(name) ? Creation::kTaken : Creation::kRefused;
  app_.Inform("Schedule created successfully");
  app_.page_host().ShowNextSchedule();
  cmdRefresh_Click();
  Refresh();
  ShowAccount(app_, AccountRun::kSchedule, true);
}

bool frmSchedule::MayCreate(const std::string& name) {
  if (HasSpecialCharacters(name)) {
    app_.Inform("Schedule name cannot contain special characters");
    txtSchedName.SetFocus();
    return false;
  }
  if (IsScheduleNameTaken(app_, name)) {
    app_.Inform("Schedule already exists. Please enter a new name");
    return false;
  }
  if (name.empty()) {
    app_.Inform("Schedule name cannot be blank, please enter a schedule name");
    txtSchedName.SetFocus();
    return false;
  }
  if (TickedDays() == 0) {
    app_.Inform("Select at least one day for the Schedule");
    return false;
  }
  return true;
}

bool frmSchedule::CreateJob(const std::string& name) {
  ScheduledTask job = NewScheduleJob(app_, name, kScheduleComment, DTPTime.value);
  job.parameters = WordOf(cmbCommandLine.SelectedText());
  if (chkDaily.value == 0) {
    TaskTrigger& trigger = job.triggers.front();
    trigger.type = TaskTriggerType::kWeekly;
    const std::array<ui::CheckBox*, 7> boxes = DayBoxes();
    for (size_t i = 0; i < boxes.size(); ++i) {
      if (boxes[i]->value != 0)
        trigger.days = static_cast<std::uint16_t>(trigger.days | kDayBits[i]);
    }
  }
  return MakeScheduleJob(app_, job);
}

void frmSchedule::cmdRefresh_Click() {
  txtSchedName.text = "";
  ShowPresentTime();
}

bool frmSchedule::txttime_Validate() {
  if (ReadTimeBox(txttime.text, DTPTime.value)) return true;
  const std::string text = txttime.text;
  RefuseTime(app_, text);
  ShowPresentTime();
  return false;
}

// --- Leaving ------------------------------------------------------------------------------------

void frmSchedule::cmdNext_Click() {
  const auto hand_over = [this] {
    SaveScheduleState(app_, HandOverPath(app_), {.kind = kScheduleWord});
  };
  if (!RaiseRights(app_, hand_over)) return;
  GoOnTo(PageRole::kScheduleList);
}

void frmSchedule::cmdCancel_Click() { app_.page_host().HomePage(); }

}  // namespace quorvale
