#include "backup/pages/frmFinish.h"

#include "backup/format/settings_file.h"
#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/FrmProcess.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/process_watch.h"

namespace quorvale {
namespace {

constexpr char kTaking[] = "Current Progress: Taking Backup of ";
constexpr char kAborted[] = "Backup Process Aborted by User";
constexpr char kOutlookProgram[] =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\OUTLOOK.EXE";
constexpr char kSearchService[] = "WSearch";
constexpr int kServiceStart = 0;
constexpr int kServiceStop = 1;

// The registry editor gets this long to start before the next item.
constexpr int kExportPause = 100;  // milliseconds

// A Zip entry's name has a length field of 16 bits.
constexpr size_t kLongestEntryName = 65535;

// Where one phase's bar stands.
constexpr int kMailPercent = 20;
constexpr int kOutlookPercent = 30;
constexpr int kBrowserPercent = 40;
constexpr int kOtherPercent = 50;
constexpr int kCompressPercent = 60;
constexpr int kCleanUpPercent = 90;
constexpr int kDonePercent = 100;

std::string AllOf(const std::string& folder) { return WithBackslash(folder) + "*.*"; }

}  // namespace

frmFinish::frmFinish(Application& app)
    : ui::Form(app.ui(), kName), archive(app.platform().files, app.platform().system), app_(app) {
  LayOut();
  WireEvents();
  ResetRunPage();
  prbGlobalProgress.visible = false;
  LblCompressProgress.visible = false;
  LblCurrentFileinProgress.visible = false;
}

void frmFinish::LayOut() {
  using namespace page_layout;
  constexpr int kBarHeight = 18;
  lblHeader.fore_color = kHeaderColor;
  lblCurrent.bounds = ContentRow(0, kContentLeft, kContentWidth, 2 * kLineHeight);
  pbCurrent.bounds = ContentRow(2, kContentLeft, kContentWidth, kBarHeight);
  lblStatus.bounds = ContentRow(3);
  Frame3.bounds =
      ui::Bounds{kContentLeft, kContentTop + 4 * kRowHeight, kContentWidth, 2 * kRowHeight};
  Label7.container = &Frame3;
  Label7.bounds = ui::Bounds{12, kRowHeight - kLineHeight / 2, kContentWidth - 24, kLineHeight};
  LblCompressProgress.bounds = ContentRow(7);
  prbGlobalProgress.bounds = ContentRow(8, kContentLeft, kContentWidth, kBarHeight);
  LblCurrentFileinProgress.bounds = ContentRow(9, kContentLeft, kContentWidth, 2 * kLineHeight);
  Command2.tab_index = 1;
  Dir1.visible = false;
  Dir2.visible = false;
  cmdNext.visible = false;  // the page goes on by itself
  PlaceHeader(&PicHeader, &lblHeader);
  PlaceButtons(nullptr, &cmdNext, &Command2);
}

void frmFinish::WireEvents() {
  Command2.on_click = [this] { Command2_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  Timer1.on_timer = [this] { Timer1_Timer(); };
  OpenHelpOnF1(app_, *this, "qvlBackup.htm");
  archive.on_before_file = [this](zip::BeforeFile& file) { NameEntry(file); };
  archive.on_file_progress = [this](int percent) {
    prbGlobalProgress.value = percent;
    Pump();
    LblCurrentFileinProgress.caption = "";
  };
  archive.on_total_progress = [this](int percent) {
    Pump();
    if (archive.current_operation() == zip::Operation::kUnzipping) {
      prbGlobalProgress.value = percent;
    }
  };
}

void frmFinish::Load() { page_layout::HostPage(app_, *this); }

void frmFinish::Unload() {
  if (!app_.session().gBackupZipBusy) return;
  mStop = true;
  archive.abort = true;
}

void frmFinish::ResetRunPage() {
  cmdNext.enabled = false;
  Command2.enabled = false;
  lblCurrent.caption = "Initializing...";
  Label7.caption = "Copy Progress";
  pbCurrent.value = 0;
  prbGlobalProgress.value = 0;
  Frame3.visible = false;
}

void frmFinish::Timer1_Timer() {
  Timer1.enabled = false;
  Pump();
  Refresh();
  TAKEALLBACKUP();
}

void frmFinish::Pump() {
  app_.Pump();
  if (Stopping()) archive.abort = true;
}

bool frmFinish::Stopping() const { return mStop || app_.Ended(); }

void frmFinish::DisableInterface() {
  app_.session().gBackupZipBusy = true;
  prbGlobalProgress.visible = false;
  LblCompressProgress.visible = false;
  app_.ui().SetPointer(ui::Pointer::kHourglass);
}

void frmFinish::EnableInterface() {
  app_.session().gBackupZipBusy = false;
  SetEnabled(true);
  Command2.enabled = false;
  prbGlobalProgress.visible = false;
  LblCompressProgress.visible = false;
  if (frmfour* review = app_.Loaded<frmfour>()) review->cmdNext.enabled = false;
  if (frmThree* options = app_.Loaded<frmThree>()) options->Timer1.enabled = false;
  app_.ui().SetPointer(ui::Pointer::kDefault);
  Dir1.text = app_.session().gAppDataPath;
  Dir2.text = app_.session().gAppDataPath;
  cmdNext_Click();
}

void frmFinish::cmdNext_Click() {
  Label7.caption = "";
  lblStatus.caption = "Ready";
  pbCurrent.value = 0;
  prbGlobalProgress.value = 0;
  Label7.visible = false;
  Frame3.visible = false;
  if (app_.Ended()) return;
  if (!app_.session().gMediaDisc && !mStop) {
    const std::string folder = app_.settings().backup_folder();
    OpenFolder(app_, app_.files().FolderExists(folder) ? folder : folder + "\\");
  }
  // A page that the user has left already must not take the pages of a new job with it.
  if (app_.Loaded<frmFinish>() != this) return;
  PageHost& main_window = app_.page_host();
  main_window.HomePage();
  main_window.EnableSideButtons(true);
}

void frmFinish::Command2_Click() {
  if (!app_.Ask("Are you sure, you want to stop the process?")) return;
  Label7.visible = false;
  mStop = true;
  app_.session().gStopRequested = true;
  archive.abort = true;
  app_.Pump();
  if (!app_.Ended()) app_.page_host().EnableSideButtons(true);
}

// --- The run ------------------------------------------------------------------------------------

void frmFinish::TAKEALLBACKUP() {
  Session& session = app_.session();
  destination_ = session.gBackupFolder;
  if (!destination_.empty()) KillFolder(WithBackslash(destination_) + "CDBackup");
  archive.ResetDefaults();
  archive.archive_name.clear();
  archive.files_to_process.clear();
  session.gFileCollection.Clear();
  Pump();
  mSkipped.clear();
  archive_made_ = false;
  DisableInterface();
  session.gBackupProcessName = kMainBackup;
  Command2.enabled = true;

  RunItemPhases();
  bool made = false;
  if (!Stopping()) {
    SetPhase(kCompressPercent, "Current Progress: Compressing all the Data Files... ");
    app_.registry_editor().WaitForRuns();
    if (!Stopping()) made = CompressStage(session.gBackupBasePath);
  }
  if (made && !Stopping()) {
    SetPhase(kCleanUpPercent, "Current Progress: Removing Temporary Files ... ");
    Pump();
  }
  if (Stopping()) return EndStoppedRun();
  if (!made) return EndFailedRun();
  EndGoodRun();
}

void frmFinish::SetPhase(int percent, const std::string& text) {
  pbCurrent.value = percent;
  lblCurrent.caption = text;
}

void frmFinish::RunItemPhases() {
  if (Stopping()) return;
  pbCurrent.maximum = kDonePercent;
  pbCurrent.value = 0;
  if (app_.session().gOSName == kWindowsVista) {
    SetPhase(kMailPercent, std::string(kTaking) + "Windows Mail Items...");
    BackupWindowsMailItems();
  }
  if (Stopping()) return;
  SetPhase(kMailPercent, std::string(kTaking) + "Outlook Express Items...");
  BackupOutlookExpressItems();
  if (Stopping()) return;
  RunOutlookPhase();
  if (Stopping()) return;
  SetPhase(kBrowserPercent, std::string(kTaking) + "Internet Explorer Settings...");
  Pump();
  BackupInternetExplorerItems();
  if (Stopping()) return;
  RunOtherFoldersPhase();
}

void frmFinish::RunOutlookPhase() {
  SetPhase(kOutlookPercent, std::string(kTaking) + "Microsoft Outlook Items...");
  Pump();
  if (app_.registry().store().KeyExists(RegistryRoot::kLocalMachine, kOutlookProgram)) {
    BackupOutlookItems();
  }
}

void frmFinish::RunOtherFoldersPhase() {
  SetPhase(kOtherPercent, std::string(kTaking) + "Other Folders...");
  Label7.visible = true;
  Frame3.visible = true;
  Pump();
  BackupOtherItems();
  Label7.visible = false;
  Frame3.visible = false;
}

void frmFinish::EndGoodRun() {
  Session& session = app_.session();
  if (session.gMediaDisc) KillFolder(WithBackslash(destination_) + "CDBackup");
  pbCurrent.value = kDonePercent;
  prbGlobalProgress.visible = false;
  LblCompressProgress.visible = false;
  app_.ui().SetPointer(ui::Pointer::kDefault);
  lblCurrent.caption = "Current Status: Backup Successfully Completed. ";
  Frame3.visible = false;
  Label7.visible = false;
  Label7.caption = "DONE !";
  app_.page_host().EnableHomeButton();
  Command2.enabled = false;
  app_.Inform("Backup successfully completed");
  RemoveStage();
  FinishLogs();
  app_.registry().SaveRegString(RegistryRoot::kCurrentUser, kHistoryKey, "Last Backup",
                                HistoryStamp(app_, app_.platform().system.Now()));
  EnableInterface();
  PlayEndSound(app_);
}

void frmFinish::EndFailedRun() {
  app_.ui().SetPointer(ui::Pointer::kDefault);
  RemoveStage();
  mStop = false;
  EnableInterface();
}

void frmFinish::EndStoppedRun() {
  lblCurrent.caption = "Current Progress: Stopping the Process. Deleting temperory Files ";
  // The user gave this backup up, also when its archive was just complete.
  if (archive_made_) app_.platform().files.RemoveFile(archive.archive_name, true);
  if (MakeDirectoryPath(app_, app_.session().gBackupBasePath + "\\")) RemoveStage();
  app_.ui().SetPointer(ui::Pointer::kDefault);
  lblCurrent.caption = std::string("Current Status: ") + kAborted;
  if (!app_.Ended()) app_.Inform(kAborted);
  Label7.visible = false;
  Frame3.visible = false;
  EnableInterface();
  mStop = false;
}

void frmFinish::RemoveStage() {
  app_.registry_editor().WaitForRuns();
  KillFolder(app_.session().gBackupBasePath);
}

bool frmFinish::KillFolder(const std::string& path) {
  return !path.empty() && app_.files().KillFolder(WithoutBackslash(path));
}

void frmFinish::FinishLogs() {
  std::string joined;
  for (const std::string& source : mSkipped) joined += source;
  if (Trim(joined).empty() || app_.session().gLogDetails != "True") return;
  WriteRunLog(app_, BackupLogPath(app_), mSkipped);
}

// --- The kinds of items -------------------------------------------------------------------------

void frmFinish::RunKind(const char* root, const std::string& words, bool words_first,
                        ItemProcedure one_item) {
  const Session& session = app_.session();
  for (size_t i = 0; i < session.gBackupItemPaths.size(); ++i) {
    Pump();
    if (Stopping()) return;
    const std::string path = session.gBackupItemPaths[i];
    if (!path.starts_with(root)) continue;
    const std::string key = i < session.gBackupItemKeys.size() ? session.gBackupItemKeys[i] : "";
    if (words_first) lblCurrent.caption = kTaking + words + path;
    (this->*one_item)(key, path);
    lblCurrent.caption = kTaking + words + path;
  }
}

void frmFinish::BackupWindowsMailItems() {
  RunKind("Windows Mail\\", "Windows Mail Items...", false, &frmFinish::BackupWindowsMailItem);
}

void frmFinish::BackupOutlookExpressItems() {
  RunKind("Outlook Express\\", "Outlook Express Items...", false,
          &frmFinish::BackupOutlookExpressItem);
}

void frmFinish::BackupOutlookItems() {
  RunKind("Microsoft Outlook\\", "Microsoft Outlook Items...", false,
          &frmFinish::BackupOutlookItem);
}

void frmFinish::BackupInternetExplorerItems() {
  RunKind("Internet Explorer\\", "Internet Explorer Items...", true,
          &frmFinish::BackupInternetExplorerItem);
}

void frmFinish::BackupWindowsMailItem(const std::string& key, const std::string& path) {
  BackupMailItem(key, path);
}

void frmFinish::BackupOutlookExpressItem(const std::string& key, const std::string& path) {
  BackupMailItem(key, path);
}

void frmFinish::BackupOutlookItem(const std::string& key, const std::string& path) {
  BackupMailItem(key, path);
}

void frmFinish::BackupInternetExplorerItem(const std::string& key, const std::string& path) {
  BackupMailItem(key, path);
}

// The kinds differ in their entry names alone.
void frmFinish::BackupMailItem(const std::string& key, const std::string& path) {
  const ItemEntry entry = PrepareTarget(key, path);
  switch (entry.kind) {
    case ItemEntry::Kind::kNone:
      return;
    case ItemEntry::Kind::kRegistry:
      return ExportItem(path, key);
    case ItemEntry::Kind::kFolder:
      return TakeFolder(key, mTargetFolder);
    case ItemEntry::Kind::kFile:
      break;
  }
  const auto info = app_.platform().files.Stat(key);
  if (!info || info->IsFolder()) return;
  HandOver(CollapseBackslashes(key), mTargetFolder + info->name);
}

ItemEntry frmFinish::PrepareTarget(const std::string& key, const std::string& path) {
  const Session& session = app_.session();
  const ItemEntry entry = EntryOfItem(path, key, session.gOSName);
  mTargetFolder = CollapseBackslashes(session.gBackupBasePath + "\\" + entry.folder + "\\");
  MakeDirectoryPath(app_, mTargetFolder);
  return entry;
}

void frmFinish::ExportItem(const std::string& path, const std::string& key) {
  ExportRegistryKey(mTargetFolder, FileNameOf(path), key);
  app_.platform().system.Sleep(kExportPause);
  Add(mExportFile, EntryNameBelow(app_.session().gBackupFolder, mExportFile));
}

void frmFinish::ExportRegistryKey(const std::string& folder, const std::string& leaf,
                                  const std::string& key) {
  const std::string name = ExportFileName(leaf);
  mExportFile = WithBackslash(folder) + name;
  // Of two exports into one file the later one is to win, so the earlier one has to be over.
  if (!app_.session().gFileCollection.FindStagedDest(mExportFile).empty()) {
    app_.registry_editor().WaitForRuns();
  }
  const std::string short_folder = app_.platform().files.ShortPath(WithoutBackslash(folder));
  app_.registry_editor().Export(WithBackslash(short_folder) + name, key,
                                app_.session().gOSName == kWindowsVista);
}

void frmFinish::BackupOtherItems() {
  for (size_t i = 0; i < app_.session().gBackupItemPaths.size(); ++i) {
    Pump();
    if (Stopping()) return;
    BackupListedItem(i);
  }
}

void frmFinish::BackupListedItem(size_t index) {
  const Session& session = app_.session();
  const std::string path = session.gBackupItemPaths[index];
  const std::string key =
      index < session.gBackupItemKeys.size() ? session.gBackupItemKeys[index] : "";
  if (path.starts_with("Add More Files")) {
    if (Contains(key, "\\")) CheckAddedFile(key);
    BackupOtherItem(key, path, true);
  } else if (path.starts_with("Other Files") || path.starts_with("Add Other Folders")) {
    if (Contains(key, "\\") && !app_.platform().files.Stat(key)) {
      mSkipped.push_back(key);
    } else {
      BackupOtherItem(key, path, false);
    }
  }
}

void frmFinish::CheckAddedFile(const std::string& path) {
  if (!app_.platform().files.Stat(path)) mSkipped.push_back(path);
}

void frmFinish::BackupOtherItem(const std::string& key, const std::string& path, bool is_file) {
  if (EntryOfItem(path, key, app_.session().gOSName).kind == ItemEntry::Kind::kNone) return;
  const ItemEntry entry = PrepareTarget(key, path);
  ShowOtherItem(key, entry);
  if (is_file) {
    ShowMoving(key);
    HandOver(CollapseBackslashes(key), mTargetFolder + FileNameOf(key));
  } else {
    TakeFolder(key, mTargetFolder);
  }
}

void frmFinish::ShowOtherItem(const std::string& key, const ItemEntry& entry) {
  std::string shown = key;
  if (entry.name == "Other Files\\My Desktop Files") {
    shown = "Desktop";
  } else if (entry.name.starts_with("Other Files\\")) {
    shown = FileNameOf(entry.name);
  }
  lblCurrent.caption = kTaking + shown + "...";
}

void frmFinish::ShowMoving(const std::string& path) {
  lblStatus.caption = "Moving: " + app_.platform().files.ShortPath(path) + "...";
}

// --- Files and folders --------------------------------------------------------------------------

void frmFinish::TakeFolder(const std::string& source, const std::string& target) {
  const std::string folder = WithBackslash(CollapseBackslashes(source));
  const auto stopping = [this] { return Stopping(); };
  for (const DeepEntry& element : app_.files().ListFilesDeep(folder, "*.*", stopping)) {
    Pump();
    if (Stopping()) return;
    // The staging folder may lie inside of what is backed up.
    if (IsInStage(element.path)) continue;
    const std::string relative =
        element.path.size() > folder.size() ? element.path.substr(folder.size()) : "";
    if (element.is_folder) {
      TakeSubfolder(element.path, target + relative);
    } else {
      HandOver(element.path, target + relative);
    }
  }
}

void frmFinish::TakeSubfolder(const std::string& folder, const std::string& target) {
  if (app_.session().gFileCollection.FindStagedDest(AllOf(folder)).empty()) {
    Add(AllOf(folder), EntryNameBelow(app_.session().gBackupFolder, AllOf(target)));
  } else {
    app_.files().MakeFolderChain(WithoutBackslash(target));
  }
}

void frmFinish::HandOver(const std::string& source, const std::string& target) {
  mSourcePath = source;
  mEntryName = EntryNameBelow(app_.session().gBackupFolder, target);
  const std::string staged = app_.session().gFileCollection.FindStagedDest(source);
  if (staged == mEntryName) return;
  if (staged.empty()) return Add(source, mEntryName);
  // Selected under another item already: a copy stands for the file here.
  CopyFileToStage(source, target);
  Add(CollapseBackslashes(target), mEntryName);
}

void frmFinish::Add(const std::string& source, const std::string& entry_name) {
  if (!CanBeEntryName(entry_name)) {
    mSkipped.push_back(source);
    return;
  }
  if (!app_.session().gFileCollection.Add({source, entry_name})) return;
  const bool is_folder = source.ends_with("\\*.*");
  archive.files_to_process.push_back(is_folder ? WithoutExtension(source) + "\\" : source);
}

bool frmFinish::CanBeEntryName(const std::string& name) const {
  return name.size() <= kLongestEntryName && IsUtf8(name);
}

bool frmFinish::IsInStage(const std::string& path) const {
  const std::string stage = CollapseBackslashes(app_.session().gBackupBasePath);
  if (stage.empty() || path.size() < stage.size()) return false;
  if (path.size() > stage.size() && path[stage.size()] != '\\') return false;
  return EqualsNoCase(path.substr(0, stage.size()), stage);
}

std::string frmFinish::ModifiedText(const std::string& path) {
  const auto info = app_.platform().files.Stat(path);
  if (!info) return "";
  return HistoryStamp(app_, app_.platform().system.ToLocal(info->modified));
}

bool frmFinish::CopyFileToStage(const std::string& source, const std::string& target) {
  Pump();
  const std::string copy = CollapseBackslashes(target);
  if (ModifiedText(source) <= ModifiedText(copy)) return false;
  Files& files = app_.platform().files;
  app_.files().MakeFolderChain(ParentFolder(copy));
  if (const auto folder = files.Stat(ParentFolder(source))) {
    files.SetAttributes(ParentFolder(copy), folder->attributes & ~file_attribute::kFolder);
  }
  ShowMoving(source);
  if (!files.Stat(source)) mSkipped.push_back(source);
  const FileStatus status = app_.files().CopyFile(source, copy);
  if (status != FileStatus::kOk && !source.ends_with(".msg")) {
    app_.files().CopyFile(source, copy);
  }
  return true;
}

// --- The archive --------------------------------------------------------------------------------

bool frmFinish::CompressStage(const std::string& stage_path) {
  prbGlobalProgress.visible = true;
  LblCompressProgress.visible = true;
  ApplyArchiveSettings(stage_path);
  AddSettingsFile(stage_path);
  const zip::Result result = RunArchive();
  const bool made = result == zip::Result::kDone || result == zip::Result::kWarnings;
  if (made) {
    archive_made_ = true;
  } else if (result == zip::Result::kNoSpace || result == zip::Result::kNoTemporarySpace) {
    if (!OfferOtherFolder()) {
      EndCompressStage();
      return false;
    }
  } else {
    if (result == zip::Result::kAborted) {
      if (!app_.Ended()) app_.Inform(kAborted);
      lblCurrent.caption = std::string("Current Status: ") + kAborted;
    }
    app_.ui().SetPointer(ui::Pointer::kDefault);
  }
  EndCompressStage();
  Deliver();
  return made;
}

void frmFinish::ApplyArchiveSettings(const std::string& stage_path) {
  const Session& session = app_.session();
  if (archive.archive_name.empty()) {
    const FrmBackupMedia* media = app_.Loaded<FrmBackupMedia>();
    if (session.gMediaDisc && media != nullptr && media->ChkCDDVD.value == 1) {
      const std::string folder = ParentFolder(stage_path) + "\\CDBackup\\";
      MakeDirectoryPath(app_, folder);
      archive.archive_name = folder + FileNameOf(stage_path) + ".obk";
      archive.split_size = disc_part_size;
    } else {
      archive.archive_name = stage_path + ".obk";
      archive.split_size = 0;
    }
  }
  archive.required_attributes = 0;
  archive.excluded_attributes = 0;
  archive.preserve_paths = true;
  archive.encrypt = session.gProtectWithPassword == "True";
  if (archive.encrypt) archive.password = session.gArchivePassword;
  archive.level = static_cast<int>(Val(session.gCompressionLevel));
}

void frmFinish::AddSettingsFile(const std::string& stage_path) {
  const std::string source = StagedSettingsPath(stage_path, app_);
  Add(source,
      WithBackslash(EntryNameBelow(app_.session().gBackupFolder, stage_path)) + FileNameOf(source));
}

zip::Result frmFinish::RunArchive() {
  // Without its settings file no restore can read an archive.
  if (!app_.files().FileExists(StagedSettingsPath(app_.session().gBackupBasePath, app_))) {
    return zip::Result::kFailed;
  }
  Services& services = app_.platform().services;
  // The search service must not hold the mail stores open.
  const bool searching = ServiceIsRunning(services, kSearchService);
  if (searching) ControlServiceByName(services, kSearchService, kServiceStop);
  const zip::Result result = archive.Zip();
  if (searching) ControlServiceByName(services, kSearchService, kServiceStart);
  return result;
}

bool frmFinish::OfferOtherFolder() {
  if (Stopping()) return false;
  ProgramSettings& settings = app_.settings();
  app_.Inform("There is not enough space in the backup folder " + settings.backup_folder() +
              ". Please make space or change the location of backup file and run the backup "
              "again.");
  app_.ui().SetPointer(ui::Pointer::kDefault);
  const std::string folder =
      app_.ui().BrowseForFolder("&Select a directory for Backup:", settings.backup_folder());
  if (folder.empty()) return false;
  settings.UseBackupFolder(folder);
  // The archive keeps its first name, so this helps only where the first disk has room now. The
  // run has failed in either case.
  CompressStage(WithBackslash(folder) + app_.Get<frmThree>().txtcurrent.text.get());
  return true;
}

void frmFinish::EndCompressStage() {
  prbGlobalProgress.visible = true;
  LblCompressProgress.visible = true;
  if (frmThree* options = app_.Loaded<frmThree>()) {
    options->txtcurrent.text = frmThree::DefaultFileName(app_);
  }
}

void frmFinish::Deliver() {
  Session& session = app_.session();
  destination_ = session.gBackupFolder;
  const std::string parts = WithBackslash(destination_) + "CDbackup";
  session.gDelivered = false;
  if (!archive_made_ || Stopping()) {
    if (session.gMediaDisc) KillFolder(parts);
    return;
  }
  const FrmBackupMedia* media = app_.Loaded<FrmBackupMedia>();
  if (session.gMediaFtp && media != nullptr && media->ChkFTP.value == 1) {
    session.gDeliverySource = archive.archive_name;
    Pump();
    ShowDelivery();
  }
  if (!session.gMediaDisc) return;
  if (!app_.platform().discs.MediumLoaded()) {
    app_.Inform(
        "No Media Loaded on the disk drive. Unable to write data to the disk\r\nYour backup is "
        "on " +
        parts);
    session.gMediaDisc = false;  // the parts stay where they are
    return;
  }
  session.gDeliverySource = parts;
  ShowDelivery();
  KillFolder(parts);
}

void frmFinish::ShowDelivery() {
  app_.Get<FrmProcess>().ShowModal();
  app_.Unload<FrmProcess>();
}

void frmFinish::NameEntry(zip::BeforeFile& file) {
  LblCurrentFileinProgress.caption = "File Name: " + file.source;
  LblCurrentFileinProgress.visible = true;
  const std::string key = file.source.ends_with('\\') ? file.source + "*.*" : file.source;
  std::string name = app_.session().gFileCollection.FindStagedDest(key);
  if (name.ends_with("*.*")) name.resize(name.size() - 3);
  file.entry_name = name;
  file.exclude = name.empty();
  if (Stopping()) archive.abort = true;
}

}  // namespace quorvale
