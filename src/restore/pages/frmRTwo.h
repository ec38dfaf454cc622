// The second page of a restore: the item tree of a backup, rebuilt from its settings file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "backup/format/member_table.h"
#include "backup/format/settings_file.h"
#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"
#include "platform/ui/tree_view.h"

namespace quorvale {

class frmRTwo : public WizardPage {
 public:
  static constexpr char kName[] = "frmRTwo";
  explicit frmRTwo(Application& app);

  ui::PictureBox PicHeader{*this, "PicHeader", "RESTORE_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Select Items to Restore"};
  ui::Label lblTree{*this, "lblTree", "&Items in the backup"};
  ui::TreeView tvwMain{*this, "tvwMain"};
  ui::Label Label32{*this, "Label32", "Refresh List"};
  ui::CommandButton Command2{*this, "Command2", "Load"};  // hidden; pressed by Refresh List
  ui::RichTextBox frmfor{*this, "frmfor"};
  ui::RichTextBox lblDesc{*this, "lblDesc"};
  ui::Label lblFolder{*this, "lblFolder", "Select a &folder to restore files"};
  ui::TextBox txtpath{*this, "txtpath"};
  ui::CommandButton cmdselectfolder{*this, "cmdselectfolder", "&Select Folder"};
  ui::ListView LvW{*this, "LvW"};  // hidden; the running programs
  ui::CommandButton cmdBack{*this, "cmdBack", "< &Back"};
  ui::CommandButton cmdNext{*this, "cmdNext", "&Next >"};
  ui::CommandButton cmdCancel{*this, "cmdCancel", "&Cancel"};

  void Load() override;
  // Reads the chosen backup. False if it can't be read.
  bool TakeOver() override { return LoadValues(); }
  // True when no selected mail program runs.
  bool MayBeUsed() override { return CheckIfOpen(); }

  // Entry from frmROne: reads the backup's settings and builds the tree. False if the settings
  // can't be taken out of the archive: the user was told, and gRestoreFileBad is set.
  bool LoadValues();
  // Takes the settings file `member` out of the archive. On failure the user is told and
  // gRestoreFileBad is set.
  bool ExtractSettingsFile(const std::string& member, const std::string& archive);
  // Clears the tree and fills it from the settings file of a backup of this base name.
  void LoadRestoreTree(const std::string& base);

  // True when no selected mail program runs; tells the user which one does.
  bool CheckIfOpen();
  // The rules on the default profile and on Account Settings.
  bool CheckProfileRules();
  // The commit: the ticked nodes become the session's tables.
  void savedetails();
  // Lists the running programs in LvW.
  void processeslisting();
  // The id of a listed program, without regard to case, else 0.
  std::uint32_t FindProcessId(const std::string& image);
  // Asks the user to close a program whose window stands open. True if there is none.
  bool CloseApplication(const std::string& window_title);
  // The last folder of a path: "b" of "a\b\c".
  static std::string extractLastFolder(const std::string& path);

  void Label32_Click();
  void Command2_Click();
  void tvwMain_NodeCheck(ui::TreeNode* node);
  void tvwMain_NodeClick(ui::TreeNode* node);
  bool tvwMain_KeyDown(int code, int modifiers);
  void txtpath_Change();
  void cmdselectfolder_Click();
  void cmdNext_Click();
  void cmdBack_Click();
  void cmdCancel_Click();

  // Where the settings file of this run lies, or is to lie.
  std::string SettingsFilePath(const std::string& base) const;
  const std::vector<SettingsItem>& items() const { return items_; }

 private:
  void PlaceControls();
  void ConnectHandlers();
  std::string StagingFolder() const;
  zip::Result UnpackSettings(const std::string& member, const std::string& archive);
  // Says why the backup cannot be used and goes back to the page before.
  void Refuse(zip::Result result);
  // The same where the fault is the restore folder's: it cannot be made or written.
  void RefuseFolder(const std::string& folder);
  void TellFolder(const std::string& folder);
  bool ReadTable(const std::string& archive);
  void TellFirstName(const std::string& archive);
  void ReadOptions(const SettingsFile& settings);
  bool AnythingTicked() const;
  // What an earlier restore of this backup did not bring back.
  void TickAgain();

  std::vector<SettingsItem> items_;
  std::shared_ptr<const MemberTable> table_;  // of the present backup; null without one
};

}  // namespace quorvale
