// The three registry readers, on what other tools wrote: hivexregedit for NT hives, the texts that
// Wine wrote. Hives of Windows 9x no tool writes; tests/support writes them.
#include "platform/host/disk/hive.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "base/text.h"
#include "platform/host/disk/classic_hive.h"
#include "platform/host/disk/damaged_file.h"
#include "platform/host/disk/nt_hive.h"
#include "platform/host/disk/wine_registry.h"
#include "platform/host/machine_fixture.h"
#include "play/hive_writer.h"
#include "support/classic_hive_writer.h"

namespace quorvale::host {
namespace {

std::string Units(const std::string& text) { return Utf8ToUtf16Bytes(text + std::string(1, '\0')); }

constexpr char kMerged[] =
    "Windows Registry Editor Version 5.00\r\n\r\n"
    "[HKEY_X\\Software]\r\n\r\n"
    "[HKEY_X\\Software\\Gr\xC3\xB6\xC3\x9F"
    "e]\r\n"
    "@=\"default\"\r\n"
    "\"Text\"=\"one \\\\ two\"\r\n"
    "\"Number\"=dword:0000002a\r\n"
    "\"Bytes\"=hex(3):00,01,ff\r\n"
    "\"Odd\"=hex(1234):aa\r\n"
    "\"Expand\"=hex(2):25,00,41,00,25,00,00,00\r\n";

class NtHive : public testing::Test {
 protected:
  // A hive that hivexregedit filled.
  void SetUp() override {
    path_ = folder_ / "NTUSER.DAT";
    WriteHost(path_, EmptyNtHive());
    WriteHost(folder_ / "in.reg", kMerged);
    const std::string command = "hivexregedit --merge --prefix 'HKEY_X' '" + path_ + "' '" +
                                (folder_ / "in.reg") + "' 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0);
    bytes_ = ReadDamagedFile(path_, HiveBounds::kFileBytes)->bytes;
  }

