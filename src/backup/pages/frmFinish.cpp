#include "backup/pages/frmFinish.h"

#include <algorithm>
#include <iterator>

#include "backup/format/job_kinds.h"
#include "backup/pages/FrmProcess.h"
#include "backup/run/whole_backup.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/pages/account_window.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

constexpr char kTaking[] = "Taking Backup of ";
constexpr char kAborted[] = "Backup Process Aborted by User";

constexpr int kCleanUpPercent = 90;
constexpr int kDonePercent = 100;

// How a phase is shown: where its bar stands, and its words.
struct PhaseLook {
  BackupPhase phase;
  int percent;
  const char* words;
  const char* item_words;  // before the path of an item
};
constexpr PhaseLook kPhaseLooks[] = {
    {BackupPhase::kPlanning, 0, "Looking for the selected files...", ""},
    {BackupPhase::kWindowsMail, 20, "Taking Backup of Windows Mail Items...",
     "Windows Mail Items..."},
    {BackupPhase::kOutlookExpress, 20, "Taking Backup of Outlook Express Items...",
     "Outlook Express Items..."},
    {BackupPhase::kOutlook, 30, "Taking Backup of Microsoft Outlook Items...",
     "Microsoft Outlook Items..."},
    {BackupPhase::kBrowser, 40, "Taking Backup of Internet Explorer Settings...",
     "Internet Explorer Items..."},
    {BackupPhase::kOtherFiles, 50, "Taking Backup of Other Folders...", ""},
    {BackupPhase::kSettling, 60, "Compressing all the Data Files... ", ""},
    {BackupPhase::kArchive, 60, "Compressing all the Data Files... ", ""},
};

const PhaseLook& LookOf(BackupPhase phase) {
  const auto found = std::find_if(std::begin(kPhaseLooks), std::end(kPhaseLooks),
                                  [phase](const PhaseLook& look) { return look.phase == phase; });
  return *found;
}

RunEnd EndOf(BackupOutcome outcome) {
  switch (outcome) {
    case BackupOutcome::kDone:
      return RunEnd::kDone;
    case BackupOutcome::kStopped:
      return RunEnd::kStopped;
    case BackupOutcome::kNoSpace:
    case BackupOutcome::kFailed:
      break;
  }
  return RunEnd::kFailed;
}

}  // namespace

frmFinish::frmFinish(Application& app)
    : WizardPage(app, kName, PageRole::kBackupRun), run(app, Events()) {
  PlaceControls();
  ConnectHandlers();
  ResetRunPage();
  prbGlobalProgress.visible = false;
  LblCompressProgress.visible = false;
  LblCurrentFileinProgress.visible = false;
}

