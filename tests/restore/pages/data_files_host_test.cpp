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
  void Move() { b_.Restore(a_.BackUp({"Microsoft Outlook"}), {}); }
  // The same, and the files are to stay in the restore folder.
  void MoveAndKeep(bool no_restore_folder = false) {
    b_.Restore(a_.BackUp({"Microsoft Outlook"}), {}, true, no_restore_folder);
    EXPECT_EQ(b_.LastBox(), "Backup successfully restored");
  }

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
  // A file that stays in the restore folder.
  std::string Kept(const std::string& profile, const std::string& name) {
    return b_.layout.app_data +
           "\\Tarnwick\\Quorvale\\Restore\\Round trip\\Microsoft Outlook\\Identities\\" + profile +
           "\\" + name;
  }

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

TEST_F(DataFiles, ThatAreToBeKeptStayInTheRestoreFolderWhereTheProfileOpensThem) {
  Write(a_, "C:\\Letters\\Mail.pst", "letters");
  Write(a_, "C:\\Letters\\years.dat", "of years");
  Write(a_, "C:\\Letters\\office.ost", "offline");
  Profile("P", {"C:\\Letters\\Mail.pst", "C:\\Letters\\years.dat", "C:\\Letters\\office.ost"},
          "C:\\Letters\\office.ost");
  MoveAndKeep();
  EXPECT_EQ(Opened("P"), (std::vector<std::string>{Kept("P", "Mail.pst"), Kept("P", "years.dat"),
                                                   Kept("P", "office.ost")}));
  EXPECT_EQ(Offline("P"), Kept("P", "office.ost"));
  EXPECT_EQ(Read(Kept("P", "Mail.pst")), "letters");
  EXPECT_EQ(Read(Kept("P", "years.dat")), "of years");
  EXPECT_EQ(Read(Kept("P", "office.ost")), "offline");
  EXPECT_EQ(Read(Home("Mail.pst")), "nothing");
  EXPECT_EQ(Read(Kept("P", "Account_Settings.reg")), "nothing");
}

TEST_F(DataFiles, ThatAreToBeKeptOutliveTheProgramsOwnStagingFolder) {
  Write(a_, "C:\\Letters\\Mail.pst", "letters");
  Profile("P", {"C:\\Letters\\Mail.pst"});
  MoveAndKeep(true);
  EXPECT_EQ(Opened("P"), std::vector<std::string>{Kept("P", "Mail.pst")});
  EXPECT_EQ(Read(Kept("P", "Mail.pst")), "letters");
}

TEST_F(DataFiles, OfOneNameAreAllKept) {
  Write(a_, "C:\\One\\Outlook.pst", "one");
  Write(a_, "C:\\Two\\Outlook.pst", "two");
  Write(a_, "C:\\Three\\outlook.PST", "three");
  Profile("P", {"C:\\One\\Outlook.pst", "C:\\Two\\Outlook.pst"});
  Profile("Q", {"C:\\Three\\outlook.PST"});
  MoveAndKeep();
  EXPECT_EQ(Opened("P"),
            (std::vector<std::string>{Kept("P", "Outlook.pst"), Kept("P", "Outlook_1.pst")}));
  EXPECT_EQ(Opened("Q"), std::vector<std::string>{Kept("Q", "outlook.PST")});
  EXPECT_EQ(Read(Kept("P", "Outlook.pst")), "one");
  EXPECT_EQ(Read(Kept("P", "Outlook_1.pst")), "two");
  EXPECT_EQ(Read(Kept("Q", "outlook.PST")), "three");
}

// The offline store is no data file of the profile here, but the profile opens it.
TEST_F(DataFiles, AnOfflineStoreIsKeptWhereTheProfileIsPointed) {
  const std::string store = a_.layout.profile + kHome + "office.ost";
  Write(a_, "C:\\Letters\\Mail.pst", "letters");
  Write(a_, store, "offline");
  Profile("P", {"C:\\Letters\\Mail.pst"}, store);
  MoveAndKeep();
  EXPECT_EQ(Offline("P"), Kept("P", "office.ost"));
  EXPECT_EQ(Read(Kept("P", "office.ost")), "offline");
  EXPECT_EQ(Read(Home("office.ost")), "offline");
}

TEST_F(DataFiles, AFileThatAProfileListsTwiceIsOneFile) {
  Write(a_, "C:\\Letters\\Mail.pst", "letters");
  Profile("P", {"C:\\Letters\\Mail.pst", "c:\\letters\\MAIL.pst"});
  Move();
  EXPECT_EQ(Opened("P"), (std::vector<std::string>{Home("Mail.pst"), Home("Mail.pst")}));
  EXPECT_EQ(Read(Home("Mail.pst")), "letters");
  EXPECT_EQ(Read(Home("Mail_1.pst")), "nothing");
}

// Two profiles share a file, and one of them has another one of the same name.
TEST_F(DataFiles, AFileThatTwoProfilesShareStaysSharedBesideANamesake) {
  Write(a_, "C:\\Shared\\Outlook.pst", "of both");
  Write(a_, "C:\\Own\\Outlook.pst", "of one");
  Profile("P", {"C:\\Shared\\Outlook.pst"});
  Profile("Q", {"C:\\Own\\Outlook.pst", "C:\\Shared\\Outlook.pst"});
  Move();
  EXPECT_EQ(Opened("P"), std::vector<std::string>{Home("Outlook.pst")});
  EXPECT_EQ(Opened("Q"), (std::vector<std::string>{Home("Outlook_1.pst"), Home("Outlook.pst")}));
  EXPECT_EQ(Read(Home("Outlook.pst")), "of both");
  EXPECT_EQ(Read(Home("Outlook_1.pst")), "of one");
}

TEST_F(DataFiles, AFileThatTwoProfilesShareIsKeptOnce) {
  Write(a_, "C:\\Shared\\Outlook.pst", "of both");
  Write(a_, "C:\\Own\\Outlook.pst", "of one");
  Profile("P", {"C:\\Shared\\Outlook.pst"});
  Profile("Q", {"C:\\Shared\\Outlook.pst", "C:\\Own\\Outlook.pst"});
  MoveAndKeep();
  EXPECT_EQ(Opened("P"), std::vector<std::string>{Kept("P", "Outlook.pst")});
  EXPECT_EQ(Opened("Q"),
            (std::vector<std::string>{Kept("P", "Outlook.pst"), Kept("Q", "Outlook.pst")}));
  EXPECT_EQ(Read(Kept("P", "Outlook.pst")), "of both");
  EXPECT_EQ(Read(Kept("Q", "Outlook.pst")), "of one");
}

}  // namespace
}  // namespace quorvale::restore_test
