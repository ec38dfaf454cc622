// "Select Items to Backup": the tree of all that can be backed up on this computer, and the commit
// of its ticks into the session.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/pages/wizard_page.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"
#include "platform/ui/tree_view.h"

namespace quorvale {

struct AccountEntry;
struct SettingsItem;

class FrmTwo : public WizardPage {
 public:
  static constexpr char kName[] = "FrmTwo";
  explicit FrmTwo(Application& app);
  void Load() override;
  // True if no mail program runs whose root is ticked.
  bool MayBeUsed() override { return !CheckIfOpen(); }
  // Shows the details of the selected node.
  void SentBack() override { tvwMain_Click(); }

  // The tree, built once in the life of the page. ----------------------------------------------

  // Clears the tree and fills it from the registry and the files of this computer.
  void FillExplorer();
  // Fills the tree while it is empty; in a run with raised rights ticks it again from the
  // hand-over file.
  void Label32_Click();
  // Ticks a built tree from a settings file and removes the hand-over file. Nothing happens if
  // `path` names no file.
  void LoadTreeState(const std::string& path);
  // Every node but the two roots for added folders and files.
  void selectall();
  void Deselectall();
  // Every node whose root is neither "Add Other Folders" nor "Add More Files", and no other: a
  // quick backup.
  void TickAll();

  // What these entries of an account name, and no other node: the node of their item where that is
  // what is missing, else the file or folder as one that the user adds.
  void TickAgain(const std::vector<AccountEntry>& entries);

  // The commit. --------------------------------------------------------------------------------

  // Freezes the ticked nodes into gBackupItemPaths and gBackupItemKeys and measures them. Works
  // without the page being shown. Always true.
  bool savedetails();
  // Bytes of all files and folders of the frozen selection; also in gSelectedFolderBytes.
  double sizeCount();
  // Free bytes of a drive ("C:") or network path into gFreeBytes; gDriveInfoFailed if it can't be
  // read.
  void getDriveSize(const std::string& drive);
  // Used bytes of a drive; 0 and gDriveInfoFailed if it can't be read.
  double OnlyDriveSize(const std::string& drive);
  // Refills LvW with the running processes.
  void processeslisting();
  // True, after a message, if a mail program runs whose root is ticked.
  bool CheckIfOpen();

  // Handlers. ----------------------------------------------------------------------------------

  void cmdNext_Click();
  void cmdBack_Click();
  void cmdCancel_Click();
  // Chooses the destination folder.
  void cmdselectfolder_Click();
  void txtpath_Change();
  void tvwMain_NodeCheck(ui::TreeNode* node);
  void tvwMain_NodeClick(ui::TreeNode* node);
  void tvwMain_Expand(ui::TreeNode* node);
  void tvwMain_Collapse(ui::TreeNode* node);
  void tvwMain_Click();
  void tvwMain_GotFocus();
  void tvwMain_LostFocus();
  void tvwMain_MouseUp();
  // True if the key is used up.
  bool tvwMain_KeyDown(int code, int modifiers);

  // Controls, in tab order. --------------------------------------------------------------------

  ui::PictureBox PicHeader{*this, "PicHeader", "BACKUP_HEADER"};
  ui::Label lblHeader{*this, "lblHeader", "Select Items to Backup"};
  ui::Label Label32{*this, "Label32", "Refresh List"};  // a link
  ui::TreeView tvwMain{*this, "tvwMain"};
  ui::Label Label5{*this, "Label5", "Details of the selected item"};
  ui::RichTextBox frmfor{*this, "frmfor"};    // the selected node's caption
  ui::RichTextBox lblDesc{*this, "lblDesc"};  // the selected node's key
  ui::Label lblpath{*this, "lblpath", "Backup &destination:"};
  ui::TextBox txtpath{*this, "txtpath"};
  ui::CommandButton cmdselectfolder{*this, "cmdselectfolder", "B&rowse..."};
  ui::CommandButton cmdBack{*this, "cmdBack"};
  ui::CommandButton cmdNext{*this, "cmdNext"};
  ui::CommandButton cmdCancel{*this, "cmdCancel"};
  ui::ListView LvW{*this, "LvW"};  // the running processes, never shown

 private:
  void PlaceControls();
  void ConnectHandlers();
  // selection_tree.cpp
  void CheckAllButAddRoots(bool checked);
  void ShowDetails();
  // The dialog that a root for added folders or files opens.
  void RunAddDialog(ui::TreeNode* root);
  void AddFolder(ui::TreeNode* root);
  void AddFile(ui::TreeNode* root);
  void AddChosen(ui::TreeNode* root, const std::string& path, const std::string& image);
  void AskRemove(ui::TreeNode* node);
  void TickProfileSettings(ui::TreeNode* node);
  void TickEntry(const AccountEntry& entry);
  void AddAgain(const std::string& path, bool is_folder);
  void TickFromItems(const std::string& root_key, const std::vector<SettingsItem>& items);
  void TickFromItem(ui::TreeNode* root, const SettingsItem& item);
  void AddItemAnew(ui::TreeNode* root, const SettingsItem& item);
  // The part of a node's key that stands for something outside of the tree.
  std::string CommittedKey(const ui::TreeNode& node) const;
  void CommitAndGoOn();
  // Step by step what cmdNext checks; false, after a message, where the page has to stay.
  bool CheckAccountSettings();
  bool MakeDestination(const std::string& path);
  bool CheckDestination(const std::string& path);
  bool CheckSpace(const std::string& path);
  // False if this copy must not go on: another one with raised rights does, or the user refused.
  bool RaiseRights();
  void ShowNextPage();

  // The selection that is being committed needs raised rights.
  bool selection_needs_rights_ = false;
};

// Two unsigned 32-bit halves as one number.
constexpr double CLargeInt(std::int32_t low, std::int32_t high) {
  constexpr double kTwoTo32 = 4294967296.0;
  const double low_part = low < 0 ? low + kTwoTo32 : low;
  const double high_part = high < 0 ? high + kTwoTo32 : high;
  return high_part * kTwoTo32 + low_part;
}

}  // namespace quorvale
