#include "core/pages/frmAccount.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

using page_layout::kButtonGap;
using page_layout::kButtonHeight;
using page_layout::kButtonWidth;
using page_layout::kLineHeight;

constexpr int kWidth = 720;
constexpr int kMargin = 16;
constexpr int kInside = kWidth - 2 * kMargin;
constexpr int kRunTop = 52;
constexpr int kListTop = 78;
constexpr int kListHeight = 216;
constexpr int kEntryTop = kListTop + kListHeight + 6;
constexpr int kEntryHeight = 2 * kLineHeight;
constexpr int kButtonsTop = kEntryTop + kEntryHeight + 8;
// Where there is no list to show.
constexpr int kButtonsTopAlone = kListTop + kLineHeight + 8;
constexpr int kWideButton = 110;

// As a label shows it letter for letter.
std::string Plain(const std::string& text) { return ReplaceAll(text, "&", "&&"); }

const char* CaptionOf(AccountRun run) {
  if (run == AccountRun::kBackup) return "Quorvale - Result of the backup";
  if (run == AccountRun::kRestore) return "Quorvale - Result of the restore";
  return "Quorvale - Result of the schedule";
}

}  // namespace

frmAccount::frmAccount(Application& app) : ui::Form(app.ui(), kName), app_(app) {
  lvwEntries.columns.assign(kAccountHeads.begin(), kAccountHeads.end());
  lvwEntries.column_percents = {42, 26, 18, 14};
  for (const char* head : kAccountHeads) cboSort.AddItem(head);
  PlaceControls();
  ConnectHandlers();
}

void frmAccount::PlaceControls() {
  using namespace page_layout;
  SetCaption(kApplicationTitle);
  back_color = ui::Rgb(255, 255, 255);
  lblSentence.bounds = {kMargin, 12, kInside, 36};
  lblSentence.bold = true;
  lblSentence.font_size = 10;
  lblSentence.fore_color = kHeadingColor;
  lblRun.bounds = {kMargin, kRunTop, kInside, kLineHeight};
  lvwEntries.bounds = {kMargin, kListTop, kInside, kListHeight};
  lblEntry.bounds = {kMargin, kEntryTop, kInside, kEntryHeight};
  cmdClose.is_default = true;
  cmdClose.is_cancel = true;
  SetTabOrder({&lvwEntries, &lblSort, &cboSort, &cmdOpen, &cmdCopy, &cmdAgain, &cmdClose});
  PlaceButtonRow(kButtonsTop);
}

void frmAccount::PlaceButtonRow(int top) {
  int left = kMargin;
  const auto place = [&](ui::Control& control, int width, int gap) {
    control.bounds = {left, top, width, kButtonHeight};
    left += width + gap;
  };
  lblSort.bounds = {left, top + 4, 48, kLineHeight};
  cboSort.bounds = {left + 50, top + 2, 90, kLineHeight};
  left += 50 + 90 + 2 * kButtonGap;
  place(cmdOpen, kWideButton, kButtonGap);
  place(cmdCopy, kWideButton, kButtonGap);
  place(cmdAgain, kWideButton + 10, kButtonGap);
  cmdClose.bounds = {kWidth - kMargin - kButtonWidth, top, kButtonWidth, kButtonHeight};
  SetSize(kWidth, top + kButtonHeight + 14);
}

void frmAccount::ConnectHandlers() {
  cboSort.on_click = [this] { cboSort_Click(); };
  lvwEntries.selected.on_change = [this] { lvwEntries_Selected(); };
  lvwEntries.on_column_click = [this](int column) { lvwEntries_ColumnClick(column); };
  lvwEntries.on_double_click = [this] { cmdOpen_Click(); };
  cmdOpen.on_click = [this] { cmdOpen_Click(); };
  cmdCopy.on_click = [this] { cmdCopy_Click(); };
  cmdAgain.on_click = [this] { cmdAgain_Click(); };
  cmdClose.on_click = [this] { cmdClose_Click(); };
  on_close_request = [this] { cmdClose_Click(); };
  OpenHelpOnF1(app_, *this, "qvlSettings.htm");
}

void frmAccount::Activate() { app_.ui().GuardKeyboard(false); }

// --- What is shown ------------------------------------------------------------------------------

