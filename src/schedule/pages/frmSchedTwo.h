// "Review / Delete Scheduled Backup": lists this program's jobs of the task scheduler, shows all
// about one of them and deletes it; and a small form for a test schedule.
#pragma once

#include <string>
#include <vector>

#include "core/pages/wizard_page.h"
#include "platform/task_scheduler.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmSchedTwo : public WizardPage {
 public:
  static constexpr char kName[] = "frmSchedTwo";
  explicit frmSchedTwo(Application& app);
  void Load() override;
  // Reads the list anew.
  bool TakeOver() override;
  // The list has the focus.
  void Entered() override;

  void cmdRefresh_Click();  // reads the list anew
  void cmdDelete_Click();
  void cmdTest_Click();
  void cmdBack_Click();
  void cmdCancel_Click();
  void ListView1_ItemClick();
  // True if the list has a row of exactly this text.
  bool checkAllReadyExist(const std::string& name) const;

  // The jobs of the rows, as they were read last.
  std::vector<ScheduledTask> mJobs;

  ui::PictureBox PicHeader{*this, "PicHeader", "SCHEDULE_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Review / Delete Scheduled Backup"};
  ui::ListView ListView1{*this, "ListView1"};
  ui::RichTextBox Text1{*this, "Text1"};
  ui::CommandButton cmdDelete{*this, "cmdDelete", "&Delete"};
  ui::Label cmdRefresh{*this, "cmdRefresh", "Refresh"};
  ui::Frame frameTest{*this, "frameTest", "Create Test Schedule"};
  ui::Label lblSchedName{*this, "lblSchedName", "Name"};
  ui::TextBox txtSchedName{*this, "txtSchedName"};
  ui::Label lblTime{*this, "lblTime", "Time"};
  ui::TextBox txttime{*this, "txttime"};
  ui::CheckBox Check1{*this, "Check1", "Every Day", 1};
  ui::CommandButton cmdTest{*this, "cmdTest", "Create &Test Schedule"};
  ui::CommandButton cmdBack{*this, "cmdBack", "C&reate Schedule"};
  ui::CommandButton cmdCancel{*this, "cmdCancel"};

 private:
  void PlaceControls();
  void ConnectHandlers();
  void SelectFirstRow();
  // If it can have it now.
  void FocusList();
  // The job's name of a row, from the row's key; "" if there is no such row.
  std::string NameOfRow(int row) const;
};

}  // namespace quorvale
