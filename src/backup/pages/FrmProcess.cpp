#include "backup/pages/FrmProcess.h"

#include <algorithm>
#include <cmath>

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmOne.h"
#include "base/paths.h"
#include "base/text.h"
#include "logs/run/pathLogger.h"

namespace quorvale {
namespace {

constexpr double kBytesPerMegabyte = 1048576;
constexpr int kReadingPause = 1000;  // milliseconds in which a person reads the status

// How often the drives are asked for before the work is given up.
constexpr int kInitialiseAttempts = 3;

// What one server says where the folder does not exist. Others have other words.
constexpr char kNoSuchFolder[] = "550 sdds: The system cannot find the file specified.";
constexpr char kTransferComplete[] = "226 Transfer complete.";

}  // namespace

FrmProcess::FrmProcess(Application& app) : ui::Form(app.ui(), kName), app_(app) {
  LayOut();
  Timer1.on_timer = [this] { Timer1_Timer(); };
  TimerStart.on_timer = [this] { TimerStart_Timer(); };
  on_close_request = [this] { EndDialog(); };
}

void FrmProcess::LayOut() {
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

bool FrmProcess::Connect() {
  FrmBackupMedia& media = app_.Get<FrmBackupMedia>();
  if (!media.OpenServer(Trim(media.TxtHostname.text.get()), Trim(media.TxtPort.text.get()),
                        Trim(media.TxtUserName.text.get()), Trim(media.TxtPassword.text.get()))) {
    return false;
  }
  app_.platform().ftp.CurrentFolder();
  return true;
}

void FrmProcess::Upload() {
  FtpClient& ftp = app_.platform().ftp;
  FrmBackupMedia& media = app_.Get<FrmBackupMedia>();
  folder_is_invalid_ = false;
  transfer_is_told_ = false;
  ftp.Listen({.progress = [this](int percent) { prgStatus.value = std::clamp(percent, 0, 100); },
              .reply = [this](const std::string& line) { ServerReplied(line); },
              .keep_going =
                  [this] {
                    app_.Pump();
                    return Going();
                  }});
  if (Trim(media.TxtRemoteDir.text.get()).empty()) media.TxtRemoteDir.text = "/";
  const bool sent = Connect() && SendFile(media);
  app_.session().gDelivered = sent;
  ftp.Listen({});
  ftp.Disconnect();
  if (!Going()) return;
  if (folder_is_invalid_) app_.Inform("Folder name is invalid");
  if (sent && transfer_is_told_) return EndDialog();
  if (sent) app_.Inform("Transfer completed");
  Hide();
}

bool FrmProcess::SendFile(FrmBackupMedia& media) {
  FtpClient& ftp = app_.platform().ftp;
  if (!ftp.ChangeFolder(media.TxtRemoteDir.text)) return false;
  const std::string remote_name = app_.Get<frmOne>().txtBackupname.text.get() + ".obk";
  return ftp.Send(app_.session().gDeliverySource, remote_name);
}

void FrmProcess::ServerReplied(const std::string& line) {
  lblStatus.caption = line;
  if (line == kNoSuchFolder) folder_is_invalid_ = true;
  if (line == kTransferComplete) transfer_is_told_ = true;
}

// --- Discs --------------------------------------------------------------------------------------

std::string FrmProcess::ConvertBytesToMBString(std::uint64_t bytes) {
  return std::to_string(std::llround(static_cast<double>(bytes) / kBytesPerMegabyte));
}

int FrmProcess::GetFilesInFolder(const std::string& folder, std::vector<std::string>* names) {
  *names = app_.files().ListFileNames(folder, "*.*");
  return static_cast<int>(names->size());
}

void FrmProcess::giveZipFiles(const std::string& folder) {
  app_.Pump();
  pathLogger walk(app_.platform().files, [this] { app_.Pump(); });
  walk.fullFileNamesOnly = true;
  walk.LogPath(folder);
  mFiles = walk.fullFileNames().entries();
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
  while (Going()) {
    if (!DriveIsReady()) return EndDialog();
    if (MediumHasRoom(path)) return Burn(path);
    if (!AskForAnotherMedium()) {
      app_.Inform("CD writting aborted");
      return EndDialog();
    }
  }
}

bool FrmProcess::DriveIsReady() {
  DiscWriter& discs = app_.platform().discs;
  int attempts = 0;
  while (!discs.Initialise()) {
    app_.Inform("Drives Cannot be initialized...Contact support!");
    if (++attempts == kInitialiseAttempts || !Going()) return false;
  }
  const ui::ComboBox& drives = app_.Get<FrmBackupMedia>().cboDrives;
  const bool chosen = drives.list_index >= 0;
  if (chosen && discs.Open(drives.ItemData(drives.list_index))) return true;
  app_.Inform("Select a different drive...could not open selected drive!");
  return false;
}

bool FrmProcess::MediumHasRoom(const std::string& path) {
  DiscWriter& discs = app_.platform().discs;
  const auto file = app_.platform().files.Stat(path);
  const std::uint64_t free_bytes = discs.MediumLoaded() ? discs.FreeBytes() : 0;
  // A small file has no whole megabyte, and neither has a drive without a medium.
  if (!file || free_bytes == 0) return false;
  return Val(ConvertBytesToMBString(free_bytes)) >= Val(ConvertBytesToMBString(file->size));
}

bool FrmProcess::AskForAnotherMedium() {
  app_.platform().discs.Eject();
  mAborted = !app_.Ask("Please enter a writable CD/DVD. Do you want to continue..");
  return !mAborted;
}

void FrmProcess::Burn(const std::string& path) {
  prgStatus.value = 0;
  const DiscEvents events = {.file_added = [this] { ShowStatus("Adding backup file..."); },
                             .write_started = [this] { ShowStatus("Preparing to write..."); },
                             .progress =
                                 [this](std::uint64_t done, std::uint64_t total) {
                                   lblStatus.caption = "Writting tracks...";
                                   if (total > 0)
                                     prgStatus.value =
                                         static_cast<int>(std::min(done, total) * 100 / total);
                                 },
                             .keep_going =
                                 [this] {
                                   app_.Pump();
                                   return Going();
                                 }};
  const bool written = app_.platform().discs.Burn(path, FileNameOf(path), events);
  if (!Going()) return;
  if (written) return DiscWritten();
  app_.Inform("Disc Write could not be started");
  EndDialog();
}

void FrmProcess::DiscWritten() {
  ShowStatus("Writting Completed...");
  app_.platform().system.Sleep(kReadingPause);
  ShowStatus("Ejecting Disk...");
  app_.platform().discs.Eject();
  ++mDiscIndex;
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
