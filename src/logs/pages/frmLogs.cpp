#include "logs/pages/frmLogs.h"

#include <algorithm>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "core/pages/account_table.h"
#include "core/pages/account_window.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
#include "core/program/full_text.h"

namespace quorvale {
namespace {

constexpr char kByteOrderMark[] = "\xFF\xFE";

// One line of a log: `<Name>value</Name>` reads "Name: value".
std::string RenderLine(std::string line) {
  if (ContainsNoCase(line, "?xml")) return "-------- Log Starts ---------";
  const size_t closing = line.find("</");
  if (closing != std::string::npos) line.resize(closing + 1);
  return ReplaceAll(ReplaceAll(line, "<", ""), ">", ": ");
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines = Split(text, "\n");
  for (std::string& line : lines) {
    if (line.ends_with('\r')) line.pop_back();
  }
  // The end of the last line begins no further one.
  if (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

// The names of the files in a folder as a file list shows them: by name, without the hidden ones.
std::vector<std::string> ListedFiles(Files& files, const std::string& folder) {
  constexpr std::uint32_t kUnlisted =
      file_attribute::kFolder | file_attribute::kHidden | file_attribute::kSystem;
  std::vector<std::string> names;
  for (const FileInfo& file : files.List(folder)) {
    if ((file.attributes & kUnlisted) == 0) names.push_back(file.name);
  }
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return FoldCase(a) < FoldCase(b); });
  return names;
}

}  // namespace

std::string RenderLogText(const std::string& text) {
  std::string rendered;
  for (const std::string& line : Lines(text)) {
    if (!rendered.empty()) rendered += "\r\n";
    rendered += RenderLine(line);
  }
  return rendered;
}

frmLogs::frmLogs(Application& app)
    : ui::Form(app.ui(), kName),
      PicHeader(*this, "PicHeader", "LOG_HEADER"),
      lblHeader(*this, "lblHeader", "View Log and Log Settings"),
      lblSubheading(*this, "lblSubheading", "View backup and restore logs"),
      Frame1(*this, "Frame1", "Log Settings and Details"),
      lblLogPath(*this, "lblLogPath", "Log File Path"),
      txtLog(*this, "txtLog"),
      File1(*this, "File1"),
      RichTextBox1(*this, "RichTextBox1"),
      cmdDelete(*this, "cmdDelete", "Delete"),
      cmdRefresh(*this, "cmdRefresh", "Refresh"),
      Command2(*this, "Command2", "Open Folder"),
      cmdBack(*this, "cmdBack"),
      cmdCancel(*this, "cmdCancel"),
      app_(app) {
  PlaceControls();
  ConnectHandlers();
}

void frmLogs::PlaceControls() {
  using namespace page_layout;
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceSubheading(&lblSubheading);
  Frame1.bounds = {kContentLeft, kContentTop + kRowHeight, kContentWidth,
                   kContentHeight - kRowHeight};
  lblLogPath.bounds = {12, 22, 90, kLineHeight};
  txtLog.bounds = {106, 22, 442, kLineHeight};
  txtLog.read_only = true;
  File1.bounds = {12, 52, 250, 198};
  RichTextBox1.bounds = {270, 52, 278, 198};
  cmdDelete.bounds = {12, 260, 84, 26};
  cmdRefresh.bounds = {104, 260, 84, 26};
  Command2.bounds = {270, 260, 100, 26};
  for (ui::Control* control : std::initializer_list<ui::Control*>{
           &lblLogPath, &txtLog, &File1, &RichTextBox1, &cmdDelete, &cmdRefresh, &Command2}) {
    control->container = &Frame1;
  }
  SetTabOrder({&lblLogPath, &txtLog, &File1, &RichTextBox1, &cmdDelete, &cmdRefresh, &Command2});
  PlaceButtons(&cmdBack, nullptr, &cmdCancel);
  cmdBack.bounds = {kNextLeft, kButtonTop, kButtonWidth, kButtonHeight};
}

void frmLogs::ConnectHandlers() {
  File1.on_click = [this] { File1_Click(); };
  File1.on_double_click = [this] { File1_DblClick(); };
  cmdDelete.on_click = [this] { cmdDelete_Click(); };
  cmdRefresh.on_click = [this] { RefreshLogList(); };
  Command2.on_click = [this] { Command2_Click(); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
}

void frmLogs::Load() {
  page_layout::HostPage(app_, *this);
  RefreshLogList();
}

void frmLogs::Activate() { RefreshLogList(); }

void frmLogs::RenderLog(const std::string& path) {
  const std::optional<std::string> bytes = app_.files().ReadWhole(path);
  if (!bytes) {
    if (app_.files().FileExists(path)) RichTextBox1.text = "";  // there, but unreadable
    return;
  }
  const bool is_utf16 = bytes->starts_with(kByteOrderMark);
  RichTextBox1.text =
      RenderLogText(is_utf16 ? Utf16BytesToUtf8(bytes->substr(2)) : FullTextOf(app_, path, *bytes));
}

void frmLogs::RefreshLogList() {
  File1.Clear();
  txtLog.text = "";
  MakeDirectoryPath(app_, LogFolder(app_));
  folder_ = WithoutBackslash(LogFolder(app_));
  for (const std::string& name : ListedFiles(app_.platform().files, folder_)) File1.AddItem(name);
  first_account_ = File1.Count();
  accounts_ = KeptAccounts(app_);
  for (const std::string& path : accounts_) File1.AddItem(FileNameOf(path));
  txtLog.text = folder_;
  RichTextBox1.text = "";
  if (File1.Count() > 0) File1.list_index = 0;
}

std::string frmLogs::SelectedPath() const {
  if (AccountIsSelected()) return accounts_[static_cast<size_t>(File1.list_index - first_account_)];
  const std::string name = File1.SelectedText();
  return name.empty() ? "" : folder_ + "\\" + name;
}

bool frmLogs::AccountIsSelected() const { return File1.list_index >= first_account_; }

// A text of another kind in the folder of the accounts is shown as it stands.
void frmLogs::RenderAccount(const std::string& path) {
  Account account;
  if (!LoadAccount(app_, path, &account)) return RenderLog(path);
  RichTextBox1.text = AccountPage(account);
}

void frmLogs::File1_Click() {
  const std::string path = SelectedPath();
  if (path.empty()) return;
  if (AccountIsSelected()) {
    RenderAccount(path);
  } else {
    RenderLog(path);
  }
  txtLog.text = path;
}

void frmLogs::File1_DblClick() {
  const std::string path = SelectedPath();
  if (path.empty() || (AccountIsSelected() && OpenAccount(app_, path))) return;
  app_.platform().shell.Run("Notepad " + path, WindowStyle::kNormal);
}

void frmLogs::Command2_Click() { OpenFolder(app_, folder_); }

void frmLogs::cmdDelete_Click() {
  if (File1.Count() == 0) {
    app_.Inform("There is no log to delete");
    return;
  }
  const std::string name = File1.SelectedText();
  const int place = File1.list_index;
  if (!name.empty() &&
      app_.Ask("The operation can't be undone. Are you sure you want to delete \"" + name +
               "\"?")) {
    RemoveTextFile(app_, SelectedPath(), false);
  }
  RefreshLogList();
  // The one behind the deleted log, or the last one.
  if (File1.Count() > 0) File1.list_index = std::clamp(place, 0, File1.Count() - 1);
  app_.Pump();
}

void frmLogs::cmdBack_Click() { app_.Unload(kName); }

void frmLogs::cmdCancel_Click() {
  app_.page_host().LeavePages(StepSide::kLog);
  Hide();
}

}  // namespace quorvale
