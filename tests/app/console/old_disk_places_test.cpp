// Where a disk's system and its user kept things: a profile in German, documents on another drive,
// a system that is not drive C.
#include <algorithm>
#include <map>

#include "base/text.h"
#include "platform/host/host_platform.h"
#include "play/hive_writer.h"
#include "support/old_disk.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;
using host::HiveKey;
using test::Command;
using test::ConsoleAnswer;

constexpr char kIdentity[] = "{3F0A1C52-7D44-4B8E-9A61-0C55E2D7B901}";
constexpr char kLocal[] = "Lokale Einstellungen/Anwendungsdaten";

host::HiveValue Text(const std::string& name, const std::string& text,
                     std::uint32_t type = registry_type::kExpandString) {
  return {name, type, Utf8ToUtf16Bytes(text) + std::string(2, '\0')};
}

// A key with these values at a path of several names.
HiveKey At(const std::string& path, HiveKey key) {
  const std::vector<std::string> names = Split(path, "\\");
  key.name = names.back();
  for (std::size_t i = names.size() - 1; i > 0; --i) {
    HiveKey above;
    above.name = names[i - 1];
    above.subkeys.push_back(std::move(key));
    key = std::move(above);
  }
  return key;
}

// A German Windows XP of which Karl moved his documents to drive D.
class GermanDisk : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NO_FATAL_FAILURE(MakeDisk("C")); }

  void MakeDisk(const std::string& letter) {
    const HiveKey nt =
        At("Windows NT\\CurrentVersion",
           {"",
            {Text("ProductName", "Microsoft Windows XP"), Text("CurrentVersion", "5.1"),
             Text("SystemRoot", letter + ":\\WINDOWS")},
            {At("ProfileList\\S-1-5-21-1-2-3-1003",
                {"",
                 {Text("ProfileImagePath", "%SystemDrive%\\Dokumente und Einstellungen\\Karl")},
                 {}})}});
    const HiveKey windows =
        At("Windows\\CurrentVersion", {"", {Text("ProgramFilesDir", letter + ":\\Programme")}, {}});
    WriteHive("disk/WINDOWS/system32/config/software", {{"Microsoft", {}, {nt, windows}}});
    const std::string volume(12, '\1');
    HiveKey mounted{"MountedDevices", {}, {}};
    for (const std::string& known : {letter, std::string("D"), std::string("C")}) {
      mounted.values.push_back({"\\DosDevices\\" + known + ":", registry_type::kBinary, volume});
    }
    if (letter == "C") mounted.values.pop_back();
    WriteHive("disk/WINDOWS/system32/config/system", {mounted});
    WriteUser();
    Write(Profile() + "/" + kLocal + "/Identities/" + kIdentity +
              "/Microsoft/Outlook Express/Posteingang.dbx",
          "mail");
    Write(Profile() + "/Favoriten/Wetter.url", "[InternetShortcut]\r\n");
    Write(
        "other/Eigene Dateien/Briefe/Gr\xC3\xBC\xC3\x9F"
        "e.txt",
        "letter");
  }

  void WriteUser() {
    const std::string express = "Software\\Microsoft\\Outlook Express";
    WriteHive(
        Profile() + "/NTUSER.DAT",
        {At("Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders",
            {"",
             {Text("Personal", "D:\\Eigene Dateien"), Text("Favorites", "%USERPROFILE%\\Favoriten"),
              Text("AppData", "%USERPROFILE%\\Anwendungsdaten"),
              Text("Local AppData", "%USERPROFILE%\\Lokale Einstellungen\\Anwendungsdaten"),
              Text("My Pictures", "%LOCALAPPDATA%\\Bilder")},
             {}}),
         At("Identities",
            {"",
             {Text("Default User ID", kIdentity, registry_type::kString)},
             {At(kIdentity + ("\\" + express) + "\\5.0",
                 {"",
                  {Text("Store Root",
                        "%UserProfile%\\Lokale Einstellungen\\Anwendungsdaten\\"
                        "Identities\\" +
                            std::string(kIdentity) + "\\Microsoft\\Outlook Express\\")},
                  {}})}}),
         At("Printers", {"", {}, {}})});
    WriteHive(Profile() + "/" + kLocal + "/Microsoft/Windows/UsrClass.dat",
              {At("Karl.Datei", {"", {Text("", "eigen", registry_type::kString)}, {}})});
  }

  void WriteHive(const std::string& name, std::vector<HiveKey> keys) {
    fs::create_directories(fs::path(Place(name)).parent_path());
    ASSERT_EQ(WriteNtHive(Place(name), {"", {}, std::move(keys)}), "");
  }
  void Write(const std::string& name, const std::string& bytes) {
    fs::create_directories(fs::path(Place(name)).parent_path());
    std::ofstream(Place(name), std::ios::binary) << bytes;
  }
  static std::string Profile() { return "disk/Dokumente und Einstellungen/Karl"; }
  std::string Place(const std::string& name) const { return scratch_.path() + "/" + name; }
  std::unique_ptr<RunningMachine> Made(const std::vector<std::string>& drives) {
    std::vector<std::string> words = {"machine", "from", Place("disk"), Place("made")};
    for (const std::string& drive : drives) words.insert(words.end(), {"--drive", drive});
    const ConsoleAnswer made = Command(words);
    EXPECT_EQ(made.status, ExitStatus::kDone) << made.error;
    EXPECT_EQ(made.error, "");
    std::string problem;
    auto computer = RunningMachine::Open(Place("made"), &problem);
    EXPECT_NE(computer, nullptr) << problem;
    return computer;
  }

  ScratchFolder scratch_;
};