  TempFolder folder_;
  std::string path_, bytes_, problem_;
};

// Another tool that knows the format edits a hive in place.
TEST_F(NtHive, IsReadAfterAnotherToolHasEditedIt) {
  WriteHost(folder_ / "edit.reg",
            "Windows Registry Editor Version 5.00\r\n\r\n"
            "[HKEY_X\\Software\\Accounts\\00000001]\r\n"
            "\"POP3 Server\"=\"pop.example.com\"\r\n"
            "\"POP3 Port\"=dword:0000006e\r\n\r\n");
  // It ends with 2 where it has changed the hive.
  const std::string command = "/usr/sbin/reged -C -I '" + path_ + "' 'HKEY_X' '" +
                              (folder_ / "edit.reg") + "' > /dev/null 2>&1";
  ASSERT_EQ(WEXITSTATUS(std::system(command.c_str())), 2);
  const auto hive =
      ReadNtHive(ReadDamagedFile(path_, HiveBounds::kFileBytes)->bytes, {}, &problem_);
  ASSERT_TRUE(hive) << problem_;
  const HiveKey* account = hive->root.Find("Software\\Accounts\\00000001");
  ASSERT_NE(account, nullptr);
  EXPECT_EQ(account->Text("POP3 Server"), "pop.example.com");
  EXPECT_EQ(account->Number("POP3 Port"), 110u);
  EXPECT_NE(hive->root.Find("Software\\Gr\xC3\xB6\xC3\x9F"
                            "e"),
            nullptr)
      << "what stood there";
}

TEST_F(NtHive, GivesNamesTypesAndBytesAsTheyWerePutIn) {
  const auto hive = ReadNtHive(bytes_, {}, &problem_);
  ASSERT_TRUE(hive) << problem_;
  EXPECT_TRUE(hive->remarks.empty()) << hive->remarks[0];
  const HiveKey* key = hive->root.Find(
      "SOFTWARE\\gr\xC3\x96\xC3\x9F"
      "e");
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(key->Text(""), "default");
  EXPECT_EQ(key->Text("text"), "one \\ two");
  EXPECT_EQ(key->Number("NUMBER"), 42u);
  EXPECT_EQ(key->Value("Bytes")->data, std::string("\x00\x01\xff", 3));
  EXPECT_EQ(key->Value("Bytes")->type, registry_type::kBinary);
  EXPECT_EQ(key->Value("Odd")->type, 0x1234u);
  EXPECT_EQ(key->Value("Expand")->type, registry_type::kExpandString);
  EXPECT_EQ(key->Text("Expand"), "%A%");
  EXPECT_EQ(key->values.size(), 6u);
}

TEST_F(NtHive, TakesOnlyTheKeysThatAreWanted) {
  const auto hive = ReadNtHive(
      bytes_, [](const std::string& path) { return path.find('\\') == std::string::npos; },
      &problem_);
  ASSERT_TRUE(hive);
  ASSERT_NE(hive->root.Find("Software"), nullptr);
  EXPECT_TRUE(hive->root.Find("Software")->subkeys.empty());
}

TEST_F(NtHive, SaysThatItWasNotClosedAndThatItsHeaderIsDamaged) {
  bytes_[4] = static_cast<char>(bytes_[4] + 1);
  const auto hive = ReadNtHive(bytes_, {}, &problem_);
  ASSERT_TRUE(hive) << problem_;
  ASSERT_EQ(hive->remarks.size(), 2u);
  EXPECT_EQ(hive->remarks[0], "it was not closed: changes that stand only in its log are missing");
  EXPECT_EQ(hive->remarks[1], "its header is damaged");
  EXPECT_NE(hive->root.Find("Software"), nullptr);
}

TEST_F(NtHive, NamesItsLastWrite) {
  EXPECT_EQ(NtHiveWritten(EmptyNtHive()), std::int64_t{0x01C9A0F2} << 32);
  EXPECT_EQ(NtHiveWritten("regf"), 0);
}

// Every byte of the keys broken in turn, and the file cut at every place: no crash, no endless
// walk.
TEST_F(NtHive, ComesToAnEndWhateverIsBroken) {
  for (std::size_t at = 4096; at < bytes_.size() && at < 4096 + 700; ++at) {
    std::string broken = bytes_;
    broken[at] = static_cast<char>(~broken[at]);
    ReadNtHive(broken, {}, &problem_);
  }
  for (std::size_t size = 0; size < bytes_.size(); size += 97) {
    ReadNtHive(bytes_.substr(0, size), {}, &problem_);
  }
  EXPECT_FALSE(ReadNtHive("regf", {}, &problem_));
  EXPECT_EQ(problem_, "it is no hive");
}

// A key whose list of children names the key above it.
TEST_F(NtHive, TakesAKeyThatRunsIntoItselfOnce) {
  std::string looped = bytes_;
  for (std::size_t at = looped.find("lh"); at != std::string::npos;
       at = looped.find("lh", at + 2)) {
    looped.replace(at + 4, 4, std::string("\x20\x00\x00\x00", 4));  // the root
  }
  const auto hive = ReadNtHive(looped, {}, &problem_);
  ASSERT_TRUE(hive) << problem_;
  EXPECT_FALSE(hive->remarks.empty());
  EXPECT_NE(looped, bytes_);
}

class ClassicHive : public testing::Test {
 protected:
  ClassicHive() {
    test::ClassicKey software{"Software", {}, {}};
    software.values = {{"Name", 1, "Gr\xFC\xDF"},
                       {"", 1, "d"},
                       {"N", 4, std::string("\x2A\0\0\0", 4)},
                       {"B", 3, std::string("\0\1", 2)}};
    software.subkeys = {{"M\xFCller", {}, {{"Deep", {}, {}}}}, {"Other", {{"v", 1, ""}}, {}}};
    bytes_ = test::ClassicHiveBytes({"", {}, {software, {"System", {}, {}}}});
    code_page_ = CodePage::Open(1252);
  }
  std::optional<Hive> Read(const std::string& bytes) {
    return ReadClassicHive(bytes, *code_page_, {}, &problem_);
  }

