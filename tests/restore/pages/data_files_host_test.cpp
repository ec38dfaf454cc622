// What becomes of the data files of mail profiles, from one computer to another.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "discovery/products/outlook_profile.h"
#include "restore/round_trip_machine.h"

namespace quorvale::restore_test {
namespace {

constexpr char kHome[] = "\\Local Settings\\Application Data\\Microsoft\\Outlook\\";

// Anna's computer, with the profiles that a test gives it, and Bert's, to which all of it goes.
class DataFiles : public testing::Test {
 protected:
  DataFiles() {
    a_.SetVersion("11");
    b_.SetVersion("11");
  }

  // A profile that opens these files, one section for each, and an offline store.
  void Profile(const std::string& name, const std::vector<std::string>& paths,
               const std::string& offline = "") {
    RegistryStore& registry = a_.computer->platform().registry;
    const std::string key = kNtProfilesRoot + name;
    std::string list;
    for (size_t i = 0; i < paths.size(); ++i) {
      const std::string id = std::string(15, 'A') + static_cast<char>('A' + i);
      const std::string section = key + "\\" + ToHexText(id);
      list += id;
      Set(section, kDisplayName8, registry_type::kString, "Mail " + std::to_string(i + 1) + '\0');
      Set(section, kStorePath8, registry_type::kString, paths[i] + '\0');
      Set(section, kStorePath16, registry_type::kBinary, EncodeProfileText16(paths[i]));
    }
    Set(key + "\\" + kStoreListSection, kStoreListValue, registry_type::kBinary, list);
    if (!offline.empty()) {
      Set(key + "\\" + kOfflineStoreSection, kOfflinePath16, registry_type::kBinary,
          EncodeProfileText16(offline));
    }
    registry.SetValue(RegistryRoot::kCurrentUser, WithoutBackslash(kNtProfilesRoot),
                      "DefaultProfile", registry_type::kString, name + '\0');
  }
  void Write(Machine& machine, const std::string& path, const std::string& text) {
    FileToolkit files(machine.computer->platform().files, [] {});
    files.MakeFolderChain(ParentFolder(path));
    EXPECT_EQ(files.WriteWhole(path, text), FileStatus::kOk) << path;
  }
  std::string Read(const std::string& path) {
    FileToolkit files(b_.computer->platform().files, [] {});
    return files.ReadWhole(path).value_or("nothing");
  }
  // From the one computer to the other, all of Outlook.
  void Move(bool keep = false) { b_.Restore(a_.BackUp({"Microsoft Outlook"}), {}, keep); }

  // The files that a profile of Bert's computer opens, section by section. Both forms of a path
  // agree.
  std::vector<std::string> Opened(const std::string& profile) {
    Application& app = b_.computer->MakeProgram("");
    const std::string key = kNtProfilesRoot + profile;
    std::vector<std::string> paths;
    for (const std::string& section : StoreSections(app, key)) {
      paths.push_back(ReadProfileText(app, key + "\\" + section, kStorePath8));
      EXPECT_EQ(ReadProfileText(app, key + "\\" + section, kStorePath16), paths.back());
    }
    return paths;
  }
  std::string Offline(const std::string& profile) {
    return OfflineStorePath(b_.computer->MakeProgram(""), kNtProfilesRoot + profile);
  }
  std::string Home(const std::string& name) { return b_.layout.profile + kHome + name; }

  Machine a_{"xp", "Anna", "{AAAAAAAA-7D44-4B8E-9A61-0C55E2D7B901}", false};
  Machine b_{"xp", "Bert", "{BBBBBBBB-7D44-4B8E-9A61-0C55E2D7B901}", false};

 private:
  void Set(const std::string& key, const std::string& name, std::uint32_t type,
           const std::string& data) {
    RegistryStore& registry = a_.computer->platform().registry;
    registry.CreateKey(RegistryRoot::kCurrentUser, key);
    registry.SetValue(RegistryRoot::kCurrentUser, key, name, type, data);
  }
};

TEST_F(DataFiles, AnyFileThatAProfileOpensComesBackWhateverItsExtension) {
  Write(a_, "C:\\Letters\\years.dat", "of years");
  Write(a_, "C:\\Letters\\no extension", "plain");
  Write(a_, "C:\\Letters\\Mail.PST", "letters");
  Profile("P", {"C:\\Letters\\years.dat", "C:\\Letters\\no extension", "C:\\Letters\\Mail.PST"});
  Move();
  EXPECT_EQ(Read(Home("years.dat")), "of years");
  EXPECT_EQ(Read(Home("no extension")), "plain");
  EXPECT_EQ(Read(Home("Mail.PST")), "letters");
  EXPECT_EQ(Opened("P"),
            (std::vector<std::string>{Home("years.dat"), Home("no extension"), Home("Mail.PST")}));
}

TEST_F(DataFiles, ALooseFileOfTheSameNameAndFolderStaysBesideIt) {
  Write(a_, "C:\\Letters\\people.pab", "of the profile");
  Write(a_, a_.layout.profile + kHome + "people.pab", "loose");
  Profile("P", {"C:\\Letters\\people.pab"});
  Move();
  EXPECT_EQ(Opened("P"), std::vector<std::string>{Home("people.pab")});
  EXPECT_EQ(Read(Home("people.pab")), "of the profile");
  EXPECT_EQ(Read(Home("people_1.pab")), "loose");
}

}  // namespace
}  // namespace quorvale::restore_test
