#include "restore/pages/frmRFinish.h"

#include "base/paths.h"
#include "base/text.h"
#include "core/pages/account_window.h"
#include "core/pages/page_layout.h"
#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
#include "restore/run/internet_explorer_restore.h"
#include "restore/run/restore_places.h"
#include "restore/run/user_files_restore.h"

namespace quorvale {
namespace {

constexpr char kProgress[] = "Current Progress: ";

// What the page says of a phase. The line of a mail product's items names the product.
struct PhaseWords {
  RestorePhase phase;
  int value_at_end;         // of pbCurrent; -1: as it is
  const char* at_begin;     // "": the line stays
  const char* at_end;       // "": the line stays
  const char* item_before;  // around an item's name
  const char* item_behind;
};
constexpr char kTaking[] = "Taking Restore of ";
constexpr PhaseWords kPhaseWords[] = {
    {RestorePhase::kPrepare, 20, "Extracting Items...", "Extracted Successfully", "", ""},
    // Here the line follows the work.
    {RestorePhase::kWindowsMail, -1, "", "Taking Restore of Windows Mail Items...",
     "Restoration of Windows Mail Items...", ""},
    {RestorePhase::kOutlookExpress, 30, "Taking Restore of Outlook Express Items...", "",
     "Restoration of Outlook Express Items...", ""},
    {RestorePhase::kOutlook, 50, "Taking Restore of Microsoft Outlook Items...", "",
     "Taking Restore of Microsoft Outlook Items...", ""},
    {RestorePhase::kInternetExplorer, 60, "Taking Restore of Internet Explorer Settings...", "",
     "Taking Restore of Internet Explorer Items...", ""},
    {RestorePhase::kAddedFiles, 70, "Taking Restore of Other Files...", "", kTaking, "..."},
    {RestorePhase::kAddedFolders, 80, "", "", kTaking, "..."},
    {RestorePhase::kOtherFiles, 100, "", "", kTaking, "..."},
};

const PhaseWords& WordsOf(RestorePhase phase) {
  const PhaseWords* words = kPhaseWords;
  while (words->phase != phase) ++words;  // every phase stands in the table
  return *words;
}

bool IsMail(RestorePhase phase) {
  return phase == RestorePhase::kWindowsMail || phase == RestorePhase::kOutlookExpress ||
         phase == RestorePhase::kOutlook;
}

}  // namespace

frmRFinish::frmRFinish(Application& app)
    : WizardPage(app, kName, PageRole::kRestoreRun), run_(app, app.session(), EventsOfRun()) {
  PlaceControls();
  ConnectHandlers();
}

void frmRFinish::ConnectHandlers() {
  Timer1.on_timer = [this] { Timer1_Timer(); };
  cmdstop.on_click = [this] { cmdstop_Click(); };
  cmdNext.on_click = [this] { cmdNext_Click(); };
  OpenHelpOnF1(app_, *this, "Restoration.htm");
}

void frmRFinish::Load() {
  page_layout::HostPage(app_, *this);
  cmdstop.enabled = false;
  cmdNext.enabled = false;
}

void frmRFinish::Entered() {
  app_.page_host().EnableSideButtons(false);
  cmdNext.enabled = false;
  lblCurrent.caption = "Initializing...";
  pbCurrent.value = 0;
  prbGlobalProgress.value = 0;
  Timer1.enabled = true;
}

frmRFinish::~frmRFinish() { app_.EndRun(*this); }

RunProgress frmRFinish::Progress() const {
  RunProgress progress;
  if (pbCurrent.maximum > 0) progress.percent = pbCurrent.value * 100 / pbCurrent.maximum;
  if (prbGlobalProgress.visible) progress.archive_percent = prbGlobalProgress.value;
  progress.doing = ReplaceAll(lblCurrent.caption, kProgress, "");
  return progress;
}

bool frmRFinish::StopRun() {
  if (!cmdstop.enabled || !Visible()) return false;
  cmdstop.Click();
  return true;
}

void frmRFinish::Unload() {
  app_.EndRun(*this);
  if (!running_) return;
  gone_ = true;
  AbortFlag = true;
}

void frmRFinish::PlaceControls() {
  using namespace page_layout;
  PlaceHeader(&PicHeader, &lblHeader);
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

RestoreEvents frmRFinish::EventsOfRun() {
  RestoreEvents events;
  events.phase_begins = [this](RestorePhase phase) { PhaseBegins(phase); };
  events.phase_ends = [this](RestorePhase phase) { PhaseEnds(phase); };
  events.item = [this](const std::string& item) { ShowItem(item); };
  events.file = [this](const std::string& member) {
    LblFileinprocess.caption = "File Name: " + member;
  };
  events.percent = [this](int percent) { prbGlobalProgress.value = percent; };
  events.keep_going = [this] {
    app_.Pump();
    return !AbortFlag;
  };
  return events;
}

void frmRFinish::PhaseBegins(RestorePhase phase) {
  phase_ = phase;
  const std::string line = WordsOf(phase).at_begin;
  if (!line.empty()) lblCurrent.caption = kProgress + line;
  if (phase == RestorePhase::kPrepare) {
    app_.ui().SetPointer(ui::Pointer::kHourglass);
    prbGlobalProgress.visible = true;
  }
  if (phase == RestorePhase::kAddedFiles) {
    Label7.visible = true;
    Frame3.visible = true;
  }
}

void frmRFinish::PhaseEnds(RestorePhase phase) {
  const PhaseWords& words = WordsOf(phase);
  const std::string line = words.at_end;
  if (!line.empty()) lblCurrent.caption = kProgress + line;
  if (words.value_at_end >= 0) pbCurrent.value = words.value_at_end;
  if (phase == RestorePhase::kPrepare) {
    app_.ui().SetPointer(ui::Pointer::kDefault);
    prbGlobalProgress.visible = false;
  }
}

void frmRFinish::ShowItem(const std::string& item) {
  if (IsMail(phase_)) {
    RichTextBox1.visible = true;
    TxtROE.visible = false;
    RichTextBox1.text = item;
  }
  const PhaseWords& words = WordsOf(phase_);
  lblCurrent.caption = std::string(kProgress) + words.item_before + item + words.item_behind;
}

void frmRFinish::TAKEALLRESTORE() {
  if (app_.session().gRestoreProcessName != "Main Restore") return;
  running_ = true;
  cmdstop.enabled = true;
  DisableInterface();
  pbCurrent.maximum = 100;
  pbCurrent.value = 10;
  const RestoreResult result = run_.Run();
  running_ = false;
  KeepAccount(app_);
  // Without a page nobody is left to tell; what was restored stays.
  if (gone_ || app_.Ended()) return;
  LeftInRestoreFolder = result.left_in_restore_folder;
  DataFileTable = result.data_files;
  if (result.outcome == RestoreOutcome::kDone) {
    FinishRun();
  } else {
    AbortEnding();
  }
  ShowAccount(app_, AccountRun::kRestore, true);
}

std::string frmRFinish::EndMessage() const {
  if (!LeftInRestoreFolder) return "Backup successfully restored";
  return "Backup successfully restored, some files/folders could not be restored on to there "
         "default locations.\r\nFiles/foldes has been copied to location: " +
         WithBackslash(FolderForLeftItems(app_, app_.session())) + BackupBaseName();
}

void frmRFinish::FinishRun() {
  const Session& session = app_.session();
  const bool declined = session.gNoRestoreFolder;
  const std::string staging = WithBackslash(session.gRestoreFolder) + BackupBaseName();
  Label7.visible = false;
  Frame3.visible = false;
  cmdstop.enabled = false;
  app_.ui().SetPointer(ui::Pointer::kDefault);
  lblCurrent.caption = std::string(kProgress) + "Restore Successfully Completed. ";
  prbGlobalProgress.visible = false;
  app_.Inform(EndMessage());
  app_.page_host().EnableSideButtons(true);
  cmdNext.enabled = true;
  PlayEndSound(app_);

  if (pbCurrent.value < 100) pbCurrent.value = 100;
  EnableInterface();
  if (!LeftInRestoreFolder && !declined) DeleteRestoreFolder(staging);
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
  app_.BeginRun(*this);
  prbGlobalProgress.visible = false;
  app_.ui().SetPointer(ui::Pointer::kHourglass);
}

void frmRFinish::EnableInterface() {
  app_.EndRun(*this, AbortFlag ? RunEnd::kStopped : RunEnd::kDone);
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

void frmRFinish::cmdstop_Click() {
  if (!app_.Ask("Are you sure, you want to stop the process?", ui::Icon::kInformation)) return;
  // The run may have ended while the question stood.
  if (!running_) return;
  Label7.caption = "Restore Process Aborted by user";
  app_.Inform("Restore Process Aborted by User");
  // The run asks for it at its next event.
  AbortFlag = true;
  app_.session().gStopRequested = true;
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

void frmRFinish::RegisterDataFiles(const std::function<void(const std::string& path)>& add_store) {
  for (const auto& [path, profile] : DataFileTable) {
    if (path.empty()) break;
    LblRegData.visible = true;
    LblRegData.caption = "Registering Data File for Profile : " + profile + "  " + path;
    if (!Contains(FoldCase(path), "archive.pst")) add_store(path);
  }
  LblRegData.visible = false;
}

// The steps of the run. ------------------------------------------------------------------------

void frmRFinish::RestoreInternetExplorerItem(const RestoreRow& row) {
  quorvale::RestoreInternetExplorerItem(run_.tools(), row);
}

void frmRFinish::RestoreOtherFiles(const RestoreRow& row) {
  quorvale::RestoreOtherFiles(run_.tools(), row);
}

void frmRFinish::ImportRegFile(const std::string& folder, const std::string& name,
                               const std::string&) {
  run_.tools().extractor.ImportRegFile(folder, name);
}

std::string frmRFinish::BackupBaseName() const { return quorvale::BackupBaseName(app_.session()); }

std::string frmRFinish::RemapIdentityKey(const std::string& key, const std::string& identity) {
  return quorvale::RemapIdentityKey(key, identity);
}

std::string frmRFinish::extractDesktopPath(const std::string& path) {
  return quorvale::extractDesktopPath(path);
}

std::string frmRFinish::restDesktopPath(const std::string& path) {
  return quorvale::restDesktopPath(path);
}

std::string frmRFinish::extractPath(const std::string& path) const {
  return quorvale::extractPath(app_, path);
}

std::string frmRFinish::restPath(const std::string& path) const {
  return quorvale::restPath(app_, path);
}

std::string frmRFinish::exchangeDriveLetter(const std::string& path, const std::string& drive) {
  const size_t colon = path.find(":\\");
  return drive + ":\\" + (colon == std::string::npos ? path : path.substr(colon + 2));
}

std::string frmRFinish::folderOnly(const std::string& path) {
  const size_t end = path.find('\\');
  return end == std::string::npos ? path : path.substr(0, end + 1);
}

}  // namespace quorvale
