// What a backup took on one computer comes back on another one, kind by kind and all together.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "discovery/products/outlook_profile.h"
#include "platform/registry_text.h"
#include "play/round_trip.h"
#include "play/sample_machine.h"
#include "restore/round_trip_machine.h"

namespace quorvale::restore_test {
namespace {

constexpr std::uint32_t kComparedBits = file_attribute::kReadOnly | file_attribute::kHidden |
                                        file_attribute::kSystem | file_attribute::kArchive;

struct FileFacts {
  std::string bytes;
  FileTime modified = 0;
  std::uint32_t attributes = 0;
  bool operator==(const FileFacts&) const = default;
};
using FileMap = std::map<std::string, FileFacts>;  // by path in lower case

void CollectFiles(Machine& machine, const std::string& folder, FileMap* files) {
  FileToolkit toolkit(machine.computer->platform().files, [] {});
  for (const FileInfo& info : toolkit.files().List(folder)) {
    const std::string path = WithBackslash(folder) + info.name;
    if (Contains(path, "\\Tarnwick\\Quorvale")) continue;
    if (info.IsFolder()) {
      CollectFiles(machine, path, files);
    } else {
      (*files)[FoldCase(path)] = {toolkit.ReadWhole(path).value_or("unreadable"), info.modified,
                                  info.attributes & kComparedBits};
    }
  }
}

FileMap FilesOf(Machine& machine) {
  FileMap files;
  for (const char* drive : {"C:\\", "D:\\", "F:\\"}) CollectFiles(machine, drive, &files);
  return files;
}

// All values below a key: "key\name" to type and data.
void CollectValues(Machine& machine, RegistryRoot root, const std::string& key,
                   std::map<std::string, std::string>* values) {
  RegistryStore& registry = machine.computer->platform().registry;
  std::vector<RegistryValue> here;
  registry.ListValues(root, key, &here);
  for (const RegistryValue& value : here) {
    (*values)[FoldCase(key + "\\" + value.name)] = std::to_string(value.type) + ":" + value.data;
  }
  std::vector<std::string> names;
  registry.ListSubkeys(root, key, &names);
  for (const std::string& name : names) {
    CollectValues(machine, root, key.empty() ? name : key + "\\" + name, values);
  }
}

std::map<std::string, std::string> ValuesOf(Machine& machine, const std::string& key) {
  std::map<std::string, std::string> values;
  const std::optional<RegistryPath> path = ParseRegistryPath(key);
  if (path) CollectValues(machine, path->root, path->subkey, &values);
  return values;
}

// One kind of item: what is ticked, which folders of the one computer correspond to which of the
// other one, which files of them belong to the kind, and which registry keys.
struct Kind {
  std::string name;
  std::vector<std::string> ticks;
  std::vector<std::pair<std::string, std::string>> folders;
  std::string extension;  // of the files that count, "" for all
  bool deep = false;      // with all below the folders
  std::vector<std::string> keys;
  std::vector<std::string> renamed = {};  // a file's path there and here
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

constexpr char kIdentityA[] = "{AAAAAAAA-7D44-4B8E-9A61-0C55E2D7B901}";
constexpr char kIdentityB[] = "{BBBBBBBB-7D44-4B8E-9A61-0C55E2D7B902}";

std::vector<Kind> XpKinds() {
  MachinePlan a;
  a.user = "Anna";
  a.identity = kIdentityA;
  MachinePlan b;
  b.user = "Bert";
  b.identity = kIdentityB;
  const MachineLayout from = *LayoutOf("xp", "Anna");
  const MachineLayout to = *LayoutOf("xp", "Bert");
  const std::string five = IdentityKey(a) + "\\Software\\Microsoft\\Outlook Express\\5.0\\";
  const std::string user = "HKEY_CURRENT_USER\\Software\\Microsoft\\";
  const std::string roaming = "\\Application Data\\Microsoft\\Outlook";
  const std::string local = "\\Local Settings\\Application Data\\Microsoft\\Outlook";
  const std::string accounts = "Outlook Express\\Account Settings";
  const std::string account_key = user + "Internet Account Manager\\Accounts";
  const auto both = [&](const std::string& tail) {
    return std::vector<std::pair<std::string, std::string>>{
        {from.profile + tail, to.profile + tail}};
  };
  return {
      {"OeAccounts", {accounts}, {}, "", false, {account_key}},
      {"OeAddressBook",
       {accounts, "Outlook Express\\Address Book"},
       {},
       "",
       false,
       {},
       {from.app_data + "\\Microsoft\\Address Book\\Anna.wab",
        to.app_data + "\\Microsoft\\Address Book\\Bert.wab"}},
      {"OeBlockedSenders",
       {accounts, "Outlook Express\\Blocked Senders"},
       {},
       "",
       false,
       {five + "Block Senders"}},
      {"OeMail",
       {accounts, "Outlook Express\\Email Messages"},
       {{MailStoreFolder(a, from), MailStoreFolder(b, to)}},
       "",
       false,
       {}},
      {"OeRules", {accounts, "Outlook Express\\Message Rules"}, {}, "", false, {five + "Rules"}},
      {"OeSignature",
       {accounts, "Outlook Express\\Signature"},
       {},
       "",
       false,
       {five + "signatures\\00000000", five + "signatures\\00000001"}},
      {"OeStationery",
       {accounts, "Outlook Express\\Stationery"},
       {{from.common_files + "\\Microsoft Shared\\Stationery",
         to.common_files + "\\Microsoft Shared\\Stationery"}},
       "",
       false,
       {}},
      {"OeSystemSettings",
       {accounts, "Outlook Express\\System Settings"},
       {},
       "",
       false,
       {five + "Mail", five + "News", five + "Trident"}},
      {"OeSettings",
       {accounts, "Outlook Express\\Settings"},
       {},
       "",
       false,
       {user + "Internet Account Manager", IdentityKey(a)}},
      {"MoJunk", {"Microsoft Outlook\\Adult-Junk Senders"}, both(roaming), ".txt", false, {}},
      {"MoDictionary",
       {"Microsoft Outlook\\Dictionary"},
       both("\\Application Data\\Microsoft\\Proof"),
       ".dic",
       false,
       {}},
      {"MoMacros",
       {"Microsoft Outlook\\Macros and VBA programs"},
       both(roaming),
       ".otm",
       false,
       {}},
      {"MoOffline", {"Microsoft Outlook\\Offline folders"}, both(local), ".ost", false, {}},
      {"MoAddressBook",
       {"Microsoft Outlook\\Personal Address Book"},
       both(local),
       ".pab",
       false,
       {}},
      {"MoSignatures",
       {"Microsoft Outlook\\Signatures"},
       both("\\Application Data\\Microsoft\\Signatures"),
       "",
       false,
       {}},
      {"MoRegistry",
       {"Microsoft Outlook\\Registry Settings"},
       {},
       "",
       false,
       {user + "Exchange\\Client\\Options"}},
      {"IeTyped",
       {"Internet Explorer\\Typed Urls"},
       {},
       "",
       false,
       {user + "Internet Explorer\\TypedURLs"}},
      {"IeCookies", {"Internet Explorer\\Cookies"}, {{from.cookies, to.cookies}}, "", true, {}},
      {"IeFavorites",
       {"Internet Explorer\\Favorites"},
       {{from.favorites, to.favorites}},
       "",
       true,
       {}},
      {"IeSettings",
       {"Internet Explorer\\IESettings"},
       {},
       "",
       false,
       {"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer", user + "Internet Explorer",
        user + "Windows\\CurrentVersion\\Internet Settings"}},
      {"Documents", {"Other Files\\My Documents"}, {{from.documents, to.documents}}, "", true, {}},
      {"Desktop", {"Other Files\\My Desktop Files"}, {{from.desktop, to.desktop}}, "", true, {}},
  };
}

// What must have come back: by the path in lower case.
FileMap Expected(const FileMap& source, const Kind& kind) {
  FileMap expected;
  for (const auto& [folder, target] : kind.folders) {
    const std::string start = FoldCase(folder) + "\\";
    for (const auto& [path, facts] : source) {
      if (!path.starts_with(start) || !EndsWithNoCase(path, kind.extension)) continue;
      const std::string rest = path.substr(start.size());
      if (!Contains(FileNameOf(rest), ".") || (!kind.deep && Contains(rest, "\\"))) continue;
      expected[FoldCase(target) + "\\" + rest] = facts;
    }
  }
  if (!kind.renamed.empty()) {
    expected[FoldCase(kind.renamed[1])] = source.at(FoldCase(kind.renamed[0]));
  }
  return expected;
}

class KindRoundTrip : public testing::TestWithParam<Kind> {};

TEST_P(KindRoundTrip, ComesBackAloneAndNothingElseDoes) {
  const Kind& kind = GetParam();
  Machine a("xp", "Anna", kIdentityA, true);
  Machine b("xp", "Bert", kIdentityB, false);
  a.SetVersion("11");
  b.SetVersion("11");
  const FileMap source = FilesOf(a);
  const std::string archive = a.BackUp(kind.ticks);
  const FileMap before = FilesOf(b);
  b.Restore(archive, {});
  const FileMap after = FilesOf(b);
  const FileMap expected = Expected(source, kind);
  EXPECT_EQ(expected.empty(), kind.folders.empty() && kind.renamed.empty());
  for (const auto& [path, facts] : expected) {
    const auto found = after.find(path);
    ASSERT_NE(found, after.end()) << path;
    EXPECT_TRUE(found->second.bytes == facts.bytes) << path;
    EXPECT_EQ(found->second.modified, facts.modified) << path;
    EXPECT_EQ(found->second.attributes, facts.attributes) << path;
  }
  for (const auto& [path, facts] : after) {
    const auto old = before.find(path);
    const bool changed = old == before.end() || !(old->second == facts);
    EXPECT_TRUE(!changed || expected.contains(path)) << path << " came back as well";
  }
  for (const std::string& key : kind.keys) {
    const std::map<std::string, std::string> wanted = ValuesOf(a, key);
    const std::map<std::string, std::string> got = ValuesOf(b, key);
    EXPECT_FALSE(wanted.empty()) << key;
    for (const auto& [name, value] : wanted) {
      ASSERT_TRUE(got.contains(name)) << name;
      EXPECT_EQ(got.at(name), value) << name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Xp, KindRoundTrip, testing::ValuesIn(XpKinds()),
                         [](const auto& instance) { return instance.param.name; });

void ExpectAllBack(Machine& a, Machine& b) {
  RoundTrip trip(*a.computer, a.plan, *b.computer, b.plan);
  const RoundTripVerdict verdict = trip.Compare();
  EXPECT_TRUE(verdict.AllWell());
  EXPECT_GT(verdict.files, 10);
  EXPECT_GT(verdict.keys, 10);
  for (const std::string& difference : verdict.differences) ADD_FAILURE() << difference;
}

TEST(RoundTripOfAll, FromOneUserToAnotherOnEverySystem) {
  for (const char* like : {"98", "2000", "xp", "vista"}) {
    SCOPED_TRACE(like);
    Machine a(like, "Anna", kIdentityA, true);
    Machine b(like, "Bert", kIdentityB, false);
    const std::string archive = a.BackUp({});
    b.Restore(archive, {});
    ExpectAllBack(a, b);
  }
}

TEST(RoundTripOfAll, OntoTheSameComputerAfterTheDataWasDestroyed) {
  Machine original("xp", "Anna", kIdentityA, true);
  Machine a("xp", "Anna", kIdentityA, true);
  const std::string archive = a.BackUp({});
  FileToolkit toolkit(a.computer->platform().files, [] {});
  for (const std::string& folder :
       {MailStoreFolder(a.plan, a.layout), a.layout.documents, a.layout.favorites, a.layout.cookies,
        a.layout.app_data + "\\Microsoft", std::string("C:\\Mail archive"),
        a.layout.local_app_data + "\\Microsoft\\Outlook"}) {
    for (const FileInfo& info : toolkit.files().List(folder)) {
      const std::string path = folder + "\\" + info.name;
      if (info.IsFolder()) {
        toolkit.KillFolder(path);
      } else {
        toolkit.files().RemoveFile(path, true);
      }
    }
  }
  a.Restore(archive, {});
  ExpectAllBack(original, a);
}

// All files of one folder of a computer stand below a folder of another one.
void ExpectSameTree(Machine& a, const std::string& folder, Machine& b, const std::string& target) {
  FileToolkit from(a.computer->platform().files, [] {});
  FileToolkit to(b.computer->platform().files, [] {});
  const std::vector<DeepEntry> entries = from.ListFilesDeep(folder, "*.*");
  EXPECT_GT(entries.size(), 3u);
  for (const DeepEntry& entry : entries) {
    const std::string copy = target + entry.path.substr(folder.size());
    if (entry.is_folder) {
      EXPECT_TRUE(to.FolderExists(copy)) << copy;
    } else {
      EXPECT_TRUE(to.ReadWhole(copy).has_value() &&
                  to.ReadWhole(copy) == from.ReadWhole(entry.path))
          << copy;
    }
  }
}

TEST(RoundTripOfAll, FromEachKindOfSystemToEachOther) {
  for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
           {"98", "xp"}, {"xp", "98"}, {"xp", "vista"}, {"vista", "xp"}, {"98", "vista"}}) {
    SCOPED_TRACE(from + " to " + to);
    Machine a(from, "Anna", kIdentityA, true);
    Machine b(to, "Bert", kIdentityB, false);
    a.SetVersion(from == "vista" ? "12" : "11");
    b.SetVersion(to == "vista" ? "12" : "11");
    const std::string archive = a.BackUp({});
    const FileMap before = FilesOf(b);
    b.Restore(archive, {});
    RoundTrip trip(*a.computer, a.plan, *b.computer, b.plan);
    const RoundTripVerdict verdict = trip.Compare();
    for (const std::string& difference : verdict.differences) {
      // The dictionaries' folder is the one of the version that is installed here.
      if (!Contains(difference, "Proof\\CUSTOM.DIC is missing")) ADD_FAILURE() << difference;
    }
    const std::string proof = to == "vista" ? "UProof" : "Proof";
    FileToolkit toolkit(b.computer->platform().files, [] {});
    EXPECT_TRUE(toolkit.FileExists(b.layout.profile + "\\Application Data\\Microsoft\\" + proof +
                                   "\\CUSTOM.DIC"));
    // Where the present system has no documents folder of that name, the documents stay in the
    // restore folder; Windows Mail is left out.
    const FileMap after = FilesOf(b);
    const std::string documents = FoldCase(b.layout.documents) + "\\";
    const bool other_word = (from == "vista") != (to == "vista");
    const std::string left =
        b.layout.app_data + "\\Tarnwick\\Quorvale\\Restore\\Round trip\\Other Files\\";
    EXPECT_EQ(toolkit.FolderExists(left), other_word);
    EXPECT_EQ(Contains(b.LastBox(), "could not be restored on to there default locations."),
              other_word);
    if (other_word) ExpectSameTree(a, a.layout.documents, b, left + FileNameOf(a.layout.documents));
    for (const auto& [path, facts] : after) {
      if (before.contains(path)) continue;
      EXPECT_FALSE(other_word && path.starts_with(documents)) << path;
      EXPECT_FALSE(to != "vista" && Contains(path, "windows mail")) << path;
    }
  }
}

// Every section of every profile names a file that is there, in every form that the section has.
void ExpectProfilesOpenFiles(Machine& machine, const std::string& folder) {
  Application& app = machine.computer->MakeProgram("");
  app.session().gOSName = GetOSName(machine.computer->platform().system.Version());
  const std::string root = ProfilesRoot(app.session().gOSName);
  FileToolkit toolkit(machine.computer->platform().files, [] {});
  std::vector<std::string> profiles;
  app.registry().store().ListSubkeys(RegistryRoot::kCurrentUser, root, &profiles);
  int sections = 0;
  for (const std::string& profile : profiles) {
    for (const std::string& section : StoreSections(app, root + profile)) {
      const std::string key = root + profile + "\\" + section;
      for (const char* name : {kStorePath8, kStorePath16}) {
        const std::string path = ReadProfileText(app, key, name);
        if (path.empty()) continue;
        ++sections;
        EXPECT_TRUE(path.starts_with(folder + "\\")) << path;
        EXPECT_TRUE(toolkit.FileExists(path)) << path;
        const RegistryValue value = *ReadProfileValue(app, key, name);
        EXPECT_EQ(value.data, std::string(name).starts_with("001f")
                                  ? EncodeProfileText16(path)
                                  : EncodeProfileText8(app, path));
      }
    }
    const std::string offline = OfflineStorePath(app, root + profile);
    EXPECT_TRUE(offline.empty() || toolkit.FileExists(offline)) << offline;
  }
  EXPECT_GT(sections, 0);
}

TEST(RoundTripOfProfiles, OpenTheRestoredFilesWithEveryVersion) {
  for (const char* version : {"9", "10", "11", "12"}) {
    SCOPED_TRACE(version);
    Machine a("xp", "Anna", kIdentityA, true);
    Machine b("xp", "Bert", kIdentityB, false);
    a.SetVersion(version);
    b.SetVersion(version);
    const std::string archive = a.BackUp({"Microsoft Outlook"});
    b.Restore(archive, {});
    ExpectProfilesOpenFiles(
        b, b.layout.profile + "\\Local Settings\\Application Data\\Microsoft\\Outlook");
  }
}

TEST(RoundTripOfProfiles, OpenTheKeptFilesWithEveryVersion) {
  for (const char* version : {"9", "10", "11", "12"}) {
    SCOPED_TRACE(version);
    Machine a("xp", "Anna", kIdentityA, true);
    Machine b("xp", "Bert", kIdentityB, false);
    a.SetVersion(version);
    b.SetVersion(version);
    const std::string archive = a.BackUp({"Microsoft Outlook\\Identities"});
    b.Restore(archive, {}, true);
    ExpectProfilesOpenFiles(b, b.layout.app_data + "\\Tarnwick\\Quorvale\\Restore\\Round trip");
    // These do not look into the program's own folder.
    for (const auto& [path, facts] : FilesOf(b)) EXPECT_FALSE(path.ends_with(".pst")) << path;
  }
}

TEST(RoundTripOfFiles, AFolderOnADriveThatIsGoneIsKept) {
  Machine a("xp", "Anna", kIdentityA, true);
  Machine b("xp", "Bert", kIdentityB, false);
  FileToolkit toolkit(a.computer->platform().files, [] {});
  toolkit.MakeFolderChain("F:\\Far\\Deep");
  toolkit.WriteWhole("F:\\Far\\Deep\\x.txt", "far away");
  PageDriver driver(*a.computer);
  BackupWishes job;
  job.name = "Far";
  job.add_folders = {"F:\\Far"};
  a.computer->ui().box_handler = [](const ui::MessageBoxRequest&) { return ui::Answer::kOk; };
  ASSERT_EQ(driver.Backup(job), Outcome::kDone) << driver.problem();
  b.computer->RemoveDrive("F");
  b.Restore(a.HostPath(driver.archive()), {"Added Other Folders"});
  EXPECT_TRUE(Contains(b.LastBox(), "could not be restored on to there default locations."));
  FileToolkit target(b.computer->platform().files, [] {});
  EXPECT_EQ(target.ReadWhole(b.layout.app_data +
                             "\\Tarnwick\\Quorvale\\Restore\\Far\\Added Other Folders\\Far\\Deep"
                             "\\x.txt"),
            "far away");
}

}  // namespace
}  // namespace quorvale::restore_test
