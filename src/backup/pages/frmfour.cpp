#include "backup/pages/frmfour.h"

#include <algorithm>
#include <cstdio>

#include "backup/format/log_writer.h"
#include "backup/format/settings_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/pages/selection_space.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
#include "core/program/command_words.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

constexpr char kLineEnd[] = "\r\n";

// The grid's columns and the width of a character, in twips.
constexpr int kRootColumn = 2000;
constexpr int kPathColumn = 4900;
constexpr int kCharacterTwips = 105;
constexpr int kColumnReserve = 400;

constexpr ui::Color kOddRow = ui::Rgb(231, 231, 231);
constexpr ui::Color kEvenRow = ui::Rgb(255, 255, 255);
constexpr ui::Color kAddedRow = ui::Rgb(239, 239, 239);
constexpr ui::Color kAddedFoldersHead = ui::Rgb(255, 233, 131);
constexpr ui::Color kAddedFilesHead = ui::Rgb(252, 240, 212);
constexpr ui::Color kHead = ui::Rgb(210, 228, 249);
constexpr ui::Color kGreen = ui::Rgb(0, 128, 0);
constexpr ui::Color kRed = ui::Rgb(255, 0, 0);

// The roots whose name a row leaves out are looked for in the first characters of a path.
constexpr size_t kRootCharacters = 17;
constexpr ProductId kUnnamedRoots[] = {ProductId::kOtherFiles, ProductId::kAddedFolders,
                                       ProductId::kAddedFiles};
// Another name of the root for added folders, cut as if it were that one.
constexpr char kShortAddedFolders[] = "Add Folders";

std::string RowText(const std::string& path) {
  const std::string start = path.substr(0, kRootCharacters);
  const auto behind = [&path](ProductId id) {
    const size_t from = PathPrefix(id).size();
    return from < path.size() ? path.substr(from) : "";
  };
  for (const ProductId id : kUnnamedRoots) {
    if (Contains(start, ProductOf(id).caption)) return behind(id);
  }
  return Contains(start, kShortAddedFolders) ? behind(ProductId::kAddedFolders) : path;
}

bool IsAdded(const std::string& path) {
  return path.starts_with(ProductOf(ProductId::kAddedFolders).caption) ||
         path.starts_with(ProductOf(ProductId::kAddedFiles).caption);
}

ui::Grid::Row HeadRow(const std::string& path) {
  if (path == ProductOf(ProductId::kAddedFolders).caption) {
    return {{"Other Folders", ""}, kAddedFoldersHead, true};
  }
  if (path == ProductOf(ProductId::kAddedFiles).caption) {
    return {{"Other Files", ""}, kAddedFilesHead, true};
  }
  return {{path, ""}, kHead, true};
}

// "22:05:09 11-14-2026".
std::string ReviewMoment(const LocalTime& time) {
  char text[40];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d %02d-%02d-%04d", time.hour, time.minute,
                time.second, time.month, time.day, time.year);
  return text;
}

}  // namespace

frmfour::frmfour(Application& app) : WizardPage(app, kName, PageRole::kBackupReview) {
  cmdNext.enabled = false;  // until the page is filled
  Ms.column_widths = {kRootColumn, kPathColumn};
  PlaceControls();
  ConnectHandlers();
}

void frmfour::PlaceControls() {
  using namespace page_layout;
  constexpr int kHalf = 148;
  lblHeader.fore_color = kHeaderColor;
  RichTextBox1.bounds = ui::Bounds{kContentLeft, kContentTop, kContentWidth, kHalf};
  Ms.bounds = ui::Bounds{kContentLeft, kContentTop + kHalf + 6, kContentWidth, kHalf - 24};
  lblnoitem.bounds =
      ui::Bounds{kContentLeft, kContentBottom - kLineHeight, kContentWidth, kLineHeight};
  lblRefused.bounds =
      ui::Bounds{kContentLeft, kContentBottom - 2 * kLineHeight, kContentWidth, kLineHeight};
  lblRefused.fore_color = kRed;
  RichTextBox1.tab_index = 1;
  Ms.tab_index = 2;
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(&cmdBack, &cmdNext, &cmdCancel);
}

void frmfour::ConnectHandlers() {
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  Timer2.on_timer = [this] { Timer2_Timer(); };
  OpenHelpOnF1(app_, *this, "qvlBackup.htm");
}

void frmfour::Load() { page_layout::HostPage(app_, *this); }

bool frmfour::SomethingSelected() const {
  const std::vector<std::string>& paths = app_.session().gBackupItemPaths;
  // A selected item comes with the nodes above it, and an empty entry may stand at the end.
  return paths.size() > 1 &&
         std::any_of(paths.begin(), paths.end(), [](const auto& path) { return !path.empty(); });
}

bool frmfour::TakeOver() {
  FillReview();
  return !run_started_;
}

void frmfour::RunOver() { cmdNext.enabled = false; }

