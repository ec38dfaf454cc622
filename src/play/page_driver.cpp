#include "play/page_driver.h"

#include "backup/pages/FrmProcess.h"
#include "base/text.h"
#include "core/program/session.h"
#include "discovery/pages/FrmTwo.h"

namespace quorvale {

void PageDriver::Begin() {
  problem_.clear();
  archive_.clear();
  discs_ = 0;
  computer_.Start("");
}

bool PageDriver::Act(const std::string& problem) {
  if (problem_.empty()) problem_ = problem;
  return problem_.empty();
}

bool PageDriver::IsShown(const std::string& form) {
  if (computer_.app() == nullptr) return false;
  for (const ui::Form* loaded : computer_.app()->LoadedForms()) {
    if (loaded->name() == form) return IsOnScreen(*loaded);
  }
  return false;
}

// A click that leads to another page. The program may start itself again on the way.
bool PageDriver::ClickTo(const std::string& form, const std::string& control,
                         const std::string& next_form) {
  const size_t boxes = computer_.ui().boxes.size();
  if (!Act(hands().Click(form, control))) return false;
  if (computer_.ProgramEnded()) computer_.FollowRestart();
  if (IsShown(next_form)) return true;
  if (computer_.ui().boxes.size() == boxes) Act(form + " did not go on to " + next_form + ".");
  return false;
}

bool PageDriver::TickRoots(const std::string& form, const std::string& tree) {
  std::string problem;
  const ui::Control* control = hands().Find(form, tree, &problem);
  if (control == nullptr) return Act(problem);
  std::vector<std::string> roots;
  const ui::TreeView& view = static_cast<const ui::TreeView&>(*control);
  for (int i = 1; i <= view.Count(); ++i) {
    const ui::TreeNode* node = view.Node(i);
    const bool adds = node->image == "ab1" || (node->image == "aa1" && node->Children() == 0);
    if (node->Parent() == nullptr && !adds) roots.push_back(node->FullPath());
  }
  return TickPaths(form, roots);
}

bool PageDriver::TickPaths(const std::string& form, const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (!Act(hands().Tick(form, "tvwMain", path, true))) return false;
  }
  return true;
}

// A file dialog gives no file that is not there.
bool PageDriver::ChooseFile(const std::string& path) {
  const std::string file = ComputerPath(path);
  if (!computer_.app()->files().FileExists(file)) return Act("there is no file " + file + ".");
  computer_.ui().ExpectFile(file);
  return true;
}

bool PageDriver::AddAll(const std::string& root, const std::vector<std::string>& paths,
                        bool folders) {
  for (const std::string& path : paths) {
    if (folders) {
      computer_.ui().ExpectFolder(ComputerPath(path));
    } else {
      if (!ChooseFile(path)) return false;
    }
    // A box on the way says why the page did not take it.
    const size_t boxes = computer_.ui().boxes.size();
    if (!Act(hands().Select("FrmTwo", "tvwMain", root))) return false;
    if (computer_.ui().boxes.size() != boxes) return false;
  }
  return true;
}

bool PageDriver::FillItemPage(const BackupWishes& job) {
  if (!job.to.empty() && !Act(hands().Set("FrmTwo", "txtpath", ComputerPath(job.to)))) {
    return false;
  }
  if (job.all && !TickRoots("FrmTwo", "tvwMain")) return false;
  return TickPaths("FrmTwo", job.ticks) && AddAll("Add Other Folders", job.add_folders, true) &&
         AddAll("Add More Files", job.add_files, false);
}

bool PageDriver::FillOptionsPage(const BackupWishes& job) {
  if (job.log && !Act(hands().Check("frmThree", "chklogdetails", true))) return false;
  if (!job.level.empty()) {
    const bool none = job.level == "No Compression";
    if (!Act(hands().Check("frmThree", "chkcompression", !none))) return false;
    if (!none && !Act(hands().Choose("frmThree", "cmbCompLevel", job.level))) return false;
  }
  if (job.password.empty()) return true;
  return Act(hands().Check("frmThree", "chkProtectArchive", true)) &&
         Act(hands().Set("frmThree", "txtpwd", job.password)) &&
         Act(hands().Set("frmThree", "txtpwd2", job.password));
}

bool PageDriver::ChooseDrive(const std::string& drive) {
  std::string problem;
  const ui::Control* control = hands().Find("FrmBackupMedia", "cboDrives", &problem);
  if (control == nullptr) return Act(problem);
  const ui::ComboBox& drives = static_cast<const ui::ComboBox&>(*control);
  for (int i = 0; i < drives.Count(); ++i) {
    const std::string text = drives.Item(i);
    if (drive != std::to_string(i + 1) && !text.starts_with(drive)) continue;
    return Act(hands().Choose("FrmBackupMedia", "cboDrives", text));
  }
  return Act("there is no disc writer \"" + drive + "\".");
}

bool PageDriver::FillServer(const FtpAddress& server) {
  const char* page = "FrmBackupMedia";
  if (!Act(hands().Check(page, "ChkFTP", true)) ||
      !Act(hands().Set(page, "TxtHostname", server.host)) ||
      !Act(hands().Set(page, "TxtPort", server.port)) ||
      !Act(hands().Set(page, "TxtRemoteDir", server.folder))) {
    return false;
  }
  if (server.user.empty()) return Act(hands().Check(page, "ChkAnonymous", true));
  return Act(hands().Set(page, "TxtUserName", server.user)) &&
         Act(hands().Set(page, "TxtPassword", server.password));
}