TEST_F(GermanDisk, NamesItsFoldersInItsOwnLanguage) {
  const auto computer = Made({"D=" + Place("other")});
  ASSERT_NE(computer, nullptr);
  const std::string profile = "C:\\Dokumente und Einstellungen\\Karl";
  const std::string local = profile + "\\Lokale Einstellungen\\Anwendungsdaten";
  Shell& shell = computer->platform().shell;
  EXPECT_EQ(shell.SpecialFolder(5), "D:\\Eigene Dateien");
  EXPECT_EQ(shell.SpecialFolder(6), profile + "\\Favoriten");
  EXPECT_EQ(shell.SpecialFolder(26), profile + "\\Anwendungsdaten");
  EXPECT_EQ(shell.SpecialFolder(28), local);
  EXPECT_EQ(shell.SpecialFolder(39), local + "\\Bilder");
  EXPECT_EQ(computer->platform().system.Environment("LOCALAPPDATA"), local);
  EXPECT_EQ(computer->platform().system.Environment("ProgramFiles"), "C:\\Programme");
  EXPECT_TRUE(
      computer->platform().files.Stat("D:\\Eigene Dateien\\briefe\\GR\xC3\x9C\xC3\x9F"
                                      "E.TXT"));
  RegistryValue classes;
  EXPECT_EQ(computer->host().registry().QueryValue(RegistryRoot::kClassesRoot, "Karl.Datei", "",
                                                   &classes),
            registry_status::kOk);
}

TEST_F(GermanDisk, IsBackedUpWithTheDocumentsOfItsOtherDrive) {
  fs::create_directory(Place("out"));
  const ConsoleAnswer backup = Command({"--disk", Place("disk"), "--drive", "D=" + Place("other"),
                                        "backup", "Karl", "--all", "--to", Place("out")});
  // It has few settings: what it has not is told.
  ASSERT_EQ(backup.status, ExitStatus::kIncomplete) << backup.out << backup.error;
  EXPECT_EQ(backup.error.find("Eigene Dateien"), std::string::npos) << backup.error;
  MachinePlan target;
  target.user = "Bernd";
  ASSERT_EQ(MakeMachine(Place("new"), target), "");
  const ConsoleAnswer restore =
      Command({"--machine", Place("new"), "restore", Place("out/Karl.obk"), "--all", "--yes"});
  ASSERT_EQ(restore.status, ExitStatus::kIncomplete) << restore.out << restore.error;
  std::map<std::string, std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(Place("new/drive_c"))) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    found[entry.path().string()] = std::string(std::istreambuf_iterator<char>(file), {});
  }
  const std::string profile = Place("new/drive_c/Documents and Settings/Bernd");
  EXPECT_EQ(found[profile + "/My Documents/Briefe/Gr\xC3\xBC\xC3\x9F"
                            "e.txt"],
            "letter");
  EXPECT_EQ(found[profile + "/Favorites/Wetter.url"], "[InternetShortcut]\r\n");
  EXPECT_EQ(found[profile + "/Local Settings/Application Data/Identities/" + kIdentity +
                  "/Microsoft/Outlook Express/Posteingang.dbx"],
            "mail");
}

