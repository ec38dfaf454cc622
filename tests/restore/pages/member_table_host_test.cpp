// A restore that goes by the member table, one of a backup without a table, and tables that
// somebody made to do harm.
#include <fstream>
#include <iterator>

#include "restore/restore_bench.h"

namespace quorvale::restore_test {
namespace {

constexpr char kPath[] = "C:\\Backups\\Job.obk";

// As the table has it.
std::string Crc(const std::string& bytes) {
  char text[9];
  std::snprintf(text, sizeof text, "%08lx",
                crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
  return text;
}

// A backup with two added files, and a table with these lines behind its items.
class TableBench : public testing::Test {
 protected:
  TableBench() : wizard_(machine_) {
    machine_.ui().box_handler = [](const ui::MessageBoxRequest&) { return ui::Answer::kOk; };
  }
  void Write(const std::vector<std::string>& rows,
             const std::string& head = "Quorvale members\t1") {
    std::string table = head +
                        "\r\nstem\tJob\r\n"
                        "item\tAdd More Files\\C:\\One\\x.txt\tC:\\One\\x.txt\r\n"
                        "item\tAdd Other Folders\\C:\\Two\tC:\\Two\r\n";
    for (const std::string& row : rows) table += row + "\r\n";
    table += "end\t" + std::to_string(4 + rows.size()) + "\r\n";
    JobArchive job;
    // The names alone would bring the other one's file home.
    job.Item("Add More Files\\C:\\One\\x.txt", "C:\\One\\x.txt")
        .Member("Added More Files\\x.txt", "not of One")
        .Member("Added More Files\\x_1.txt", "of One")
        .Item("Add Other Folders\\C:\\Two", "C:\\Two")
        .Member("Added Other Folders\\Two\\y.txt", "of Two")
        .Member("Members.txt", table);
    job.Write(machine_, kPath);
  }
  // False if the pages did not let it be restored.
  bool Restore() {
    wizard_.Open(kPath);
    if (!wizard_.Shown("frmRTwo")) return false;
    wizard_.TickAll();
    wizard_.ToReview();
    wizard_.Run();
    return true;
  }
  static std::string Row(const std::string& item, const std::string& bytes,
                         const std::string& entry, const std::string& inner) {
    return "member\tf\t" + item + "\t" + std::to_string(bytes.size()) + "\t" + Crc(bytes) +
           "\tJob\\" + entry + "\t" + inner;
  }
  static std::string One() { return Row("1", "of One", "Added More Files\\x_1.txt", ""); }
  static std::string Two(const std::string& inner = "y.txt") {
    return Row("2", "of Two", "Added Other Folders\\Two\\y.txt", inner);
  }

  TestMachine machine_;
  RestoreWizard wizard_;
};

TEST_F(TableBench, EachItemGetsItsOwnWhateverTheNamesSay) {
  Write({One(), Two("deep\\z.txt")});
  EXPECT_TRUE(Restore());
  EXPECT_EQ(machine_.ReadFile("C:\\One\\x.txt"), "of One");
  EXPECT_EQ(machine_.ReadFile("C:\\Two\\deep\\z.txt"), "of Two");
  EXPECT_FALSE(machine_.Exists("C:\\Two\\y.txt"));
}

TEST_F(TableBench, WhatTheTableDoesNotNameIsNotFoundByItsName) {
  machine_.WriteFile("C:\\One\\x.txt", "of today");
  Write({Two()});
  EXPECT_TRUE(Restore());
  EXPECT_EQ(machine_.ReadFile("C:\\One\\x.txt"), "of today");
  EXPECT_EQ(machine_.ReadFile("C:\\Two\\y.txt"), "of Two");
}

TEST_F(TableBench, ARowThatContradictsTheArchiveIsRefusedAndTheOthersAreNot) {
  const std::string wrong_crc = "member\tf\t1\t6\t00000000\tJob\\Added More Files\\x_1.txt\t";
  const std::string wrong_size =
      "member\tf\t1\t7\t" + Crc("of One") + "\tJob\\Added More Files\\x_1.txt\t";
  for (const std::string& row :
       {wrong_crc, wrong_size, Row("1", "of One", "Added More Files\\none.txt", ""),
        Row("1", "of One", "Added More Files\\*", ""),
        "member\td\t1\t0\t00000000\tJob\\Added More Files\\x_1.txt\t" + std::string()}) {
    SCOPED_TRACE(row);
    machine_.WriteFile("C:\\One\\x.txt", "of today");
    Write({row, Two()});
    EXPECT_TRUE(Restore());
    EXPECT_EQ(machine_.ReadFile("C:\\One\\x.txt"), "of today");
    EXPECT_EQ(machine_.ReadFile("C:\\Two\\y.txt"), "of Two");
  }
}

TEST_F(TableBench, ARowThatPointsOutOfItsFolderIsRefused) {
  for (const char* inner : {"..\\evil.txt", "a\\..\\..\\evil.txt", "\\evil.txt", "C:\\evil.txt",
                            "C:evil.txt", "con", "evil.txt."}) {
    SCOPED_TRACE(inner);
    Write({One(), Two(inner)});
    const std::vector<std::string> before = machine_.AllBelow("C:\\");
    EXPECT_TRUE(Restore());
    for (const std::string& path : machine_.AllBelow("C:\\")) {
      EXPECT_FALSE(ContainsNoCase(path, "evil")) << path;
    }
    EXPECT_FALSE(machine_.Exists("C:\\Two\\y.txt"));
  }
}

TEST_F(TableBench, ATableThatCannotBeReadIsADamagedBackup) {
  Write({One()}, "Something else");
  machine_.Expect(ui::Answer::kOk, "Either the file is Corrupt or Renamed");
  EXPECT_FALSE(Restore());
  EXPECT_FALSE(machine_.Exists("C:\\One\\x.txt"));
}

TEST(MemberTable, AProfileWhoseNameNoFolderCanHaveComesBack) {
  TestMachine machine("xp");
  RestoreWizard wizard(machine);
  const std::string key =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows Messaging "
      "Subsystem\\Profiles\\Acme Inc.";
  const std::string folder = "Microsoft Outlook\\Identities\\Acme Inc.\\";
  const std::string text = RegText(key, "Kept", "yes");
  JobArchive job;
  job.Item(folder + "Account Settings", key)
      .Member(folder + "Account_Settings.reg", text)
      .Member("Members.txt", "Quorvale members\t1\r\nstem\tJob\r\nitem\t" + folder +
                                 "Account Settings\t" + key + "\r\nmember\tr\t1\t" +
                                 std::to_string(text.size()) + "\t" + Crc(text) + "\tJob\\" +
                                 folder + "Account_Settings.reg\t\r\nend\t4\r\n");
  wizard.RestoreAll(job.Write(machine, kPath));
  EXPECT_TRUE(machine.GetValue(key, "Kept"));
}

// --- Backups without a table ---------------------------------------------------------------------

void CopyIn(TestMachine& machine, const std::string& name, const std::string& path) {
  std::ifstream file(QUORVALE_TESTS_FOLDER "/data/without_table/" + name, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  ASSERT_GT(bytes.size(), 1000u) << name;
  machine.WriteFile(path, bytes);
}

TEST(BackupWithoutATable, ComesBackByTheNames) {
  TestMachine machine("xp");
  SeedIdentity(machine, kIdentity);
  RestoreWizard wizard(machine);
  CopyIn(machine, "Everyday.obk", "C:\\Old\\Everyday.obk");
  wizard.RestoreAll("C:\\Old\\Everyday.obk");
  const std::string favorites = machine.platform().shell.SpecialFolder(special_folder::kFavorites);
  EXPECT_EQ(machine.ReadFile(favorites + "\\Garden\\Tools & seeds.url").size(), 55u);
  const std::string store = StoreOf(machine, kIdentity);
  EXPECT_EQ(machine.ReadFile(WithBackslash(store) + "Inbox.dbx").size(), 23279u);
  EXPECT_EQ(machine.ReadFile(WithBackslash(store) + "Müller & Söhne.dbx").size(), 13497u);
  EXPECT_TRUE(machine.GetValue(
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\TypedURLs", "url1"));
}

TEST(BackupWithoutATable, KeepsFilesOfOneNameApartByTheirOrder) {
  TestMachine machine("xp");
  machine.MakeFolder("D:\\");
  RestoreWizard wizard(machine);
  CopyIn(machine, "Namesakes.obk", "C:\\Old\\Namesakes.obk");
  wizard.Open("C:\\Old\\Namesakes.obk", "old key");
  wizard.TickAll();
  wizard.ToReview();
  machine.Expect(ui::Answer::kOk, "Backup successfully restored");
  wizard.Run();
  EXPECT_EQ(machine.ReadFile("D:\\one\\note.txt"), "note of one\n");
  EXPECT_EQ(machine.ReadFile("D:\\two\\note.txt"), "note of two, longer\n");
  // One folder in such an archive, so each gets the files of both.
  EXPECT_EQ(machine.ReadFile("D:\\A\\Plans\\a.txt"), "plan a\n");
  EXPECT_EQ(machine.ReadFile("D:\\B\\Plans\\b.txt"), "plan b\n");
}

}  // namespace
}  // namespace quorvale::restore_test
