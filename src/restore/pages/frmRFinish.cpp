#include "restore/pages/frmRFinish.h"

#include <algorithm>

#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "restore/pages/frmRTwo.h"
#include "restore/run/safe_target.h"

namespace quorvale {
namespace {

constexpr int kSettleMilliseconds = 100;
constexpr char kProgress[] = "Current Progress: ";

// What stands in a member's name behind the folder `prefix`, with its leading "\". The two agree
// but for the case of letters, whose bytes may differ in number: the parts are counted.
std::string TextBehind(const std::string& name, const std::string& prefix) {
  const auto parts = std::count(prefix.begin(), prefix.end(), '\\') + 1;
  size_t end = 0;
  for (auto part = parts; part > 0; --part) {
    end = name.find('\\', part == parts ? 0 : end + 1);
    if (end == std::string::npos) return "";
  }
  return name.substr(end);
}

}  // namespace

frmRFinish::frmRFinish(Application& app)
    : ui::Form(app.ui(), kName), XceedZip1(app.platform().files, app.platform().system), app_(app) {
  Timer1.on_timer = [this] { Timer1_Timer(); };
  cmdstop.on_click = [this] { cmdstop_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  XceedZip1.on_before_file = [this](zip::BeforeFile& file) { BeforeFile(file); };
  XceedZip1.on_file_progress = [this](int percent) {
    prbGlobalProgress.value = percent;
    app_.Pump();
  };
  XceedZip1.on_total_progress = [this](int percent) {
    if (XceedZip1.current_operation() == zip::Operation::kUnzipping) {
      prbGlobalProgress.value = percent;
    }
    app_.Pump();
  };
  OpenHelpOnF1(app_, *this, "Restoration.htm");
}

void frmRFinish::Load() {
  page_layout::HostPage(app_, *this);
  Arrange();
  cmdstop.enabled = false;
  cmdNext.enabled = false;
}

void frmRFinish::Unload() {
  if (!running_) return;
  gone_ = true;
  AbortFlag = true;
  XceedZip1.abort = true;
}

void frmRFinish::Arrange() {
  using namespace page_layout;
  PlaceHeader(&PicHeader, &lblHeading);
  lblCurrent.bounds = ContentRow(0);
  pbCurrent.bounds = ContentRow(1);
  LblFileinprocess.bounds = ContentRow(2);
  prbGlobalProgress.bounds = ContentRow(3);
  Frame3.bounds = ContentRow(4, kContentLeft, kContentWidth, 2 * kRowHeight);
  Label7.container = &Frame3;
  Label7.bounds = {8, 16, kContentWidth - 16, kLineHeight};
  LblRegData.bounds = ContentRow(6);
  lblStatus.bounds = ContentRow(7);
  RichTextBox1.bounds = ContentRow(8, kContentLeft, kContentWidth, 3 * kRowHeight);
  TxtROE.bounds = RichTextBox1.bounds;
  cmdstop.bounds = {kNextLeft, kButtonTop, kButtonWidth, kButtonHeight};
  cmdNext.bounds = {kCancelLeft, kButtonTop, kButtonWidth, kButtonHeight};
  for (ui::Control* hidden :
       {static_cast<ui::Control*>(&Frame3), static_cast<ui::Control*>(&LblRegData),
        static_cast<ui::Control*>(&RichTextBox1), static_cast<ui::Control*>(&TxtROE),
        static_cast<ui::Control*>(&prbGlobalProgress)}) {
    hidden->visible = false;
  }
  RichTextBox1.tab_index = 0;
  cmdstop.tab_index = kNextTab;
  cmdNext.tab_index = kCancelTab;
  cmdstop.is_cancel = true;
}

// The run. -------------------------------------------------------------------------------------

void frmRFinish::Timer1_Timer() {
  Timer1.enabled = false;
  chkRegistry();
  TAKEALLRESTORE();
}

void frmRFinish::chkRegistry() {
  app_.registry().SaveRegString(RegistryRoot::kClassesRoot, "regfile\\shell\\open\\command", "",
                                "regedit.exe \"%1\"");
}

bool frmRFinish::Stopped() const { return AbortFlag || app_.Ended(); }

void frmRFinish::TAKEALLRESTORE() {
  if (app_.session().gRestoreProcessName != "Main Restore") return;
  running_ = true;
  cmdstop.enabled = true;
  const bool finished = RunPhases();
  // The registry editor may still be reading what is staged.
  app_.registry_editor().WaitForRuns();
  PointIdentityAtStore();
  running_ = false;
  // Without a page nobody is left to tell; what was restored stays.
  if (gone_ || app_.Ended()) return;
  if (finished && !AbortFlag) {
    FinishRun();
  } else {
    AbortEnding();
  }
}

bool frmRFinish::RunPhases() {
  DisableInterface();
  pbCurrent.maximum = 100;
  pbCurrent.value = 10;
  lblCurrent.caption = std::string(kProgress) + "Extracting Items...";
  StagingRoot = WithBackslash(RestoreFolder());
  const std::string settings_file = app_.Get<frmRTwo>().SettingsFileTaken();
  if (!settings_file.empty()) staged_.push_back({settings_file, ParentFolder(settings_file)});
  if (app_.files().FileExists(app_.session().gRestoreFilePath)) PrepareArchive();
  if (Stopped()) return false;
  lblCurrent.caption = std::string(kProgress) + "Extracted Successfully";
  pbCurrent.value = 20;
  prbGlobalProgress.visible = false;
  if (IsVista(app_)) {
    RestoreWindowsMail();
    lblCurrent.caption = std::string(kProgress) + "Taking Restore of Windows Mail Items...";
    if (Stopped()) return false;
  }
  lblCurrent.caption = std::string(kProgress) + "Taking Restore of Outlook Express Items...";
  RestoreOutlookExpress();
  if (Stopped()) return false;
  pbCurrent.value = 30;
  lblCurrent.caption = std::string(kProgress) + "Taking Restore of Microsoft Outlook Items...";
  RestoreOutlook();
  if (Stopped()) return false;
  pbCurrent.value = 50;
  lblCurrent.caption = std::string(kProgress) + "Taking Restore of Internet Explorer Settings...";
  RestoreInternetExplorer();
  if (Stopped()) return false;
  pbCurrent.value = 60;
  lblCurrent.caption = std::string(kProgress) + "Taking Restore of Other Files...";
  Label7.visible = true;
  Frame3.visible = true;
  RestoreAddedFiles();
  if (Stopped()) return false;
  pbCurrent.value = 70;
  OFolder();
  if (Stopped()) return false;
  pbCurrent.value = 80;
  OtherFiles();
  if (Stopped()) return false;
  pbCurrent.value = 100;
  return true;
}

void frmRFinish::FinishRun() {
  const Session& session = app_.session();
  const bool declined = session.gNoRestoreFolder;
  const std::string staging = WithBackslash(session.gRestoreFolder) + BackupBaseName();
  SetLastRestore();
  Label7.visible = false;
  Frame3.visible = false;
  cmdstop.enabled = false;
  app_.ui().SetPointer(ui::Pointer::kDefault);
  lblCurrent.caption = std::string(kProgress) + "Restore Successfully Completed. ";
  prbGlobalProgress.visible = false;
  if (!LeftInRestoreFolder) {
    app_.Inform("Backup successfully restored");
  } else {
    app_.Inform(
        "Backup successfully restored, some files/folders could not be restored on to there "
        "default locations.\r\nFiles/foldes has been copied to location: " +
        WithBackslash(FolderForLeftItems()) + BackupBaseName());
  }
  app_.page_host().EnableSideButtons(true);
  cmdNext.enabled = true;
  PlayEndSound(app_);

  if (pbCurrent.value < 100) pbCurrent.value = 100;
  EnableInterface();
  if (LeftInRestoreFolder) return;
  if (!declined) DeleteRestoreFolder(staging);
  LeftInRestoreFolder = false;
}

void frmRFinish::AbortEnding() {
  lblCurrent.caption = std::string(kProgress) + "Stopping the Process. Deleting temperory Files ";
  // What is restored stays, and so does what is staged.
  app_.ui().SetPointer(ui::Pointer::kDefault);
  lblCurrent.caption = "Current Status: Restore Process Aborted by the User. ";
  Label7.visible = false;
  Frame3.visible = false;
  EnableInterface();
  AbortFlag = false;
}

void frmRFinish::DisableInterface() {
  prbGlobalProgress.visible = false;
  app_.ui().SetPointer(ui::Pointer::kHourglass);
}

void frmRFinish::EnableInterface() {
  cmdstop.enabled = false;
  cmdNext.enabled = true;
  if (!AbortFlag) {
    pbCurrent.value = 100;
    Label7.caption = "Done.";
  } else {
    Label7.visible = false;
    Label7.caption = "Aborted by user.";
  }
  app_.ui().SetPointer(ui::Pointer::kDefault);
  cmdNext_Click();
}

void frmRFinish::PrepareArchive() {
  Session& session = app_.session();
  app_.files().MakeFolderChain(RestoreFolder());
  app_.ui().SetPointer(ui::Pointer::kHourglass);
  prbGlobalProgress.visible = true;
  XceedZip1.archive_name = session.gRestoreFilePath;
  XceedZip1.password = session.gRestorePassword;
  XceedZip1.files_to_process.clear();
  XceedZip1.Test();
  if (Stopped()) return;
  XceedZip1.ResetDefaults();
  members_.Read(XceedZip1, session.gRestoreFilePath, session.gRestorePassword);
  XceedZip1.preserve_paths = true;
  XceedZip1.unzip_folder = RestoreFolder();
  XceedZip1.required_attributes = 0;
  XceedZip1.excluded_attributes = 0;
  app_.ui().SetPointer(ui::Pointer::kDefault);
}

void frmRFinish::SetLastRestore() {
  app_.registry().SaveRegString(RegistryRoot::kCurrentUser, kHistoryKey, "Last Restore",
                                HistoryStamp(app_, app_.platform().system.Now()));
}

bool frmRFinish::DeleteRestoreFolder(const std::string& folder) {
  const std::string path = WithoutBackslash(folder);
  Files& files = app_.platform().files;
  // Only what this run staged: the folder may hold files of an earlier run that the user wants.
  for (const Staged& staged : staged_) {
    files.RemoveFile(staged.path, true);
    std::string parent = ParentFolder(staged.path);
    while (parent.size() >= staged.top.size() &&
           files.RemoveFolder(parent, true) == FileStatus::kOk) {
      parent = ParentFolder(parent);
    }
  }
  staged_.clear();
  return !app_.files().FolderExists(path);
}

void frmRFinish::cmdstop_Click() {
  if (!app_.Ask("Are you sure, you want to stop the process?", ui::Icon::kInformation)) return;
  // The run may have ended while the question stood.
  if (!running_) return;
  Label7.caption = "Restore Process Aborted by user";
  app_.Inform("Restore Process Aborted by User");
  AbortFlag = true;
  app_.session().gStopRequested = true;
  XceedZip1.abort = true;
}

void frmRFinish::cmdNext_Click() {
  Session& session = app_.session();
  Label7.visible = false;
  Frame3.visible = false;
  session.gStopRequested = false;
  if (!session.gNoRestoreFolder && !AbortFlag && LeftInRestoreFolder) {
    const std::string folder = WithoutBackslash(app_.settings().restore_folder());
    app_.platform().shell.Run("Explorer " + folder + "\\" + BackupBaseName(), WindowStyle::kNormal);
  }
  PageHost& welcome = app_.page_host();
  welcome.EnableSideButtons(true);
  session.gDefaultProfileSkipped = false;
  session.gOutlookProfileEdited = false;
  if (session.gNoRestoreFolder) {
    session.gNoRestoreFolder = false;
    const std::string folder = TempXmlFolder(app_);
    if (app_.files().FileExists(folder + "\\" + BackupBaseName() + "\\" + BackupBaseName() +
                                ".xml")) {
      app_.registry_editor().WaitForRuns();
      app_.files().KillFolder(folder);
    }
  }
  welcome.HomePage();
}

// Names and places. ----------------------------------------------------------------------------

std::string frmRFinish::BackupBaseName() const {
  return WithoutExtension(FileNameOf(app_.session().gRestoreFilePath));
}

std::string frmRFinish::RestoreFolder() const {
  if (app_.session().gNoRestoreFolder) return TempXmlFolder(app_);
  return WithoutBackslash(app_.Get<frmRTwo>().txtpath.text);
}

std::string frmRFinish::FolderForLeftItems() const {
  if (app_.session().gNoRestoreFolder) return app_.session().gAppDataPath + "\\Restore";
  return WithoutBackslash(app_.session().gRestoreFolder);
}

std::string frmRFinish::MemberName(const std::string& entry) const {
  return BackupBaseName() + "\\" + entry;
}

std::string frmRFinish::StagedName(const std::string& entry) const {
  return StagingRoot + MemberName(entry);
}

ItemEntry frmRFinish::EntryOf(const RestoreOrigin& origin) const {
  return EntryOfItem(origin.path, origin.key, app_.session().gOSName);
}

const RestoreOrigin& frmRFinish::OriginOf(const RestoreRow& row) const {
  return app_.session().gRestoreItemOrigins.at(row.place);
}

void frmRFinish::RestoreItems(const std::string& root, const std::string& product,
                              void (frmRFinish::*restore)(size_t row)) {
  const Session& session = app_.session();
  for (size_t row = 1; row < session.gRestoreItemPaths.size(); ++row) {
    const std::string& path = session.gRestoreItemPaths[row];
    if (!path.starts_with(root)) continue;
    RichTextBox1.visible = true;
    TxtROE.visible = false;
    RichTextBox1.text = path;
    if (!BeginItem("Current Progress: Restoration of " + product + " Items..." + path)) return;
    (this->*restore)(row);
  }
}

bool frmRFinish::BeginItem(const std::string& status) {
  app_.Pump();
  if (Stopped()) return false;
  lblCurrent.caption = status;
  return true;
}

// Extraction. ----------------------------------------------------------------------------------

bool frmRFinish::HoldsItem(const RestoreOrigin& origin, const ItemEntry& entry) {
  const size_t count = members_.Count(MemberName(entry.name));
  wanted_ = 0;
  if (count == 0) return false;
  if (count == 1) return origin.occurrence + 1 == origin.of;  // the last one of a name won
  wanted_ = origin.occurrence;
  return origin.occurrence < count;
}

bool frmRFinish::ExtractFile(const RestoreOrigin& origin, const std::string& target) {
  const ItemEntry entry = EntryOf(origin);
  if (!IsSafeBelow(entry.name) || !IsSafeTarget(target) || !HoldsItem(origin, entry)) return false;
  app_.files().MakeFolderChain(ParentFolder(target));
  ExtractTarget = target;
  prefix_.clear();
  const zip::Result result = Extract(MemberName(entry.name));
  return written_ == 1 && (result == zip::Result::kDone || result == zip::Result::kWarnings);
}

bool frmRFinish::ExtractFolder(const std::string& entry, const std::string& target) {
  const std::string member = MemberName(entry);
  if (!IsSafeBelow(entry) || !IsSafeTarget(target) || !members_.Has(member + "\\*")) return false;
  ExtractTarget = WithoutBackslash(target);
  prefix_ = member;
  wanted_ = 0;
  Extract(member + "\\*");
  return written_ > 0;
}

zip::Result frmRFinish::Extract(const std::string& member) {
  XceedZip1.password = app_.session().gRestorePassword;
  XceedZip1.files_to_process = {member};
  XceedZip1.skip_existing = false;
  XceedZip1.every_of_one_name = wanted_ > 0 || prefix_.empty();
  met_ = 0;
  written_ = 0;
  return XceedZip1.Unzip();
}

void frmRFinish::BeforeFile(zip::BeforeFile& file) {
  LblFileinprocess.caption = "File Name: " + file.source;
  if (XceedZip1.current_operation() != zip::Operation::kUnzipping) return;
  if (prefix_.empty()) {
    file.destination = ExtractTarget;
    file.exclude = met_++ != wanted_;
  } else {
    const std::string rest = WithoutBackslash(TextBehind(file.source, prefix_));
    file.destination = ExtractTarget + rest;
    file.exclude = !rest.empty() && !IsSafeBelow(rest.substr(1));
  }
  if (!file.exclude) ++written_;
}

void frmRFinish::SettleAfterExtract() {
  app_.Pump();
  app_.platform().system.Sleep(kSettleMilliseconds);
}

// Registry files. ------------------------------------------------------------------------------

void frmRFinish::ImportRegFile(const std::string& folder, const std::string& name,
                               const std::string&) {
  std::string file = WithoutBackslash(folder) + "\\" + ReplaceAll(name, " ", "_") + ".reg";
  if (EndsWithNoCase(file, ".reg.reg")) file.resize(file.size() - 4);
  RunRegImport(file);
}

void frmRFinish::RunRegImport(const std::string& file) { app_.registry_editor().Import(file); }

bool frmRFinish::RestoreRegistryItem(const RestoreOrigin& origin, const std::string& location) {
  const ItemEntry entry = EntryOf(origin);
  if (entry.kind != ItemEntry::Kind::kRegistry) return false;
  StagedPath = StagedName(entry.name);
  // A file that the registry editor may still be reading is not replaced under its hands.
  if (app_.files().FileExists(StagedPath)) app_.registry_editor().WaitForRuns();
  if (!ExtractFile(origin, StagedPath)) return false;
  staged_.push_back({StagedPath, StagingRoot + BackupBaseName()});
  SettleAfterExtract();
  ImportRegFile(ParentFolder(StagedPath), FileNameOf(StagedPath), location);
  return true;
}

}  // namespace quorvale
