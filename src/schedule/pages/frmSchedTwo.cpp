#include "schedule/pages/frmSchedTwo.h"

#include "base/text.h"
#include "core/pages/account_window.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "schedule/pages/refused_time.h"
#include "schedule/run/schedule_jobs.h"

namespace quorvale {
namespace {

// What stands before the job's name in a row's key.
constexpr char kRowKey[] = "Key";

}  // namespace

frmSchedTwo::frmSchedTwo(Application& app) : WizardPage(app, kName, PageRole::kScheduleList) {
  ListView1.columns = {"Name", "Details"};
  ListView1.column_percents = {28, 72};  // when a job runs is a long line
  PlaceControls();
  ConnectHandlers();
}

void frmSchedTwo::PlaceControls() {
  using namespace page_layout;
  constexpr int kWideButton = 120;
  constexpr int kListHeight = 88;
  constexpr int kGap = 6;
  constexpr int kDeleteTop = kContentTop + kListHeight + kGap;
  constexpr int kTextTop = kDeleteTop + kButtonHeight + kGap;
  constexpr int kFrameHeight = 52;
  constexpr int kFrameTop = kContentBottom - kFrameHeight;
  PlaceHeader(&PicHeader, &lblHeader);
  ListView1.bounds = {kContentLeft, kContentTop, kContentWidth, kListHeight};
  cmdDelete.bounds = {kContentLeft, kDeleteTop, kButtonWidth, kButtonHeight};
  cmdRefresh.bounds = {kContentRight - 60, kDeleteTop + 3, 60, 20};
  cmdRefresh.is_link = true;
  cmdRefresh.alignment = ui::Alignment::kRight;
  cmdRefresh.fore_color = kHeadingColor;
  cmdRefresh.tooltip = "Read the list of schedules again";
  Text1.bounds = {kContentLeft, kTextTop, kContentWidth, kFrameTop - kGap - kTextTop};

  // Places in the frame.
  frameTest.bounds = {kContentLeft, kFrameTop, kContentWidth, kFrameHeight};
  for (ui::Control* control : std::initializer_list<ui::Control*>{
           &lblSchedName, &txtSchedName, &lblTime, &txttime, &Check1, &cmdTest}) {
    control->container = &frameTest;
  }
  constexpr int kLine = 21;
  lblSchedName.bounds = {10, kLine, 40, kLineHeight};
  txtSchedName.bounds = {52, kLine, 150, kLineHeight};
  lblTime.bounds = {212, kLine, 34, kLineHeight};
  txttime.bounds = {248, kLine, 70, kLineHeight};
  Check1.bounds = {328, kLine, 84, kLineHeight};
  // A test schedule is a daily one.
  Check1.enabled = false;
  cmdTest.bounds = {416, kLine - 3, 134, kButtonHeight};

  PlaceButtons(&cmdBack, nullptr, &cmdCancel);
  cmdBack.bounds = {kCancelLeft - kButtonGap - kWideButton, kButtonTop, kWideButton, kButtonHeight};
  SetTabOrder({&ListView1, &Text1, &cmdDelete, &cmdRefresh, &lblSchedName, &txtSchedName, &lblTime,
               &txttime, &Check1, &cmdTest});
}

void frmSchedTwo::ConnectHandlers() {
  ListView1.on_item_click = [this] { ListView1_ItemClick(); };
  cmdDelete.on_click = [this] { cmdDelete_Click(); };
  cmdRefresh.on_click = [this] { cmdRefresh_Click(); };
  cmdTest.on_click = [this] { cmdTest_Click(); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, kScheduleHelpTopic);
}

void frmSchedTwo::Load() {
  page_layout::HostPage(app_, *this);
  txttime.text = TimeBoxText(app_.platform().system.Now());
}

bool frmSchedTwo::TakeOver() {
  cmdRefresh_Click();
  return true;
}

void frmSchedTwo::Entered() {
  if (!mJobs.empty()) FocusList();
}

// --- The list -----------------------------------------------------------------------------------

void frmSchedTwo::cmdRefresh_Click() {
  Text1.text = "";
  ListView1.Clear();
  mJobs = OwnScheduleJobs(app_);
  for (const ScheduledTask& job : mJobs) {
    const std::string when = job.triggers.empty() ? "" : job.triggers.front().text;
    ListView1.AddRow({kRowKey + job.name, {job.name, when}});
  }
  if (mJobs.empty()) {
    Text1.text = kNoSchedule;
  } else {
    SelectFirstRow();
  }
}

void frmSchedTwo::SelectFirstRow() {
  ListView1.selected = 0;
  Text1.text = ScheduleDetails(app_, mJobs.front());
  FocusList();
}

void frmSchedTwo::FocusList() {
  if (Visible() && ListView1.enabled && ListView1.IsShown()) ListView1.SetFocus();
}

std::string frmSchedTwo::NameOfRow(int row) const {
  if (row < 0 || row >= static_cast<int>(ListView1.rows().size())) return "";
  return ListView1.rows()[static_cast<size_t>(row)].key.substr(sizeof(kRowKey) - 1);
}

void frmSchedTwo::ListView1_ItemClick() {
  const std::string name = NameOfRow(ListView1.selected);
  if (name.empty()) return;
  const std::optional<ScheduledTask> job = app_.platform().scheduler.Read(name);
  if (!job) {
    app_.Inform("The selected schedule has either been removed or renamed");
    cmdRefresh_Click();
    return;
  }
  Text1.text = ScheduleDetails(app_, *job);
}

bool frmSchedTwo::checkAllReadyExist(const std::string& name) const {
  for (const ui::ListView::Row& row : ListView1.rows()) {
    if (row.cells.front() == name) return true;
  }
  return false;
}

// --- Deleting -----------------------------------------------------------------------------------

void frmSchedTwo::cmdDelete_Click() {
  if (ListView1.rows().empty()) {
    app_.Inform("There is no schedule to be deleted");
    return;
  }
  const std::string name = NameOfRow(ListView1.selected);
  if (name.empty()) return;
  if (!app_.Ask("The operation can't be undone. Are you sure you want to delete \"" + name + "\"?",
                ui::Icon::kInformation, true)) {
    return;
  }
  app_.platform().scheduler.Delete(name);
  Text1.text = "No Schedule Selected ! Please Select or Create a schedule to see the details";
  // Says "No Schedule yet Created", or shows the first one that is left.
  cmdRefresh_Click();
  app_.page_host().ShowNextSchedule();
}

// --- The test schedule --------------------------------------------------------------------------

void frmSchedTwo::cmdTest_Click() {
  const std::string name = Trim(txtSchedName.text.get());
  if (HasSpecialCharacters(name)) {
    app_.Inform("Schedule name cannot contain special characters");
    txtSchedName.SetFocus();
    return;
  }
  // A test schedule is in no list of this page: the scheduler has to be asked.
  if (IsScheduleNameTaken(app_, name)) {
    app_.Inform("The task already exists. Please enter a new name");
    return;
  }
  if (name.empty()) {
    app_.Inform("Enter a task name");
    return;
  }
  const LocalTime now = app_.platform().system.Now();
  const std::optional<LocalTime> start = ReadTimeBox(txttime.text, now);
  if (!start) {
    RefuseTime(app_, txttime.text);
    txttime.text = TimeBoxText(now);
    txttime.SetFocus();
    return;
  }
  MakeScheduleJob(app_, NewScheduleJob(app_, name, kTestScheduleComment, *start));
  cmdRefresh_Click();
  ShowAccount(app_, AccountRun::kSchedule, true);
}

// --- Leaving ------------------------------------------------------------------------------------

void frmSchedTwo::cmdBack_Click() { Back(); }

void frmSchedTwo::cmdCancel_Click() { app_.page_host().HomePage(); }

}  // namespace quorvale
