#include "backup/pages/FrmProcess.h"

#include <algorithm>

namespace quorvale {
namespace {

constexpr int kReadingPause = 1000;  // milliseconds in which a person reads the status

// How often the drives are asked for before the work is given up.
constexpr int kInitialiseAttempts = 3;

}  // namespace

FrmProcess::FrmProcess(Application& app)
    : ui::Form(app.ui(), kName),
      app_(app),
      upload_(app.platform().ftp, app.platform().system, UploadEvents()),
      discs_(app) {
  PlaceControls();
  ConnectHandlers();
}

void FrmProcess::ConnectHandlers() {
  Timer1.on_timer = [this] { Timer1_Timer(); };
  TimerStart.on_timer = [this] { TimerStart_Timer(); };
  on_close_request = [this] { EndDialog(); };
}

FrmProcess::~FrmProcess() { app_.EndRun(*this); }

void FrmProcess::Unload() { app_.EndRun(*this); }

RunProgress FrmProcess::Progress() const {
  return {.percent = prgStatus.value, .archive_percent = std::nullopt, .doing = lblStatus.caption};
}

bool FrmProcess::StopRun() {
  if (!Visible()) return false;
  EndDialog();
  return true;
}

void FrmProcess::PlaceControls() {
  SetSize(420, 130);
  back_color = ui::Rgb(255, 255, 255);
  Img.bounds = {16, 16, 48, 48};
  LblHeading.bounds = {80, 16, 324, 36};
  LblHeading.bold = true;
  LblHeading.fore_color = ui::Rgb(9, 82, 172);
  lblStatus.bounds = {80, 58, 324, 20};
  prgStatus.bounds = {16, 92, 388, 20};
}

void FrmProcess::Load() {
  const Session& session = app_.session();
  mFiles.clear();
  mDiscIndex = 0;
  mNextDiscPending = false;
  mAborted = false;
  prgStatus.value = 0;
  app_.BeginRun(*this);
  if (session.gMediaFtp) {
    SetCaption("Uploading to FTP");
    LblHeading.caption = "Uploading Please wait....";
    Img.picture = "FTPIcon";
  } else {
    SetCaption("Backingup data to CD");
    LblHeading.caption =
        "Data backup to CD - Total CD Required - " + std::to_string(session.gMediaDiscCount);
    Img.picture = "WriteCD";
  }
  TimerStart.enabled = true;
}

void FrmProcess::TimerStart_Timer() {
  TimerStart.enabled = false;
  app_.Pump();
  if (!Going()) return;
  if (app_.session().gMediaFtp) {
    Upload();
  } else {
    giveZipFiles(app_.session().gDeliverySource);
  }
}

void FrmProcess::ShowStatus(const std::string& text) {
  lblStatus.caption = text;
  app_.Pump();
}

bool FrmProcess::Going() const {
  return !app_.Ended() && app_.Loaded<FrmProcess>() == this && Visible();
}

void FrmProcess::EndDialog() {
  if (app_.Loaded<FrmProcess>() == this) app_.Unload<FrmProcess>();
}

// --- Upload -------------------------------------------------------------------------------------

bool FrmProcess::Connect() { return upload_.Connect(app_.session().ftp_server); }

FtpEvents FrmProcess::UploadEvents() {
  return {.progress = [this](int percent) { prgStatus.value = std::clamp(percent, 0, 100); },
          .reply = [this](const std::string& line) { lblStatus.caption = line; },
          .keep_going =
              [this] {
                app_.Pump();
                return Going();
              }};
}

void FrmProcess::Upload() {
  Session& session = app_.session();
  const std::string name = session.gBackupName + ".obk";
  const FtpDeliveryResult result = upload_.Send(session.ftp_server, session.gDeliverySource, name);
  session.gDelivered = result.sent;
  TellDelivery(result, session.gDeliverySource, name, &app_.account());
  if (!Going()) return;
  if (result.sent && result.told_complete) return EndDialog();
  if (!result.sent && !result.no_folder) return ShowRefusal(result.answer);
  app_.Inform(result.sent ? "Transfer completed" : "Folder name is invalid");
  Hide();
}

// The dialog stays until the user has read it.
void FrmProcess::ShowRefusal(const std::string& answer) {
  lblStatus.caption = answer.empty() ? "The server cannot be reached." : answer;
  lblStatus.tooltip = lblStatus.caption.get();
}

// --- Discs --------------------------------------------------------------------------------------

std::string FrmProcess::ConvertBytesToMBString(std::uint64_t bytes) {
  return std::to_string(WholeMegabytes(bytes));
}

int FrmProcess::GetFilesInFolder(const std::string& folder, std::vector<std::string>* names) {
  *names = app_.files().ListFileNames(folder, "*.*");
  return static_cast<int>(names->size());
}

void FrmProcess::giveZipFiles(const std::string& folder) {
  app_.Pump();
  mFiles = discs_.Parts(folder);
  mDiscIndex = 0;
  WriteDiscFile(FileAt(mDiscIndex));
  if (mFiles.empty()) EndDialog();
}

std::string FrmProcess::FileAt(int index) const {
  return index < static_cast<int>(mFiles.size()) ? mFiles[static_cast<size_t>(index)] : "";
}

void FrmProcess::WriteDiscFile(const std::string& path) {
  if (path.empty()) {
    Timer1.enabled = false;
    return;
  }
  if (FindMedium(path)) return Burn(path);
  EndDialog();
}

bool FrmProcess::FindMedium(const std::string& path) {
  int attempts = 0;
  while (Going()) {
    switch (discs_.FindRoom(path)) {
      case DiscDelivery::Room::kEnough:
        return true;
      case DiscDelivery::Room::kNoWriter:
        app_.Inform("Drives Cannot be initialized...Contact support!");
        if (++attempts == kInitialiseAttempts) return false;
        break;
      case DiscDelivery::Room::kDriveRefused:
        app_.Inform("Select a different drive...could not open selected drive!");
        return false;
      case DiscDelivery::Room::kTooLittle:
        attempts = 0;
        if (AskForAnotherMedium()) break;
        app_.Inform("CD writting aborted");
        return false;
    }
  }
  return false;
}

bool FrmProcess::AskForAnotherMedium() {
  discs_.Eject();
  mAborted = !app_.Ask("Please enter a writable CD/DVD. Do you want to continue..");
  return !mAborted;
}

DiscEvents FrmProcess::BurnEvents() {
  return {.file_added = [this] { ShowStatus("Adding backup file..."); },
          .write_started = [this] { ShowStatus("Preparing to write..."); },
          .progress =
              [this](std::uint64_t done, std::uint64_t total) {
                lblStatus.caption = "Writting tracks...";
                if (total == 0) return;
                prgStatus.value = static_cast<int>(std::min(done, total) * 100 / total);
              },
          .keep_going =
              [this] {
                app_.Pump();
                return Going();
              }};
}

void FrmProcess::Burn(const std::string& path) {
  prgStatus.value = 0;
  const bool written = discs_.Burn(path, BurnEvents());
  if (!Going()) return;
  if (written) return DiscWritten();
  app_.Inform("Disc Write could not be started");
  EndDialog();
}

void FrmProcess::DiscWritten() {
  ShowStatus("Writting Completed...");
  app_.platform().system.Sleep(kReadingPause);
  ShowStatus("Ejecting Disk...");
  discs_.Eject();
  ++mDiscIndex;
  app_.session().discs_written = mDiscIndex;
  if (FileAt(mDiscIndex).empty()) {
    app_.session().gDelivered = true;
    return EndDialog();
  }
  app_.Inform("Please insert disk " + std::to_string(mDiscIndex + 1));
  if (!Going()) return;
  mNextDiscPending = true;
  Timer1.enabled = true;
}

void FrmProcess::Timer1_Timer() {
  // The next disc is written inside this very tick.
  Timer1.enabled = false;
  if (!mNextDiscPending) return;
  mNextDiscPending = false;
  const std::string path = FileAt(mDiscIndex);
  if (path.empty()) return EndDialog();
  WriteDiscFile(path);
}

}  // namespace quorvale
