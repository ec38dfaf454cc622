#include "play/round_trip.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "platform/registry.h"
#include "platform/registry_text.h"
#include "play/sample_machine.h"

namespace quorvale {
namespace {

constexpr std::size_t kBlock = 1u << 16;

// True if both files can be read and hold the same bytes.
bool SameBytes(Files& source_files, const std::string& source, Files& target_files,
               const std::string& target) {
  const std::unique_ptr<InputFile> a = source_files.OpenRead(source);
  const std::unique_ptr<InputFile> b = target_files.OpenRead(target);
  if (!a || !b || a->Size() != b->Size()) return false;
  std::string block_a(kBlock, '\0'), block_b(kBlock, '\0');
  while (true) {
    const std::ptrdiff_t count_a = a->Read(block_a.data(), kBlock);
    const std::ptrdiff_t count_b = b->Read(block_b.data(), kBlock);
    if (count_a < 0 || count_a != count_b) return false;
    if (count_a == 0) return true;
    const std::size_t size = static_cast<std::size_t>(count_a);
    if (std::string_view(block_a.data(), size) != std::string_view(block_b.data(), size)) {
      return false;
    }
  }
}

bool HasDot(const std::string& name) { return Contains(name, "."); }

// On Windows 95 the program lists no profiles of Outlook: a backup holds neither them nor their
// data files.
bool ListsProfiles(const MachineLayout& layout) {
  return layout.IsNtFamily() || layout.version.minor != 0;
}

}  // namespace

void RoundTripVerdict::Add(const RoundTripVerdict& other) {
  files += other.files;
  identical_files += other.identical_files;
  folders += other.folders;
  present_folders += other.present_folders;
  keys += other.keys;
  present_keys += other.present_keys;
  differences.insert(differences.end(), other.differences.begin(), other.differences.end());
}

RoundTrip::RoundTrip(RunningMachine& source, const MachinePlan& source_plan, RunningMachine& target,
                     const MachinePlan& target_plan)
    : source_(source),
      target_(target),
      source_plan_(source_plan),
      target_plan_(target_plan),
      source_layout_(*LayoutOf(source_plan.like, source_plan.user)),
      target_layout_(*LayoutOf(target_plan.like, target_plan.user)) {}

const std::set<SampleKind>& AllSampleKinds() {
  static const std::set<SampleKind> kinds = {SampleKind::kMail,      SampleKind::kOutlook,
                                             SampleKind::kBrowser,   SampleKind::kDocuments,
                                             SampleKind::kDesktop,   SampleKind::kAddedFolders,
                                             SampleKind::kAddedFiles};
  return kinds;
}

RoundTripVerdict RoundTrip::Compare(const std::set<SampleKind>& kinds) {
  verdict_ = {};
  if (kinds.contains(SampleKind::kMail)) MailFiles();
  if (kinds.contains(SampleKind::kOutlook)) OutlookFiles();
  UserFiles(kinds);
  Keys(kinds);
  return verdict_;
}

void RoundTrip::FilePair(const std::string& source, const std::string& target) {
  ++verdict_.files;
  Files& source_files = source_.platform().files;
  Files& target_files = target_.platform().files;
  const std::optional<FileInfo> a = source_files.Stat(source);
  const std::optional<FileInfo> b = target_files.Stat(target);
  if (!a || !b) return Difference(target + " is missing");
  if (!SameBytes(source_files, source, target_files, target)) {
    return Difference(target + " has another content than " + source);
  }
  if (a->modified != b->modified) return Difference(target + " has another time");
  if ((a->attributes & compared_attributes) != (b->attributes & compared_attributes)) {
    return Difference(target + " has other attributes");
  }
  ++verdict_.identical_files;
}

// A whole folder. Files whose names have no dot are no part of a backup.
void RoundTrip::Tree(const std::string& source, const std::string& target) {
  for (const FileInfo& info : source_.platform().files.List(source)) {
    const std::string from = WithBackslash(source) + info.name;
    const std::string to = WithBackslash(target) + info.name;
    if (!info.IsFolder()) {
      if (HasDot(info.name)) FilePair(from, to);
      continue;
    }
    ++verdict_.folders;
    const std::optional<FileInfo> found = target_.platform().files.Stat(to);
    if (found && found->IsFolder()) {
      ++verdict_.present_folders;
    } else {
      Difference("folder " + to + " is missing");
    }
    Tree(from, to);
  }
}

// The files of one folder with one extension; "" for all.
void RoundTrip::Group(const std::string& source, const std::string& target,
                      const std::string& extension) {
  for (const FileInfo& info : source_.platform().files.List(source)) {
    if (info.IsFolder() || !HasDot(info.name)) continue;
    if (EndsWithNoCase(info.name, extension)) {
      FilePair(source + "\\" + info.name, target + "\\" + info.name);
    }
  }
}

// Where the target's mail program looks: the store of its present default identity.
std::string RoundTrip::OpenedMailStore() {
  Registry registry(target_.platform().registry, target_.platform().system);
  const std::string identity =
      registry.RegGetValue(RegistryRoot::kCurrentUser, "Identities", "Default User ID");
  const std::string root = registry.RegGetValue(
      RegistryRoot::kCurrentUser,
      "Identities\\" + identity + "\\Software\\Microsoft\\Outlook Express\\5.0", "Store Root");
  return WithoutBackslash(ReplaceAll(root, "%UserProfile%", target_layout_.profile));
}

void RoundTrip::MailFiles() {
  if (source_layout_.IsVista() != target_layout_.IsVista()) return;
  if (source_layout_.IsVista()) {
    Tree(source_layout_.local_app_data + "\\Microsoft\\Windows Mail",
         target_layout_.local_app_data + "\\Microsoft\\Windows Mail");
    Tree(source_layout_.profile + "\\Contacts", target_layout_.profile + "\\Contacts");
    return;
  }
  Group(MailStoreFolder(source_plan_, source_layout_), OpenedMailStore(), ".dbx");
  const std::string book = "\\Microsoft\\Address Book\\";
  FilePair(source_layout_.app_data + book + source_plan_.user + ".wab",
           target_layout_.app_data + book + target_plan_.user + ".wab");
  const std::string stationery = "\\Microsoft Shared\\Stationery";
  Group(source_layout_.common_files + stationery, target_layout_.common_files + stationery, "");
}

void RoundTrip::OutlookFiles() {
  const std::string roaming = "\\Application Data\\Microsoft";
  const std::string local = "\\Local Settings\\Application Data\\Microsoft\\Outlook";
  const std::string from = source_layout_.profile;
  const std::string to = target_layout_.profile;
  const bool profiles = ListsProfiles(source_layout_);
  Group(from + local, to + local, profiles ? "" : ".pab");
  Group("C:\\Mail archive", to + local, ".pst");
  Group(from + roaming + "\\Outlook", to + roaming + "\\Outlook", "");
  Group(from + roaming + "\\Signatures", to + roaming + "\\Signatures", "");
  // Outlook 2007, which came with Vista, keeps its dictionaries elsewhere than those before it.
  const auto proof = [](const MachineLayout& layout) {
    return layout.IsVista() ? "\\UProof" : "\\Proof";
  };
  Group(from + roaming + proof(source_layout_), to + roaming + proof(target_layout_), ".dic");
}

void RoundTrip::UserFiles(const std::set<SampleKind>& kinds) {
  if (kinds.contains(SampleKind::kBrowser)) {
    Tree(source_layout_.favorites, target_layout_.favorites);
    Tree(source_layout_.cookies, target_layout_.cookies);
  }
  // The documents folder of one system has no place on the other kind.
  const bool same_documents = source_layout_.IsVista() == target_layout_.IsVista();
  if (kinds.contains(SampleKind::kDocuments) && same_documents) {
    Tree(source_layout_.documents, target_layout_.documents);
  }
  if (kinds.contains(SampleKind::kDesktop)) Tree(source_layout_.desktop, target_layout_.desktop);
  const SampleExtras extras = ExtrasOf(source_plan_);
  if (kinds.contains(SampleKind::kAddedFolders)) {
    for (const std::string& folder : extras.folders) Tree(folder, folder);
  }
  if (kinds.contains(SampleKind::kAddedFiles)) {
    for (const std::string& file : extras.files) FilePair(file, file);
  }
}

// What a value of a mail profile says about a data file: "" if it names none, or one that is there
// and is stored as the messaging system stores it.
std::string RoundTrip::WrongDataFile(const RegistryPath& key, const RegistryValue& value) {
  std::string path;
  if (value.name == "001e6700") {
    target_.platform().registry.QueryText(key.root, key.subkey, value.name, &path);
  } else if (value.name == "001f6700" || value.name == "001f6610") {
    const bool ends_well = value.data.size() % 2 == 0 && value.data.ends_with(std::string(2, '\0'));
    if (!ends_well) return "does not end in one 16-bit NUL";
    path = Utf16BytesToUtf8(value.data.substr(0, value.data.size() - 2));
    if (Contains(path, std::string(1, '\0'))) return "has more than one NUL";
  } else {
    return "";
  }
  return target_.platform().files.Stat(path) ? "" : "names " + path + ", which is not there";
}

// Texts are the same under each code page, where their bytes may differ.
bool RoundTrip::SameValue(const RegistryPath& key, const RegistryValue& a, const RegistryValue& b) {
  if (a.type != b.type) return false;
  if (!registry_type::IsText(a.type)) return a.data == b.data;
  std::string text_a, text_b;
  const long status_a =
      source_.platform().registry.QueryText(key.root, key.subkey, a.name, &text_a);
  const long status_b =
      target_.platform().registry.QueryText(key.root, key.subkey, a.name, &text_b);
  return status_a == registry_status::kOk && status_b == status_a && text_a == text_b;
}

// A key with all below it. Without values where a restore fits them to the new computer.
void RoundTrip::Key(const std::string& path, bool with_values) {
  const std::optional<RegistryPath> key = ParseRegistryPath(path);
  RegistryStore& a = source_.platform().registry;
  RegistryStore& b = target_.platform().registry;
  if (!key || !a.KeyExists(key->root, key->subkey)) return;
  ++verdict_.keys;
  std::vector<RegistryValue> values;
  a.ListValues(key->root, key->subkey, &values);
  std::string missing;
  if (!b.KeyExists(key->root, key->subkey)) missing = "key " + path + " is missing";
  for (const RegistryValue& value : values) {
    RegistryValue found;
    const bool there =
        b.QueryValue(key->root, key->subkey, value.name, &found) == registry_status::kOk;
    const bool same = there && SameValue(*key, value, found);
    if (with_values && !same && missing.empty()) {
      missing = "value " + path + "\\" + value.name + (there ? " differs" : " is missing");
    }
    const std::string wrong = there ? WrongDataFile(*key, found) : "";
    if (!wrong.empty()) missing = "value " + path + "\\" + value.name + " " + wrong;
  }
  if (missing.empty()) {
    ++verdict_.present_keys;
  } else {
    Difference(missing);
  }
  std::vector<std::string> names;
  a.ListSubkeys(key->root, key->subkey, &names);
  for (const std::string& name : names) Key(path + "\\" + name, with_values);
}

void RoundTrip::Keys(const std::set<SampleKind>& kinds) {
  const std::string user = "HKEY_CURRENT_USER\\Software\\Microsoft\\";
  const bool same_mail = source_layout_.IsVista() == target_layout_.IsVista();
  if (kinds.contains(SampleKind::kMail) && same_mail) {
    if (source_layout_.IsVista()) {
      Key(user + "Windows Mail", true);
    } else {
      Key(user + "Internet Account Manager", true);
      Key(user + "Outlook Express", true);
      Key("HKEY_CURRENT_USER\\Identities", false);
    }
  }
  if (kinds.contains(SampleKind::kOutlook)) {
    if (ListsProfiles(source_layout_) &&
        source_layout_.IsNtFamily() == target_layout_.IsNtFamily()) {
      Key(user + (source_layout_.IsNtFamily()
                      ? "Windows NT\\CurrentVersion\\Windows Messaging Subsystem\\Profiles"
                      : "Windows Messaging Subsystem\\Profiles"),
          false);
    }
    Key(user + "Exchange\\Client\\Options", true);
  }
  if (kinds.contains(SampleKind::kBrowser)) {
    Key(user + "Internet Explorer", true);
    Key(user + "Windows\\CurrentVersion\\Internet Settings", true);
    Key("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer", true);
  }
}

}  // namespace quorvale