  std::string bytes_, problem_;
  std::unique_ptr<CodePage> code_page_;
};

TEST_F(ClassicHive, GivesNamesAndTextsOfTheCodePageInUnicode) {
  const auto hive = Read(bytes_);
  ASSERT_TRUE(hive) << problem_;
  EXPECT_TRUE(hive->remarks.empty());
  ASSERT_EQ(hive->root.subkeys.size(), 2u);
  const HiveKey* software = hive->root.Find("software");
  EXPECT_EQ(software->Text("Name"), "Gr\xC3\xBC\xC3\x9F");
  EXPECT_EQ(software->Value("Name")->data, Units("Gr\xC3\xBC\xC3\x9F"));
  EXPECT_EQ(software->Text(""), "d");
  EXPECT_EQ(software->Number("n"), 42u);
  EXPECT_EQ(software->Value("B")->data, std::string("\0\1", 2));
  EXPECT_NE(hive->root.Find("Software\\M\xC3\xBCller\\Deep"), nullptr);
  EXPECT_EQ(hive->root.Find("Software\\Other")->Value("v")->data, std::string(2, '\0'));
}

TEST_F(ClassicHive, ComesToAnEndWhateverIsBroken) {
  for (std::size_t at = 0; at < bytes_.size(); ++at) {
    if (at > 400 && bytes_[at] == 0) continue;
    for (const char broken_byte : {'\x20', '\xFF', '\x00'}) {
      std::string broken = bytes_;
      broken[at] = broken_byte;
      Read(broken);
    }
  }
  for (std::size_t size = 0; size < bytes_.size(); size += 13) Read(bytes_.substr(0, size));
  EXPECT_FALSE(Read("CREG"));
  EXPECT_EQ(problem_, "it is no hive of Windows 95, 98 or ME");
}

TEST_F(ClassicHive, TakesAKeyThatRunsIntoItselfOnce) {
  // The first child of the root gets the root for its own first child.
  constexpr std::size_t kTree = 32, kRoot = 32, kKey = 28, kFirstChild = 16;
  bytes_.replace(kTree + kRoot + kKey + kFirstChild, 4, std::string("\x20\0\0\0", 4));
  const auto hive = Read(bytes_);
  ASSERT_TRUE(hive);
  ASSERT_EQ(hive->remarks.size(), 1u);
  EXPECT_TRUE(hive->root.Find("Software")->subkeys.empty());
}

constexpr char kWineText[] =
    "WINE REGISTRY Version 2\n"
    ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n\n"
    "#arch=win32\n\n"
    "[Software\\\\M\\xfcller \\[1\\]] 1700000000\n"
    "#time=1da1b2c3d4e5f60\n"
    "@=\"default\"\n"
    "\"Bytes\"=hex:00,01,\\\n"
    "  ff\n"
    "\"Expand\"=str(2):\"%UserProfile%\\\\Mail\"\n"
    "\"List\"=str(7):\"a\\0b\\0\"\n"
    "\"Number\"=dword:0000002a\n"
    "\"Odd \\\"q\\\"\"=hex(12):01\n"
    "\"Text\"=\"line\\nend\\t\\x20ac\\x0041\"\n\n"
    "[System] 1700000000\n"
    "what is this\n"
    "\"Cut\n";

TEST(WineRegistry, GivesWhatWineWroteAndCountsWhatItDoesNotUnderstand) {
  std::string problem;
  EXPECT_EQ(WineRegistryBase(kWineText), "REGISTRY\\User\\S-1-5-21-0-0-0-1000");
  const auto hive = ReadWineRegistry(kWineText, {}, &problem);
  ASSERT_TRUE(hive) << problem;
  ASSERT_EQ(hive->remarks.size(), 1u);
  EXPECT_EQ(hive->remarks[0], "2 lines of it could not be understood");
  const HiveKey* key = hive->root.Find("Software\\M\xC3\xBCller [1]");
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(key->Text(""), "default");
  EXPECT_EQ(key->Value("Bytes")->data, std::string("\x00\x01\xff", 3));
  EXPECT_EQ(key->Text("Expand"), "%UserProfile%\\Mail");
  EXPECT_EQ(key->Value("Expand")->type, registry_type::kExpandString);
  EXPECT_EQ(key->Value("List")->type, registry_type::kMultiString);
  EXPECT_EQ(key->Value("List")->data, Units(std::string("a\0b\0", 4)));
  EXPECT_EQ(key->Number("Number"), 42u);
  EXPECT_EQ(key->Value("Odd \"q\"")->type, 0x12u);
  EXPECT_EQ(key->Text("Text"),
            "line\nend\t\xE2\x82\xAC"
            "A");
  EXPECT_FALSE(ReadWineRegistry("REGEDIT4\n", {}, &problem));
}

TEST(WineRegistry, NestsNoDeeperThanARegistryCan) {
  std::string text = "WINE REGISTRY Version 2\n\n[a";
  for (int i = 0; i < 600; ++i) text += "\\\\a";
  std::string problem;
  const auto hive = ReadWineRegistry(text + "] 1\n\"v\"=\"x\"\n", {}, &problem);
  ASSERT_TRUE(hive);
  EXPECT_TRUE(hive->root.subkeys.empty());
  EXPECT_EQ(hive->remarks.size(), 1u);
}

TEST(DamagedFile, TellsWhatIsNoFileAndWhatIsTooLarge) {
  const TempFolder folder;
  WriteHost(folder / "x", "12345");
  EXPECT_EQ(ReadDamagedFile(folder / "x", 5)->bytes, "12345");
  EXPECT_FALSE(ReadDamagedFile(folder / "x", 4));
  EXPECT_FALSE(ReadDamagedFile(folder.path(), 5));
  EXPECT_FALSE(ReadDamagedFile(folder / "none", 5));
}

}  // namespace
}  // namespace quorvale::host
