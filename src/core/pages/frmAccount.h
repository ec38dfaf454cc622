// The window that shows the account of a run: one sentence, and what is missing, with the reasons.
// It stands beside whatever else goes on, and waits for nothing.
#pragma once

#include <string>
#include <vector>

#include "core/pages/account_table.h"
#include "core/pages/application.h"
#include "platform/ui/controls.h"

namespace quorvale {

class frmAccount : public ui::Form {
 public:
  static constexpr char kName[] = "frmAccount";
  explicit frmAccount(Application& app);

  // The main window keeps the Tab key to itself while it is behind; here it moves on.
  void Activate() override;

  // Shows an account in place of the one before.
  void Use(const Account& account);

  ui::Label lblSentence{*this, "lblSentence"};
  ui::Label lblRun{*this, "lblRun"};
  ui::ListView lvwEntries{*this, "lvwEntries"};
  ui::Label lblEntry{*this, "lblEntry"};  // the selected row in full, or how a button fared
  ui::Label lblSort{*this, "lblSort", "&Sort by"};
  ui::ComboBox cboSort{*this, "cboSort"};
  ui::CommandButton cmdOpen{*this, "cmdOpen", "&Open folder"};
  ui::CommandButton cmdCopy{*this, "cmdCopy", "&Copy list"};
  ui::CommandButton cmdAgain{*this, "cmdAgain", "&Try these again"};
  ui::CommandButton cmdClose{*this, "cmdClose", "Close"};

  void cboSort_Click();
  // Sorts by it; by the one that is sorted by already, the other way round.
  void lvwEntries_ColumnClick(int column);
  void lvwEntries_Selected();
  // The folder of the selected entry, else that of the backup file.
  void cmdOpen_Click();
  void cmdCopy_Click();
  void cmdAgain_Click();
  void cmdClose_Click();

 private:
  void PlaceControls();
  void PlaceButtonRow(int top);
  void ConnectHandlers();
  void ShowRows();
  // Null if no row is selected.
  const AccountEntry* SelectedEntry() const;
  // The first of the folders that is there; "" if none is.
  std::string FolderToOpen() const;
  std::vector<std::string> FoldersOf(const AccountEntry& entry) const;

  Application& app_;
  Account account_;
  std::vector<AccountRow> rows_;
  bool downwards_ = false;
};

}  // namespace quorvale