void frmAccount::Use(const Account& account) {
  lvwEntries.Clear();  // its rows name entries of the account before
  account_ = account;
  rows_ = AccountRows(account_);
  SetCaption(CaptionOf(account_.run()));
  lblSentence.caption = Plain(account_.Sentence());
  lblRun.caption = Plain(AccountTitle(account_));
  cmdAgain.visible = !EntriesToTryAgain(account_).empty();
  const bool has_list = !rows_.empty();
  for (ui::Control* control :
       std::initializer_list<ui::Control*>{&lvwEntries, &lblSort, &cboSort, &cmdCopy}) {
    control->visible = has_list;
  }
  lblEntry.bounds = {kMargin, has_list ? kEntryTop : kListTop, kInside,
                     has_list ? kEntryHeight : kLineHeight};
  PlaceButtonRow(has_list ? kButtonsTop : kButtonsTopAlone);
  downwards_ = false;
  cboSort.list_index = 0;
  ShowRows();
}

void frmAccount::ShowRows() {
  const AccountEntry* selected = SelectedEntry();
  const auto column = static_cast<std::size_t>(std::max(cboSort.list_index.get(), 0));
  SortAccountRows(&rows_, column, downwards_);
  lvwEntries.Clear();
  for (const AccountRow& row : rows_) {
    lvwEntries.AddRow({std::to_string(row.entry), {row.cells.begin(), row.cells.end()}});
  }
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (&account_.entries()[rows_[i].entry] == selected) lvwEntries.selected = static_cast<int>(i);
  }
  lvwEntries_Selected();
}

void frmAccount::cboSort_Click() {
  downwards_ = false;
  ShowRows();
}

void frmAccount::lvwEntries_ColumnClick(int column) {
  if (column != cboSort.list_index.get()) {
    cboSort.list_index = column;  // which sorts
    return;
  }
  downwards_ = !downwards_;
  ShowRows();
}

const AccountEntry* frmAccount::SelectedEntry() const {
  const int place = lvwEntries.selected;
  if (place < 0 || static_cast<std::size_t>(place) >= lvwEntries.rows().size()) return nullptr;
  const std::string& key = lvwEntries.rows()[static_cast<std::size_t>(place)].key;
  return &account_.entries().at(std::stoul(key));
}

void frmAccount::lvwEntries_Selected() {
  const AccountEntry* entry = SelectedEntry();
  std::string text;
  if (entry != nullptr) {
    const auto row = static_cast<std::size_t>(lvwEntries.selected.get());
    const std::vector<std::string>& cells = lvwEntries.rows()[row].cells;
    text = cells[0] + (cells[1].empty() ? "" : ": " + cells[1]);
  }
  lblEntry.caption = Plain(text);
}

// --- The buttons --------------------------------------------------------------------------------

std::vector<std::string> frmAccount::FoldersOf(const AccountEntry& entry) const {
  std::vector<std::string> folders;
  for (const std::string& path : {entry.place, entry.source}) {
    if (path.empty()) continue;
    if (entry.thing != AccountThing::kFile && entry.thing != AccountThing::kFolder) continue;
    if (entry.thing == AccountThing::kFolder) folders.push_back(WithoutBackslash(path));
    folders.push_back(ParentFolder(WithoutBackslash(path)));
  }
  return folders;
}

std::string frmAccount::FolderToOpen() const {
  std::vector<std::string> folders;
  if (const AccountEntry* entry = SelectedEntry()) folders = FoldersOf(*entry);
  folders.push_back(ParentFolder(account_.archive));
  for (const std::string& folder : folders) {
    if (folder.empty()) continue;
    // The root of a drive is a folder with its "\" only.
    const std::string whole = folder.ends_with(':') ? WithBackslash(folder) : folder;
    if (app_.files().FolderExists(whole)) return whole;
  }
  return "";
}

void frmAccount::cmdOpen_Click() {
  const std::string folder = FolderToOpen();
  if (folder.empty()) {
    lblEntry.caption = "There is no folder to open.";
    return;
  }
  OpenFolder(app_, folder);
}

void frmAccount::cmdCopy_Click() {
  lblEntry.caption = app_.ui().SetClipboardText(AccountList(rows_))
                         ? "The list can be pasted into another program now."
                         : "The list could not be copied: another program keeps the clipboard.";
}

void frmAccount::cmdAgain_Click() {
  const Account account = account_;  // the window may go
  app_.pages().try_again(app_, account);
}

void frmAccount::cmdClose_Click() { app_.Unload(kName); }

}  // namespace quorvale
