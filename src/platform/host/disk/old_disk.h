// The disk of a computer that no longer starts, or a Wine prefix: what is on it, and a machine
// folder for one of its users. Nothing is ever written on the disk.
//
// Start reading here. hive.h is what the three registry readers give, disk_facts.h what their
// trees say. This room stands beside the host binding; it knows no product.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/host/disk/disk_facts.h"
#include "platform/host/disk/hive.h"
#include "platform/host/files.h"

namespace quorvale::host {

struct DiskUser {
  std::string name;
  std::string id;                    // of the user's key in the list of profiles; "" without one
  std::string profile;               // path of the machine
  std::string registry;              // host path of the user's hive or text
  std::optional<FileTime> last_use;  // when that was written last
};

class OldDisk {
 public:
  // `folder` is a folder of the host where the disk is mounted, or a Wine prefix; `drives` are
  // further ones, by letter. Null, and a sentence, if it holds neither.
  static std::unique_ptr<OldDisk> Open(const std::string& folder,
                                       const std::map<char, std::string>& drives,
                                       std::string* problem);

  const DiskFacts& facts() const { return facts_; }
  // By name.
  const std::vector<DiskUser>& users() const { return users_; }
  // The user of this name, of a profile folder of this name, or with this id. Without a name the
  // only one. Null, and a sentence that names all users, if that is nobody.
  const DiskUser* FindUser(const std::string& name, std::string* problem) const;

  // Makes a machine folder for a user: its drives are the disk's, read-only, and the program's own
  // data folder lies in it. "" or a sentence; a folder that holds a machine is left as it is.
  std::string WriteMachine(const DiskUser& user, const std::string& folder);

  // The fixed drives of the computer whose folders nobody named.
  std::vector<char> MissingDrives() const;

  // What a person should know of what was read so far, a sentence each.
  const std::vector<std::string>& remarks() const { return remarks_; }

 private:
  OldDisk(const std::string& folder, const std::map<char, std::string>& drives);
  bool FindSystem(std::string* problem);
  bool FindWindows();
  bool ReadMachineRegistry(std::string* problem);
  bool ReadInto(const std::string& host_path, const std::string& name, std::string* problem);
  std::optional<Hive> ReadRegistry(const std::string& host_path, const HiveFilter& wanted,
                                   std::string* problem);
  bool PlaceDrives(std::string* problem);
  void ShowDrives(const std::map<char, std::string>& drives);
  void FindUsers();
  void AddListedUsers();
  std::vector<std::string> ProfileFolders() const;
  void AddUnlistedUsers();
  void AddClassicUser();
  void AddUser(DiskUser user);
  std::string UserRegistry(const DiskUser& user) const;
  std::optional<HiveKey> ReadUser(const DiskUser& user, std::string* problem);
  std::string WriteRegistry(const DiskUser& user, const HiveKey& hive, const std::string& folder);
  std::string MachineText(const DiskUser& user, const HiveKey& hive, char own) const;
  std::string HostPath(const std::string& path) const { return files_->HostPath(path); }
  bool IsFile(const std::string& path) const;
  void Remark(const std::string& sentence);

  const std::string folder_;            // without links
  std::map<char, std::string> drives_;  // host folders by letter
  std::unique_ptr<HostFiles> files_;
  DiskKind kind_ = DiskKind::kNt;
  std::string windows_;  // path of the machine
  HiveKey machine_;      // HKEY_LOCAL_MACHINE
  DiskFacts facts_;
  std::vector<DiskUser> users_;
  std::vector<std::string> remarks_;
};

}  // namespace quorvale::host
