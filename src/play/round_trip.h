// Compares a sample machine with another one onto which its backup was restored: file by file and
// registry key by registry key. It knows from the places themselves what belongs where, and asks
// none of the program's own procedures.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "platform/registry_text.h"
#include "play/new_machine.h"
#include "play/running_machine.h"

namespace quorvale {

struct RoundTripVerdict {
  int files = 0, identical_files = 0;
  int folders = 0, present_folders = 0;
  int keys = 0, present_keys = 0;
  std::vector<std::string> differences;  // a sentence each
  // Takes in what another comparison found.
  void Add(const RoundTripVerdict& other);
  bool AllWell() const {
    return files == identical_files && folders == present_folders && keys == present_keys;
  }
};

// What a backup can be made of, by the roots and nodes of its tree.
enum class SampleKind {
  kMail,  // "Outlook Express" or "Windows Mail"
  kOutlook,
  kBrowser,
  kDocuments,
  kDesktop,
  kAddedFolders,
  kAddedFiles,
};
const std::set<SampleKind>& AllSampleKinds();

class RoundTrip {
 public:
  RoundTrip(RunningMachine& source, const MachinePlan& source_plan, RunningMachine& target,
            const MachinePlan& target_plan);

  // The attributes in which files must agree.
  std::uint32_t compared_attributes = file_attribute::kReadOnly | file_attribute::kHidden |
                                      file_attribute::kSystem | file_attribute::kArchive;

  // What a backup of these kinds takes, but for what the two systems cannot share.
  RoundTripVerdict Compare(const std::set<SampleKind>& kinds = AllSampleKinds());

 private:
  void Tree(const std::string& source, const std::string& target);
  void Group(const std::string& source, const std::string& target, const std::string& extension);
  void FilePair(const std::string& source, const std::string& target);
  std::string OpenedMailStore();
  void MailFiles();
  void OutlookFiles();
  void UserFiles(const std::set<SampleKind>& kinds);
  void Keys(const std::set<SampleKind>& kinds);
  std::string WrongDataFile(const RegistryPath& key, const RegistryValue& value);
  bool SameValue(const RegistryPath& key, const RegistryValue& a, const RegistryValue& b);
  void Key(const std::string& path, bool with_values);
  void Difference(const std::string& sentence) { verdict_.differences.push_back(sentence); }

  RunningMachine& source_;
  RunningMachine& target_;
  const MachinePlan& source_plan_;
  const MachinePlan& target_plan_;
  const MachineLayout source_layout_, target_layout_;
  RoundTripVerdict verdict_;
};

}  // namespace quorvale
