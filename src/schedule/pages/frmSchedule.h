// "Create Schedule": makes a job of the system's task scheduler that starts this program with a
// word on its command line.
#pragma once

#include <array>
#include <string>

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmSchedule : public WizardPage {
 public:
  static constexpr char kName[] = "frmSchedule";
  explicit frmSchedule(Application& app);
  void Load() override;

  void Command6_Click();  // create
  // What became of the last press on it. The box that follows says the same in any case.
  enum class Creation { kNotAsked, kTaken, kRefused };
  Creation last_creation = Creation::kNotAsked;
  void cmdNext_Click();  // to the page that lists and deletes
  void cmdRefresh_Click();
  void cmdCancel_Click();
  void chkDaily_Click();
  void DayBox_Click();
  // True if the time in txttime is one. If not, the user has been told and both hold the present
  // time again.
  bool txttime_Validate();

  ui::PictureBox PicHeader{*this, "PicHeader", "SCHEDULE_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Schedule your Backup"};
  ui::Label lblSubheading{*this, "lblSubheading", "Create Schedule"};
  ui::Label lblSchedName{*this, "lblSchedName", "Name your Schedule"};
  ui::TextBox txtSchedName{*this, "txtSchedName"};
  ui::Label lblCommandLine{*this, "lblCommandLine", "Type of Backup"};
  ui::ComboBox cmbCommandLine{*this, "cmbCommandLine"};
  ui::Label lblTime{*this, "lblTime", "When to Schedule"};
  ui::DatePicker DTPTime{*this, "DTPTime"};
  ui::TextBox txttime{*this, "txttime"};  // never shown
  ui::CheckBox chkDaily{*this, "chkDaily", "Daily"};
  ui::CheckBox ChkM{*this, "ChkM", "Monday"};
  ui::CheckBox ChkT{*this, "ChkT", "Tuesday"};
  ui::CheckBox ChkW{*this, "ChkW", "Wednesday"};
  ui::CheckBox ChkR{*this, "ChkR", "Thursday"};
  ui::CheckBox ChkF{*this, "ChkF", "Friday"};
  ui::CheckBox ChkS{*this, "ChkS", "Saturday"};
  ui::CheckBox ChkU{*this, "ChkU", "Sunday"};
  ui::CommandButton Command6{*this, "Command6", "C&reate Schedule"};
  ui::ImageButton cmdRefresh{*this, "cmdRefresh", "REFRESH", "REFRESH_HOVER", "REFRESH_HOVER"};
  ui::Label Label32{*this, "Label32", "Refresh"};
  ui::CommandButton cmdNext{*this, "cmdNext", "&Manage Schedule"};
  ui::CommandButton cmdCancel{*this, "cmdCancel"};

 private:
  void PlaceControls();
  void ConnectHandlers();
  // Monday to Sunday.
  std::array<ui::CheckBox*, 7> DayBoxes();
  int TickedDays();
  // False, and the user has been told, if the job must not be made.
  bool MayCreate(const std::string& name);
  // False if the scheduler did not take it.
  bool CreateJob(const std::string& name);
  void ShowPresentTime();

  // While the page sets the day boxes itself, their handlers do nothing.
  bool setting_days_ = false;
};

}  // namespace quorvale