// A failed upload leaves its dialog open, and nobody is here to read the answer in it and to close
// it; the account has it too.
bool PageDriver::StartBackup() {
  computer_.ui().modal_handler = [](ui::Form& form) {
    if (form.name() != FrmProcess::kName || !form.on_close_request) return false;
    form.on_close_request();
    return true;
  };
  const bool started = Act(hands().Click("frmfour", "cmdNext"));
  computer_.ui().modal_handler = nullptr;
  return started;
}

// The run itself ends well also where the server did not get the file.
Outcome PageDriver::UploadEnding(Outcome outcome) {
  if (outcome != Outcome::kDone || computer_.app()->session().gDelivered) return outcome;
  Act("the backup is " + archive_ + ", but the server did not get it.");
  return Outcome::kRefused;
}

bool PageDriver::FillMediaPage(const BackupWishes& job) {
  if (job.ftp) return FillServer(*job.ftp);
  if (job.disc.empty()) return true;
  const size_t boxes = computer_.ui().boxes.size();
  if (!Act(hands().Check("FrmBackupMedia", "ChkCDDVD", true))) return false;
  // A box on the way says why there is no drive.
  return computer_.ui().boxes.size() == boxes && ChooseDrive(job.disc);
}

// The run itself ends well also where its discs were not written.
Outcome PageDriver::BurnEnding(Outcome outcome) {
  if (outcome != Outcome::kDone) return outcome;
  archive_.clear();
  if (!computer_.app()->session().gDelivered) return Outcome::kRefused;
  discs_ = computer_.app()->session().discs_written;
  return outcome;
}

Outcome PageDriver::Ending() {
  if (computer_.app() == nullptr) return Outcome::kRefused;
  switch (computer_.app()->last_run_end()) {
    case RunEnd::kDone:
      return Outcome::kDone;
    case RunEnd::kStopped:
      return Outcome::kStopped;
    case RunEnd::kNone:
    case RunEnd::kFailed:
      break;
  }
  return Outcome::kRefused;
}

Outcome PageDriver::Backup(const BackupWishes& job) {
  Begin();
  const bool ready = ClickTo("FrmWelcome", "cmdWC_TakeBackup", "frmOne") &&
                     Act(hands().Set("frmOne", "txtBackupname", job.name)) &&
                     ClickTo("frmOne", "cmdNext", "FrmTwo") && FillItemPage(job) &&
                     ClickTo("FrmTwo", "cmdNext", "frmThree") && FillOptionsPage(job) &&
                     ClickTo("frmThree", "cmdNext", "FrmBackupMedia") && FillMediaPage(job) &&
                     ClickTo("FrmBackupMedia", "cmdNext", "frmfour");
  if (!ready || !StartBackup()) return Outcome::kRefused;
  archive_ = computer_.app()->session().gBackupBasePath + ".obk";
  const Outcome outcome = Ending();
  if (job.ftp) return UploadEnding(outcome);
  return job.disc.empty() ? outcome : BurnEnding(outcome);
}

Outcome PageDriver::QuickBackup() {
  Begin();
  const bool ready = ClickTo("FrmWelcome", "lblQuicklinks(0)", "frmfour");
  if (!ready || !Act(hands().Click("frmfour", "cmdNext"))) return Outcome::kRefused;
  archive_ = computer_.app()->session().gBackupBasePath + ".obk";
  return Ending();
}

bool PageDriver::SelectFile(const RestoreWishes& job) {
  Begin();
  if (!ClickTo("FrmWelcome", "cmdWC_Restore", "frmROne")) return false;
  if (!ChooseFile(job.file) || !Act(hands().Click("frmROne", "Command1"))) return false;
  std::string problem;
  const ui::Control* box = hands().Find("frmROne", "txtDefaultPassword", &problem);
  if (box == nullptr) return Act(problem);
  // An archive without a password leaves the box disabled: there is nothing to type.
  if (!job.password.empty() && box->enabled &&
      !Act(hands().Set("frmROne", "txtDefaultPassword", job.password))) {
    return false;
  }
  if (job.no_restore_folder && !Act(hands().Check("frmROne", "Check1", true))) return false;
  return job.to.empty() || Act(hands().Set("frmROne", "txtRestore", ComputerPath(job.to)));
}

Outcome PageDriver::Restore(const RestoreWishes& job) {
  if (!SelectFile(job) || !ClickTo("frmROne", "cmdNext", "frmRTwo")) return Outcome::kRefused;
  if (job.all && !TickRoots("frmRTwo", "tvwMain")) return Outcome::kRefused;
  if (!TickPaths("frmRTwo", job.ticks) || !ClickTo("frmRTwo", "cmdNext", "frmRfour")) {
    return Outcome::kRefused;
  }
  if (!Act(hands().Check("frmRfour", job.keep ? "optRestore" : "optDefault", true)) ||
      !Act(hands().Click("frmRfour", "cmdNext"))) {
    return Outcome::kRefused;
  }
  return Ending();
}

const ui::TreeView* PageDriver::ShowBackup(const std::string& file, const std::string& password) {
  RestoreWishes job;
  job.file = file;
  job.password = password;
  if (!SelectFile(job) || !ClickTo("frmROne", "cmdNext", "frmRTwo")) return nullptr;
  std::string problem;
  const ui::Control* tree = hands().Find("frmRTwo", "tvwMain", &problem);
  return static_cast<const ui::TreeView*>(tree);
}

// The page fills its tree when it loads; it need not be shown.
const ui::TreeView* PageDriver::ShowComputer() {
  Begin();
  if (computer_.app()->Ended()) {
    Act("The program ended at once.");
    return nullptr;
  }
  return &computer_.app()->Get<FrmTwo>().tvwMain;
}

}  // namespace quorvale
