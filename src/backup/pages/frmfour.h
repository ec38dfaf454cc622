// "Review Backup Settings": what is about to happen, and the last stop before the engine.
#pragma once

#include <string>

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmfour : public WizardPage {
 public:
  static constexpr char kName[] = "frmfour";
  explicit frmfour(Application& app);
  void Load() override;
  // Fills the page. False if that has started the run.
  bool TakeOver() override;
  // The run is not begun again from here.
  void RunOver() override;

  // Fills the page from the session. In a run with the word "auto" it then goes on by itself if
  // anything is selected.
  void FillReview();
  // True from the moment that Next has started the engine.
  bool RunStarted() const { return run_started_; }

  void cmdNext_Click();
  void cmdBack_Click();
  void cmdCancel_Click();
  void Timer2_Timer();

  ui::PictureBox PicHeader{*this, "PicHeader", "BACKUP_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Review Backup Settings"};
  ui::RichTextBox RichTextBox1{*this, "RichTextBox1"};
  ui::Grid Ms{*this, "Ms"};
  ui::Label lblnoitem{*this, "lblnoitem"};
  ui::Label lblRefused{*this, "lblRefused"};  // why Next has not begun the backup
  ui::CommandButton cmdBack{*this, "cmdBack"};
  ui::CommandButton cmdNext{*this, "cmdNext"};
  ui::CommandButton cmdCancel{*this, "cmdCancel"};
  ui::Timer Timer2{*this, "Timer2", 1000};

 private:
  void PlaceControls();
  void ConnectHandlers();
  std::string ReviewText();
  void FillGrid();
  bool SomethingSelected() const;
  // Step by step what cmdNext does; false where the page has to stay.
  bool FolderIsThere();
  bool SpaceSuffices();
  // The account of a backup that was not begun.
  void AccountFor(AccountReason why, const std::string& detail);
  void WriteFiles();

  bool run_started_ = false;
};

}  // namespace quorvale
