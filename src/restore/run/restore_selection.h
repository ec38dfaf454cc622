// The ticked nodes of the restore's tree become the restore job.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "backup/format/settings_file.h"
#include "core/program/program.h"

namespace quorvale {

class RestoreSelection {
 public:
  // Empties the job's tables. `items` is what the backup's settings file lists.
  RestoreSelection(Program& program, const std::vector<SettingsItem>& items);

  // A ticked node, in the order of the tree: its path, its key, and the position in `items` of what
  // it stands for; -1 for a group.
  void Add(const std::string& path, const std::string& key, int item);
  // A node that is not ticked.
  void PassOver(const std::string& key);

 private:
  RestoreOrigin OriginOf(size_t item) const;
  void CountNamesakes();
  // A new row of the tables that nobody reads.
  void NewRow();

  Session& session_;
  const std::vector<SettingsItem>& items_;
  std::string documents_;  // the documents folder's word
  // How many items of the same entry name there are, and the place of each among them.
  struct Namesakes {
    size_t place = 0;
    size_t count = 1;
  };
  std::vector<Namesakes> namesakes_;
};

// The text before the first comma.
std::string UpToComma(const std::string& text);

}  // namespace quorvale