void frmFinish::PlaceControls() {
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

void frmFinish::ConnectHandlers() {
  Command2.on_click = [this] { Command2_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  Timer1.on_timer = [this] { Timer1_Timer(); };
  OpenHelpOnF1(app_, *this, "qvlBackup.htm");
}

BackupEvents frmFinish::Events() {
  return {.phase = [this](BackupPhase phase) { ShowPhase(phase); },
          .item = [this](const BackupItem& item) { ShowItem(item); },
          .item_done = [this](const BackupItem& item) { ShowItemDone(item); },
          .file =
              [this](const std::string& source) {
                lblStatus.caption = "Moving: " + app_.platform().files.ShortPath(source) + "...";
              },
          .folder_refused = [this](const std::string& path) { TellFolderRefused(app_, path); },
          .archive_file = [this](const std::string& source) { ShowArchiveFile(source); },
          .archive_percent = [this](int percent) { ShowArchivePercent(percent); },
          .archive_total = nullptr,
          .keep_going = [this] { return KeepGoing(); }};
}

frmFinish::~frmFinish() { app_.EndRun(*this); }

void frmFinish::Load() { page_layout::HostPage(app_, *this); }

void frmFinish::Entered() {
  ResetRunPage();
  app_.Pump();
  DisableInterface();
  Timer1.enabled = true;
}

void frmFinish::Unload() {
  if (!app_.session().gBackupZipBusy) return;
  mStop = true;
  run.archive.abort = true;
}

RunProgress frmFinish::Progress() const {
  RunProgress progress;
  if (pbCurrent.maximum > 0) progress.percent = pbCurrent.value * 100 / pbCurrent.maximum;
  if (prbGlobalProgress.visible) progress.archive_percent = prbGlobalProgress.value;
  progress.doing = doing_;
  return progress;
}

bool frmFinish::StopRun() {
  if (!Command2.enabled || !Visible()) return false;
  Command2.Click();
  return true;
}

void frmFinish::ResetRunPage() {
  cmdNext.enabled = false;
  Command2.enabled = false;
  lblCurrent.caption = "Initializing...";
  doing_ = "Initializing...";
  Label7.caption = "Copy Progress";
  pbCurrent.value = 0;
  prbGlobalProgress.value = 0;
  Frame3.visible = false;
}

void frmFinish::Timer1_Timer() {
  Timer1.enabled = false;
  app_.Pump();
  Refresh();
  TAKEALLBACKUP();
}

bool frmFinish::KeepGoing() {
  app_.Pump();
  return !Stopping();
}

bool frmFinish::Stopping() const { return mStop || app_.Ended(); }

void frmFinish::DisableInterface() {
  app_.BeginRun(*this);
  app_.session().gBackupZipBusy = true;
  prbGlobalProgress.visible = false;
  LblCompressProgress.visible = false;
  app_.ui().SetPointer(ui::Pointer::kHourglass);
}

void frmFinish::EnableInterface() {
  app_.EndRun(*this);
  app_.session().gBackupZipBusy = false;
  SetEnabled(true);
  Command2.enabled = false;
  prbGlobalProgress.visible = false;
  LblCompressProgress.visible = false;
  TellPages(&WizardPage::RunOver);
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
  run.archive.abort = true;
  app_.Pump();
  if (!app_.Ended()) app_.page_host().EnableSideButtons(true);
}

// --- The run ------------------------------------------------------------------------------------

void frmFinish::TAKEALLBACKUP() {
  destination_ = app_.session().gBackupFolder;
  parts_stay_ = false;
  if (!destination_.empty()) Parts().Remove("");
  app_.Pump();
  DisableInterface();
  app_.session().gBackupProcessName = kMainBackup;
  Command2.enabled = true;
  if (!Stopping()) {
    pbCurrent.maximum = kDonePercent;
    pbCurrent.value = 0;
  }
  BackupResult result = run.Run();
  if (result.component) EndArchiveStage(&result);
  if (result.outcome == BackupOutcome::kDone && !Stopping()) {
    pbCurrent.value = kCleanUpPercent;
    ShowDoing("Removing Temporary Files ... ");
    app_.Pump();
  }
  // Stop counts until the run is told to be over.
  if (Stopping()) result.outcome = BackupOutcome::kStopped;
  const bool attended = !app_.session().unattended;  // which the end of the run forgets
  EndRun(result);
  ShowAccount(app_, AccountRun::kBackup, attended);
}

void frmFinish::ShowDoing(const std::string& words) {
  lblCurrent.caption = "Current Progress: " + words;
  doing_ = words;
}

void frmFinish::ShowPhase(BackupPhase phase) {
  const PhaseLook& look = LookOf(phase);
  pbCurrent.value = look.percent;
  ShowDoing(look.words);
  if (phase < BackupPhase::kOtherFiles) return;
  const bool other = phase == BackupPhase::kOtherFiles;
  Label7.visible = other;
  Frame3.visible = other;
  if (phase == BackupPhase::kArchive) ShowArchiveBars();
}

// The browser's items are shown as they begin, those of the mail programs when they are over.
void frmFinish::ShowItem(const BackupItem& item) {
  if (item.phase == BackupPhase::kOtherFiles) return ShowOtherItem(item);
  if (item.phase == BackupPhase::kBrowser) ShowItemDone(item);
}

void frmFinish::ShowItemDone(const BackupItem& item) {
  ShowDoing(kTaking + (LookOf(item.phase).item_words + item.path));
}

void frmFinish::ShowOtherItem(const BackupItem& item) {
  const std::string name = EntryOfItem(item.path, item.key, app_.session().gOSName).name;
  std::string shown = item.key;
  if (name == "Other Files\\My Desktop Files") {
    shown = "Desktop";
  } else if (name.starts_with("Other Files\\")) {
    shown = FileNameOf(name);
  }
  ShowDoing(kTaking + shown + "...");
}

void frmFinish::EndRun(const BackupResult& result) {
  app_.EndRun(*this, EndOf(result.outcome));
  switch (result.outcome) {
    case BackupOutcome::kDone:
      return EndGoodRun(result);
    case BackupOutcome::kStopped:
      return EndStoppedRun(result);
    case BackupOutcome::kNoSpace:
    case BackupOutcome::kFailed:
      return EndFailedRun(result);
  }
}

void frmFinish::EndGoodRun(const BackupResult& result) {
  if (app_.session().gMediaDisc && !parts_stay_) Parts().Remove(result.archive);
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
  run.CleanUp(result);
  EnableInterface();
  PlayEndSound(app_);
}

void frmFinish::EndFailedRun(const BackupResult& result) {
  app_.ui().SetPointer(ui::Pointer::kDefault);
  run.CleanUp(result);
  mStop = false;
  EnableInterface();
}

void frmFinish::EndStoppedRun(const BackupResult& result) {
  ShowDoing("Stopping the Process. Deleting temperory Files ");
  run.CleanUp(result);
  app_.ui().SetPointer(ui::Pointer::kDefault);
  lblCurrent.caption = std::string("Current Status: ") + kAborted;
  if (!app_.Ended()) app_.Inform(kAborted);
  Label7.visible = false;
  Frame3.visible = false;
  EnableInterface();
  mStop = false;
}

// --- The archive stage --------------------------------------------------------------------------

bool frmFinish::CompressStage(const std::string& stage_path) {
  ShowArchiveBars();
  BackupResult result = run.MakeArchive(stage_path);
  EndArchiveStage(&result);
  return result.outcome == BackupOutcome::kDone;
}

void frmFinish::ShowArchiveBars() {
  prbGlobalProgress.visible = true;
  LblCompressProgress.visible = true;
}

void frmFinish::ShowArchiveFile(const std::string& source) {
  LblCurrentFileinProgress.caption = "File Name: " + source;
  LblCurrentFileinProgress.visible = true;
}

void frmFinish::ShowArchivePercent(int percent) {
  prbGlobalProgress.value = percent;
  app_.Pump();  // with the file's name still there
  LblCurrentFileinProgress.caption = "";
}

void frmFinish::EndArchiveStage(BackupResult* result) {
  int attempts = 1;  // that end with a delivery
  bool again = false;
  while (result->outcome == BackupOutcome::kNoSpace) {
    if (!OfferOtherFolder()) {
      --attempts;
      break;
    }
    again = true;
    ++attempts;
    ShowArchiveBars();
    *result = run.MakeArchive(WithBackslash(app_.settings().backup_folder()) +
                              WithoutLastFour(app_.session().gBackupFileName));
  }
  TellArchiveEnd(*result);
  ShowArchiveIsOver();
  for (int i = 0; i < attempts; ++i) Deliver(result);
  // The archive kept its first name, so a further attempt helps only where the first disk has room
  // now. The run has failed in either case.
  if (again && result->outcome == BackupOutcome::kDone) result->outcome = BackupOutcome::kFailed;
}

void frmFinish::TellArchiveEnd(const BackupResult& result) {
  if (result.component == zip::Result::kAborted) {
    if (!app_.Ended()) app_.Inform(kAborted);
    lblCurrent.caption = std::string("Current Status: ") + kAborted;
  }
  if (result.outcome != BackupOutcome::kDone) app_.ui().SetPointer(ui::Pointer::kDefault);
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
  return true;
}

void frmFinish::ShowArchiveIsOver() {
  ShowArchiveBars();
  TellPages(&WizardPage::ArchiveOver);
}

void frmFinish::Deliver(BackupResult* result) {
  Session& session = app_.session();
  destination_ = session.gBackupFolder;
  session.gDelivered = false;
  session.discs_written = 0;
  if (result->archive.empty() || Stopping()) {
    if (session.gMediaDisc) Parts().Remove(result->archive);
    return;
  }
  if (session.gMediaFtp) {
    session.gDeliverySource = result->archive;
    app_.Pump();
    ShowDelivery();
  }
  if (session.gMediaDisc) DeliverDiscs(result);
}

DiscFolder frmFinish::Parts() { return {app_, DiscFolderBelow(destination_)}; }

void frmFinish::DeliverDiscs(BackupResult* result) {
  Session& session = app_.session();
  const std::string parts = WithBackslash(destination_) + "CDbackup";
  if (!app_.platform().discs.MediumLoaded()) {
    app_.Inform(
        "No Media Loaded on the disk drive. Unable to write data to the disk\r\nYour backup is "
        "on " +
        parts);
    session.gMediaDisc = false;
    Parts().Keep();
    NoteOnDiscs("No disc was written. The backup is in its parts in " + parts + ".");
    return;
  }
  session.gDeliverySource = parts;
  ShowDelivery();
  if (!session.gDelivered && !Stopping()) KeepWholeBackup(result);
  if (!parts_stay_) Parts().Remove(result->archive);
}

void frmFinish::KeepWholeBackup(BackupResult* result) {
  // A further delivery of the same run may find nothing to keep any more.
  if (!app_.files().FileExists(result->archive)) return;
  ShowDoing("Putting the backup together in the backup folder...");
  const WholeBackup whole = MakeWholeBackup(app_, result->archive, [this](int percent) {
    prbGlobalProgress.value = percent;
    return KeepGoing();
  });
  if (Stopping()) {
    // The user gave this backup up, with what was made of it by then.
    if (!whole.path.empty()) app_.platform().files.RemoveFile(whole.path, true);
    return;
  }
  const std::string so_far = "Not all discs of the backup were written. ";
  if (whole.path.empty()) {
    parts_stay_ = true;
    Parts().Keep();
    NoteOnDiscs(so_far + "It is in its parts in " + ParentFolder(result->archive) +
                ", since it could not be made one file again: " + ReasonText(whole.why) + ".");
    return;
  }
  result->archive = whole.path;
  NoteOnDiscs(so_far + "The backup is at " + whole.path + ".");
}

void frmFinish::NoteOnDiscs(const std::string& words) {
  app_.account().Note(AccountReason::kDiscRefused, words);
}

void frmFinish::ShowDelivery() {
  app_.Get<FrmProcess>().ShowModal();
  app_.Unload<FrmProcess>();
}

}  // namespace quorvale
