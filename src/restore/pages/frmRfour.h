// The third page of a restore: what is about to happen, and whether it fits.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"
#include "restore/run/backup_members.h"

namespace quorvale {

// What one target drive has to take.
struct QVLRestoreClass {
  std::string lstrRestorePath;  // a path on that drive, as first met
  double lRestoreFilesize = 0;  // bytes
};

class frmRfour : public WizardPage {
 public:
  static constexpr char kName[] = "frmRfour";
  explicit frmRfour(Application& app);

  ui::PictureBox PicHeader{*this, "PicHeader", "RESTORE_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Review Items"};
  ui::Label lblReview{*this, "lblReview", "Review items to be restored"};
  ui::Label lblHint{*this, "lblHint",
                    "Review the following and press next to start the Restore process"};
  ui::Label lblChange{
      *this, "lblChange",
      "Review the items selected for restoration, click on Back button to make changes"};
  ui::RichTextBox RichTextBox1{*this, "RichTextBox1"};
  ui::OptionButton optRestore{*this, "optRestore", "&Keep the Files in the Restore Folder"};
  ui::OptionButton optDefault{*this, "optDefault", "&Apply To Default Folders", true};
  ui::CommandButton cmdBack{*this, "cmdBack", "< &Back"};
  ui::CommandButton cmdNext{*this, "cmdNext", "&Next >"};
  ui::CommandButton cmdCancel{*this, "cmdCancel", "&Cancel"};

  void Load() override;
  // Shows what was committed.
  bool TakeOver() override;

  // Writes the summary into RichTextBox1.
  void LoadDetails();
  // True when every target drive has room; otherwise the user is told which one has not.
  bool ComputeRestoreSpace();
  // Bytes of the archive's members that a pattern names ("a\b.txt" or "a\b\*"). 0 if the archive
  // cannot be listed.
  double SizeOfItem(const std::string& pattern);
  void WriteRestoreSettingsLog(const std::string& path);
  // "1.500 KB": three decimals, steps of 1024.
  static std::string FormatSize(double bytes);
  // The drive that a target counts for: three characters, or a share.
  static std::string DriveOfTarget(const std::string& path);

  void cmdNext_Click();
  void cmdBack_Click();
  void cmdCancel_Click();

  // What the last ComputeRestoreSpace added up, one row for each drive.
  const std::vector<QVLRestoreClass>& needs() const { return needs_; }

 private:
  void PlaceControls();
  void ConnectHandlers();
  void EnableButtons(bool enabled);
  // Reads the archive's directory, and the prefix of all member names.
  void ReadArchive();
  // The folder or file whose drive has to take an item's bytes.
  std::string TargetOf(const RestoreItem& item) const;
  bool IsThere(const std::string& target) const;
  void AddNeed(const std::string& target, double bytes);

  BackupMembers members_;
  std::string prefix_;
  std::vector<QVLRestoreClass> needs_;
  std::unordered_map<std::string, size_t> drives_;  // a drive's place in needs_
};

}  // namespace quorvale