TEST_F(GermanDisk, IsTrueToItsUsersWithoutTheirList) {
  Write("disk/WINDOWS/system32/config/software", "no hive");
  Write("disk/WINDOWS/repair/ntuser.dat", EmptyNtHive());
  Write("disk/Dokumente und Einstellungen/Default User/NTUSER.DAT", EmptyNtHive());
  const ConsoleAnswer users = Command({"machine", "users", Place("disk")});
  ASSERT_EQ(users.status, ExitStatus::kDone) << users.error;
  EXPECT_NE(users.out.find("\nKarl\tC:\\Dokumente und Einstellungen\\Karl\t"), std::string::npos)
      << users.out;
  EXPECT_EQ(std::count(users.out.begin(), users.out.end(), '\n'), 2) << users.out;
}

TEST_F(GermanDisk, TellsWhichDriveIsMissing) {
  const ConsoleAnswer made = Command({"machine", "from", Place("disk"), Place("made")});
  EXPECT_EQ(made.status, ExitStatus::kDone);
  EXPECT_EQ(made.error,
            "quorvale: drive D: is not here; if it is mounted, name its folder with --drive "
            "D=FOLDER.\n");
}

class DiskOfDriveE : public GermanDisk {
 protected:
  void SetUp() override { ASSERT_NO_FATAL_FAILURE(MakeDisk("E")); }
};

TEST_F(DiskOfDriveE, StandsBesideItsDriveC) {
  Write("first/boot.ini", "[boot loader]");
  const auto computer = Made({"D=" + Place("other"), "C=" + Place("first")});
  ASSERT_NE(computer, nullptr);
  EXPECT_EQ(computer->platform().system.Environment("UserProfile"),
            "E:\\Dokumente und Einstellungen\\Karl");
  EXPECT_EQ(computer->platform().shell.SpecialFolder(6),
            "E:\\Dokumente und Einstellungen\\Karl\\Favoriten");
  Files& files = computer->platform().files;
  EXPECT_TRUE(files.Stat("E:\\dokumente und einstellungen\\karl\\favoriten\\wetter.url"));
  EXPECT_TRUE(files.Stat("C:\\boot.ini"));
  EXPECT_FALSE(files.Stat("C:\\WINDOWS"));
}

TEST_F(DiskOfDriveE, IsNoSecondDriveE) {
  const ConsoleAnswer made =
      Command({"machine", "from", Place("disk"), Place("made"), "--drive", "E=" + Place("other")});
  EXPECT_EQ(made.status, ExitStatus::kFailed);
  EXPECT_EQ(made.error, "quorvale: drive E: is the disk itself; it cannot be " +
                            fs::canonical(Place("other")).string() + " as well.\n");
}

TEST_F(DiskOfDriveE, TellsThatDriveCIsMissing) {
  const ConsoleAnswer made =
      Command({"machine", "from", Place("disk"), Place("made"), "--drive", "D=" + Place("other")});
  EXPECT_EQ(made.status, ExitStatus::kDone);
  EXPECT_EQ(made.error,
            "quorvale: drive C: is not here; if it is mounted, name its folder with --drive "
            "C=FOLDER.\n");
}

}  // namespace
}  // namespace quorvale
