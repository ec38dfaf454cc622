// The page that lists and shows the logs of earlier runs, and behind them the accounts.
#pragma once

#include <string>
#include <vector>

#include "core/pages/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmLogs : public ui::Form {
 public:
  static constexpr char kName[] = "frmLogs";
  explicit frmLogs(Application& app);

  void Load() override;
  void Activate() override;

  ui::PictureBox PicHeader;
  ui::Label lblHeader, lblSubheading;
  ui::Frame Frame1;
  ui::Label lblLogPath;
  ui::TextBox txtLog;
  ui::ListBox File1;
  ui::RichTextBox RichTextBox1;
  ui::CommandButton cmdDelete, cmdRefresh, Command2;
  ui::CommandButton cmdBack, cmdCancel;

  // Fills the box from a log file; a missing file changes nothing.
  void RenderLog(const std::string& path);
  void RefreshLogList();

  void File1_Click();
  void File1_DblClick();
  void cmdDelete_Click();
  void Command2_Click();
  void cmdBack_Click();
  void cmdCancel_Click();

 private:
  void PlaceControls();
  void ConnectHandlers();
  std::string SelectedPath() const;
  bool AccountIsSelected() const;
  void RenderAccount(const std::string& path);

  Application& app_;
  std::string folder_;  // of the listed logs, without a final "\"
  // Of the listed accounts, and where the list holds the first of them.
  std::vector<std::string> accounts_;
  int first_account_ = 0;
};

// A log as the page shows it: lines joined with CR LF.
std::string RenderLogText(const std::string& text);

}  // namespace quorvale