void frmfour::FillReview() {
  RichTextBox1.text = ReviewText();
  FillGrid();
  const bool selected = SomethingSelected();
  lblnoitem.caption = selected ? "Press next to begin Backup" : "No items selected for backup";
  lblnoitem.fore_color = selected ? kGreen : kRed;
  lblRefused.caption = "";
  cmdNext.enabled = selected;
  if (selected && FoldCase(app_.CommandLine()) == kAutoWord) cmdNext.Click();
}

std::string frmfour::ReviewText() {
  const Session& session = app_.session();
  const std::string separator = "   " + std::string(100, '-');
  std::vector<std::string> lines = {
      "   MAIN PROCESS: " + session.gBackupProcessName + " (" + session.gBackupProcessDesc + ")",
      "   DATE/TIME: " + ReviewMoment(app_.platform().system.Now()),
      separator,
      "BACKUP FOLDER: " + session.gBackupFolder,
      separator,
      "SELECTED ITEMS FOR BACKUP: ",
  };
  lines.insert(lines.end(), session.gBackupItemPaths.begin(), session.gBackupItemPaths.end());
  for (const std::string& line :
       {separator, std::string("ADVANCED SETTINGS: "), "   Log Details: " + session.gLogDetails,
        "   Use Compression: " + session.gUseCompression,
        "   Compression Type: " + session.gCompressionLevel,
        "   Protect Archive with Password: " + session.gProtectWithPassword,
        "   Password: " + std::string(CountCharacters(session.gArchivePassword), '*'),
        "   Backup Settings file:" + session.gBackupFileName}) {
    lines.push_back(line);
  }
  std::string text;
  for (const std::string& line : lines) text += line + kLineEnd;
  return text;
}

void frmfour::FillGrid() {
  Ms.Clear();
  size_t longest = 0;
  bool odd = true;
  for (const std::string& path : app_.session().gBackupItemPaths) {
    if (path.empty()) continue;
    if (Contains(path, "\\")) {
      const ui::Color tint = IsAdded(path) ? kAddedRow : odd ? kOddRow : kEvenRow;
      Ms.AddRow({{"", RowText(path)}, tint, false});
      longest = std::max(longest, CountCharacters(path));
    } else {
      Ms.AddRow(HeadRow(path));
    }
    odd = !odd;
  }
  const int needed = static_cast<int>(longest) * kCharacterTwips - kColumnReserve;
  Ms.SetColumnWidth(1, std::max(kPathColumn, needed));
}

void frmfour::cmdNext_Click() {
  if (!PageOf(PageRole::kBackupItems).MayBeUsed()) return;
  if (!FolderIsThere()) return;
  if (!SpaceSuffices()) return SendBackTo(PageRole::kBackupItems);
  run_started_ = true;
  cmdNext.enabled = false;
  app_.page_host().EnableSideButtons(false);
  WriteFiles();
  GoOnTo(PageRole::kBackupRun);
}

// No box tells of it: the page does, and the account, since nobody may be there.
bool frmfour::FolderIsThere() {
  const std::string folder = Trim(app_.session().gBackupFolder);
  if (ReadFreeSpace(app_, DriveOf(folder))) {
    lblRefused.caption = "";
    return true;
  }
  // Where no folder could be chosen, the one of the settings was meant.
  const std::string meant = folder.empty() ? app_.settings().backup_folder() : folder;
  AccountFor(AccountReason::kNone, "the folder " + meant + " is not there");
  lblRefused.caption = app_.account().Sentence();
  return false;
}

void frmfour::AccountFor(AccountReason why, const std::string& detail) {
  const std::string moment = AccountMoment(app_);
  Account& account = app_.account();
  account.Begin(AccountRun::kBackup, WithoutLastFour(app_.session().gBackupFileName), moment);
  account.End(AccountEnd::kFailed, moment, why, detail);
  KeepAccount(app_);
}

bool frmfour::SpaceSuffices() {
  const double needed = SizeOfSelection(app_) / 1024;
  if (app_.session().gFreeBytes / 1024 >= needed) return true;
  AccountFor(AccountReason::kNoRoom, app_.session().gBackupFolder);
  app_.Inform(
      "There is not sufficient space on disk. Please customize backup items or change backup "
      "location");
  return false;
}

void frmfour::WriteFiles() {
  Session& session = app_.session();
  session.gUniqueSuffix = UniqueBackupName(app_, app_.settings().backup_folder());
  MakeDirectoryPath(app_, session.gBackupBasePath + "\\");
  WriteBackupSettings(app_, StagedSettingsPath(session.gBackupBasePath, app_));
  MakeDirectoryPath(app_, LogFolder(app_));
  // The run looks whether it is there.
  if (session.gLogDetails == "True") WriteReviewLog(app_, BackupLogPath(app_));
}

void frmfour::Timer2_Timer() {
  Timer2.enabled = false;
  cmdNext.Click();
}

void frmfour::cmdBack_Click() { Back(); }

void frmfour::cmdCancel_Click() { Cancel(); }

}  // namespace quorvale
