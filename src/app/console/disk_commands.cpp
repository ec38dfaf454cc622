#include "app/console/disk_commands.h"

#include <ctime>
#include <ostream>

#include "platform/host/files.h"
#include "play/page_driver.h"
#include "play/running_machine.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

// "2009-11-14 22:05", in the time of this host.
std::string MomentText(FileTime moment) {
  const struct timespec time = host::FromFileTime(moment);
  struct tm local {};
  if (localtime_r(&time.tv_sec, &local) == nullptr) return "";
  char text[32];
  return std::strftime(text, sizeof(text), "%Y-%m-%d %H:%M", &local) > 0 ? text : "";
}

}  // namespace

std::optional<std::map<char, std::string>> ReadDrives(const std::vector<std::string>& texts) {
  std::map<char, std::string> drives;
  for (const std::string& text : texts) {
    if (text.size() < 3 || text[1] != '=') return std::nullopt;
    const char letter = static_cast<char>(text[0] & ~0x20);
    if (letter < 'A' || letter > 'Y' || drives.count(letter) != 0) return std::nullopt;
    drives[letter] = text.substr(2);
  }
  return drives;
}

bool DiskCommands::Open(const std::string& disk, const std::map<char, std::string>& drives) {
  disk_ = host::OldDisk::Open(disk, drives, &problem_);
  if (!disk_) return false;
  PrintRemarks();
  return true;
}

void DiskCommands::PrintRemarks() {
  const std::vector<std::string>& remarks = disk_->remarks();
  while (remarks_printed_ < remarks.size()) {
    terminal_.error << "quorvale: " << remarks[remarks_printed_++] << "\n";
  }
}

std::string DiskCommands::ProductsOf(const host::DiskUser& user) {
  const ScratchFolder scratch;
  if (scratch.path().empty()) return "";
  std::string problem = disk_->WriteMachine(user, scratch.path() + "/machine");
  PrintRemarks();
  if (!problem.empty()) return "(" + problem + ")";
  const auto computer = RunningMachine::Open(scratch.path() + "/machine", &problem);
  if (!computer) return "(" + problem + ")";
  PageDriver driver(*computer);
  const ui::TreeView* tree = driver.ShowComputer();
  std::string products;
  for (int i = 1; tree != nullptr && i <= tree->Count(); ++i) {
    const ui::TreeNode* node = tree->Node(i);
    // The roots without a product behind them are everybody's.
    const bool is_root = node->FullPath().find('\\') == std::string::npos;
    if (!is_root || node->image == "af" || node->image == "aa1" || node->image == "ab1") continue;
    products += (products.empty() ? "" : ", ") + node->FullPath();
  }
  return products;
}

bool DiskCommands::ListUsers() {
  terminal_.out << disk_->facts().product << ", computer " << disk_->facts().computer << "\n";
  if (disk_->users().empty()) {
    std::string problem;
    disk_->FindUser("", &problem_);
    return false;
  }
  for (const host::DiskUser& user : disk_->users()) {
    const std::string products = ProductsOf(user);
    terminal_.out << user.name << '\t' << user.profile << '\t'
                  << (user.last_use ? MomentText(*user.last_use) : "") << '\t' << products << '\n';
  }
  return true;
}

bool DiskCommands::MakeMachine(const std::string& user, const std::string& folder) {
  const host::DiskUser* found = disk_->FindUser(user, &problem_);
  if (found == nullptr) return false;
  problem_ = disk_->WriteMachine(*found, folder);
  PrintRemarks();
  if (!problem_.empty()) return false;
  for (const char letter : disk_->MissingDrives()) {
    terminal_.error << "quorvale: drive " << letter << ": is not here; if it is mounted, name its "
                    << "folder with --drive " << letter << "=FOLDER.\n";
  }
  return true;
}

}  // namespace quorvale
