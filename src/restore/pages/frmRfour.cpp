#include "restore/pages/frmRfour.h"

#include <cmath>
#include <cstdio>

#include "backup/format/archive_layout.h"
#include "backup/format/backup_file.h"
#include "backup/format/log_writer.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "restore/run/restore_places.h"

namespace quorvale {
namespace {

constexpr char kLineEnd[] = "\r\n";

std::string Rule() { return "   " + std::string(138, '-'); }

std::string CompressionLine(const std::string& level) {
  const char* word = level == "9"   ? "Maximum"
                     : level == "6" ? "Normal"
                     : level == "1" ? "Low"
                                    : "No Compression";
  return std::string("   Compression Type: ") + word;
}

// "11_14_2026_22_5_9": a name for a log of this moment.
std::string LogStamp(const LocalTime& time) {
  std::string stamp = std::to_string(time.month);
  for (int part : {time.day, time.year, time.hour, time.minute, time.second}) {
    stamp += "_" + std::to_string(part);
  }
  return stamp;
}

}  // namespace

frmRfour::frmRfour(Application& app) : WizardPage(app, kName, PageRole::kRestoreReview) {
  RichTextBox1.wraps = false;  // a rule is longer than a line of the box
  PlaceControls();
  ConnectHandlers();
}

void frmRfour::ConnectHandlers() {
  cmdNext.on_click = [this] { cmdNext_Click(); };
  cmdBack.on_click = [this] { cmdBack_Click(); };
  cmdCancel.on_click = [this] { cmdCancel_Click(); };
  OpenHelpOnF1(app_, *this, "Restoration.htm");
}

void frmRfour::Load() { page_layout::HostPage(app_, *this); }

void frmRfour::PlaceControls() {
  using namespace page_layout;
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(&cmdBack, &cmdNext, &cmdCancel);
  lblReview.bounds = ContentRow(0);
  lblHint.bounds = ContentRow(1);
  lblChange.bounds = ContentRow(2);
  RichTextBox1.bounds = ContentRow(3, kContentLeft, kContentWidth, 7 * kRowHeight - 5);
  optRestore.bounds = ContentRow(10);
  optDefault.bounds = ContentRow(11);
  RichTextBox1.tab_index = 0;
  optRestore.tab_index = 1;
  optDefault.tab_index = 2;
}

bool frmRfour::TakeOver() {
  LoadDetails();
  cmdNext.enabled = true;
  return true;
}

void frmRfour::LoadDetails() {
  const Session& session = app_.session();
  std::vector<std::string> lines = {
      "   MAIN PROCESS: " + session.gRestoreProcessName + " (" + session.gRestoreProcessDesc + ")",
      Rule(),
      "   DATE/TIME: " + HistoryStamp(app_, app_.platform().system.Now()),
      Rule(),
      "RESTORE FOLDER: " + session.gRestoreFolder,
      Rule(),
      "SELECTED ITEMS FOR RESTORE: ",
  };
  for (const RestoreItem& item : session.restore_items) lines.push_back("   " + item.path);
  for (const std::string& line :
       {Rule(), std::string("ADVANCED SETTINGS: "), Rule(),
        "   Log Details: " + session.gRestoreLogDetails,
        "   Use Compression: " + session.gRestoreUseCompression,
        CompressionLine(session.gRestoreSelfExtracting),
        "   Protect Archive with Password: " + session.gRestoreProtectWithPassword,
        std::string("   Password: "), std::string("   Backup Settings file:")}) {
    lines.push_back(line);
  }
  std::string text;
  for (const std::string& line : lines) text += line + kLineEnd;
  RichTextBox1.text = text;
}

void frmRfour::ReadArchive() {
  const std::string path = app_.session().gRestoreFilePath;
  const std::optional<FileInfo> file = app_.platform().files.Stat(path);
  const std::string& first_name = app_.session().backup_stem;
  prefix_ = first_name.empty() ? WithoutLastFour(file ? file->name : FileNameOf(path)) : first_name;
  BackupFile backup(app_, path, app_.session().gRestorePassword);
  members_.Read(backup);
}

double frmRfour::SizeOfItem(const std::string& pattern) { return members_.names().Size(pattern); }

bool frmRfour::IsThere(const std::string& target) const {
  Files& files = app_.platform().files;
  if (!IsNetworkPath(target)) return files.DriveExists(target.substr(0, 2));
  const std::optional<DiskSpace> space = files.Space(DriveOfTarget(target));
  return space && space->free_bytes > 0;
}

std::string frmRfour::TargetOf(const RestoreItem& item) const {
  const Session& session = app_.session();
  const std::string& path = item.path;
  Shell& shell = app_.platform().shell;
  if (path.starts_with("Added ")) {
    const std::string& key = item.origin.key;
    // What cannot go home stays in the restore folder.
    return IsThere(key) ? key : FolderForLeftItems(app_, session);
  }
  if (path.starts_with("Other Files\\My Desktop Files")) {
    return shell.SpecialFolder(special_folder::kDesktop);
  }
  if (path.starts_with("Other Files")) return shell.SpecialFolder(special_folder::kDocuments);
  return app_.platform().system.Environment("appdata");
}

std::string frmRfour::DriveOfTarget(const std::string& path) {
  if (!IsNetworkPath(path)) return path.substr(0, 3);
  const size_t server = path.find('\\', 2);
  if (server == std::string::npos) return path;
  return path.substr(0, path.find('\\', server + 1));
}

void frmRfour::AddNeed(const std::string& target, double bytes) {
  const auto [drive, added] = drives_.emplace(FoldCase(DriveOfTarget(target)), needs_.size());
  if (added) needs_.push_back({target, 0});
  needs_[drive->second].lRestoreFilesize += bytes;
}

bool frmRfour::ComputeRestoreSpace() {
  const Session& session = app_.session();
  needs_.clear();
  drives_.clear();
  ReadArchive();
  for (const RestoreItem& item : session.restore_items) {
    if (!Contains(item.path, "\\")) continue;
    AddNeed(TargetOf(item), members_.Size(item.origin, prefix_, session.gOSName));
  }
  std::string report =
      "Insufficient disk space\r\nRestoration drive(s): Space Informations\r\n\r\n";
  report += "Drive Name\tAvailable Space\tRequired Space\r\n" + std::string(75, '-') + kLineEnd;
  bool is_short = false;
  for (const QVLRestoreClass& need : needs_) {
    const std::string drive = DriveOfTarget(need.lstrRestorePath);
    const std::optional<DiskSpace> space = app_.platform().files.Space(DriveOf(drive));
    const double free_bytes = space ? static_cast<double>(space->free_bytes) : 0;
    if (need.lRestoreFilesize <= free_bytes) continue;
    is_short = true;
    report += drive.substr(0, 1) + "\t" + FormatSize(free_bytes) + "\t" +
              FormatSize(need.lRestoreFilesize) + kLineEnd;
  }
  if (!is_short) return true;
  report += std::string(75, '-') + kLineEnd;
  app_.Inform(report + "Please customize items selected for restoration process");
  return false;
}

std::string frmRfour::FormatSize(double bytes) {
  constexpr double kStep = 1024;
  const char* unit = " Bytes";
  double number = bytes;
  for (const char* next : {" KB", " MB", " GB"}) {
    if (number < kStep) break;
    number /= kStep;
    unit = next;
  }
  char text[64];
  std::snprintf(text, sizeof text, "%.3f", number);
  return text + std::string(unit);
}

void frmRfour::WriteRestoreSettingsLog(const std::string& path) { WriteRestoreLog(app_, path); }

void frmRfour::EnableButtons(bool enabled) {
  cmdNext.enabled = enabled;
  cmdBack.enabled = enabled;
  cmdCancel.enabled = enabled;
}

void frmRfour::cmdNext_Click() {
  if (!PageOf(PageRole::kRestoreItems).MayBeUsed()) return;
  EnableButtons(false);
  Session& session = app_.session();
  session.gRestoreToDefaultFolders = optDefault.value;
  if (!ComputeRestoreSpace()) return EnableButtons(true);
  app_.files().MakeFolderChain(WithoutBackslash(LogFolder(app_)));
  if (session.gRestoreLogDetails == "True") {
    WriteRestoreSettingsLog(LogFolder(app_) + "Settings_RST_" +
                            WithoutLastFour(FileNameOf(session.gRestoreFilePath)) + "_" +
                            LogStamp(app_.platform().system.Now()) + ".xml");
  }
  GoOnTo(PageRole::kRestoreRun);
  EnableButtons(true);
}

void frmRfour::cmdBack_Click() { Back(); }

void frmRfour::cmdCancel_Click() { Cancel(); }

}  // namespace quorvale
