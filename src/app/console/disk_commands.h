// The commands of the console edition that take an old disk or a Wine prefix as their source.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/console/console.h"
#include "platform/host/disk/old_disk.h"

namespace quorvale {

// "D=/mnt/d" of --drive, several of them, to folders by letter. Nothing if one is no such text.
std::optional<std::map<char, std::string>> ReadDrives(const std::vector<std::string>& texts);

class DiskCommands {
 public:
  explicit DiskCommands(Terminal& terminal) : terminal_(terminal) {}

  // Each answers whether it was done; if not, problem() says why.
  bool Open(const std::string& disk, const std::map<char, std::string>& drives);
  // Prints each user: name, profile folder, last use, products; a tab between.
  bool ListUsers();
  // Makes a machine folder for a user; "" is the only one.
  bool MakeMachine(const std::string& user, const std::string& folder);

  const std::string& problem() const { return problem_; }

 private:
  // What the program finds for a user: the roots of its tree.
  std::string ProductsOf(const host::DiskUser& user);
  void PrintRemarks();

  Terminal& terminal_;
  std::unique_ptr<host::OldDisk> disk_;
  std::size_t remarks_printed_ = 0;
  std::string problem_;
};

}  // namespace quorvale
