// A damaged backup still gives what it holds; where that cannot be had, nothing is offered.
#include "restore/restore_bench.h"

namespace quorvale::restore_test {
namespace {

constexpr char kBackup[] = "C:\\Backups\\Job.obk";

// A backup of two added files, protected if there is a password.
void MakeBackup(TestMachine& machine, const std::string& password = "") {
  zip::Archive archive(machine.platform());
  machine.WriteFile("C:\\stage\\a", std::string(3000, 'a'));
  machine.WriteFile("C:\\stage\\b", std::string(3000, 'b'));
  machine.WriteFile("C:\\stage\\s", SettingsText({{"Add More Files\\C:\\a.txt", "C:\\a.txt"},
                                                  {"Add More Files\\C:\\b.txt", "C:\\b.txt"}}));
  machine.MakeFolder("C:\\Backups");
  archive.archive_name = kBackup;
  archive.files_to_process = {"C:\\stage\\a", "C:\\stage\\b", "C:\\stage\\s"};
  archive.encrypt = !password.empty();
  archive.password = password;
  archive.level = 0;
  archive.on_before_file = [](zip::BeforeFile& file) {
    const std::string name = FileNameOf(file.source);
    file.entry_name = name == "s" ? "Job\\Job.xml" : "Job\\Added More Files\\" + name + ".txt";
  };
  ASSERT_EQ(archive.Zip(), zip::Result::kDone);
}

// Flips a bit so many bytes behind the first occurrence of an entry's name.
void Damage(TestMachine& machine, const std::string& name, size_t behind) {
  std::string bytes = machine.ReadFile(kBackup);
  const size_t at = bytes.find(name);
  ASSERT_NE(at, std::string::npos);
  bytes[at + name.size() + behind] ^= 1;
  machine.WriteFile(kBackup, bytes);
}

void ExpectOffer(TestMachine& machine, RestoreWizard& wizard, const std::string& password,
                 const std::string& message, bool offered) {
  wizard.Choose(kBackup);
  if (!password.empty()) wizard.one().txtDefaultPassword.text = password;
  EXPECT_FALSE(wizard.one().LblWhole.visible);
  machine.Expect(ui::Answer::kOk, message);
  machine.Click(wizard.one().cmdNext);
  EXPECT_EQ(wizard.one().LblWhole.visible, offered);
  EXPECT_FALSE(wizard.Shown("frmRTwo"));
}

constexpr char kInvalid[] = "Invalid backup file selected.";
constexpr size_t kInData = 1000;

TEST(DamagedBackup, GivesWhatIsWhole) {
  for (const char* password : {"", "secret"}) {
    TestMachine machine("xp");
    MakeBackup(machine, password);
    Damage(machine, "Added More Files/a.txt", kInData);
    RestoreWizard wizard(machine);
    ExpectOffer(machine, wizard, password, kInvalid, true);
    machine.Click(wizard.one().LblWhole);
    ASSERT_TRUE(wizard.Shown("frmRTwo")) << password;
    EXPECT_FALSE(wizard.one().LblWhole.visible);
    wizard.TickAll();
    wizard.ToReview();
    machine.Expect(ui::Answer::kOk, "Backup successfully restored");
    wizard.Run();
    EXPECT_FALSE(machine.Exists("C:\\a.txt"));
    EXPECT_EQ(machine.ReadFile("C:\\b.txt"), std::string(3000, 'b'));
    const Account& account = machine.app().account();
    EXPECT_EQ(account.end(), AccountEnd::kDone);
    ASSERT_EQ(account.entries().size(), 1u);
    EXPECT_EQ(account.entries()[0].source, "C:\\a.txt");
    EXPECT_EQ(account.entries()[0].reason, AccountReason::kDamaged);
  }
}

TEST(DamagedBackup, WithoutItsListOfItemsIsNotGoneOnWith) {
  TestMachine machine("xp");
  MakeBackup(machine);
  Damage(machine, "Job/Job.xml", 100);
  RestoreWizard wizard(machine);
  ExpectOffer(machine, wizard, "", kInvalid, false);
}

TEST(DamagedBackup, WithoutItsDirectoryIsNotGoneOnWith) {
  TestMachine machine("xp");
  MakeBackup(machine);
  std::string bytes = machine.ReadFile(kBackup);
  bytes[bytes.find("PK\x01\x02")] ^= 1;
  machine.WriteFile(kBackup, bytes);
  RestoreWizard wizard(machine);
  ExpectOffer(machine, wizard, "", kInvalid, false);
}

TEST(DamagedBackup, AWrongPasswordIsNoDamage) {
  TestMachine machine("xp");
  MakeBackup(machine, "secret");
  Damage(machine, "Added More Files/a.txt", kInData);
  RestoreWizard wizard(machine);
  ExpectOffer(machine, wizard, "other", "Please enter the correct password.", false);
  wizard.one().txtDefaultPassword.text = "";
  machine.Expect(ui::Answer::kOk, "Password cannot be left blank.");
  machine.Click(wizard.one().cmdNext);
  EXPECT_FALSE(wizard.one().LblWhole.visible);
}

TEST(DamagedBackup, TheOfferGoesWithTheFile) {
  TestMachine machine("xp");
  MakeBackup(machine);
  Damage(machine, "Added More Files/a.txt", kInData);
  RestoreWizard wizard(machine);
  ExpectOffer(machine, wizard, "", kInvalid, true);
  machine.Do([&] { wizard.one().txtpath.text = "C:\\Backups\\Other.obk"; });
  EXPECT_FALSE(wizard.one().LblWhole.visible);
}

TEST(RestoreFolder, ThatCannotBeMadeIsSaidSo) {
  TestMachine machine("xp");
  MakeBackup(machine);
  RestoreWizard wizard(machine);
  wizard.Choose(kBackup);
  machine.Do([&] { wizard.one().txtRestore.text = "Q:\\Back"; });
  machine.Expect(ui::Answer::kOk, "The restore folder cannot be used: Q:\\Back");
  machine.Click(wizard.one().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmROne"));
  // A file stands in its place.
  machine.WriteFile("C:\\Taken", "a file");
  machine.Do([&] { wizard.one().txtRestore.text = "C:\\Taken"; });
  machine.Expect(ui::Answer::kOk, "The restore folder cannot be used: C:\\Taken");
  machine.Click(wizard.one().cmdNext);
  machine.Do([&] { wizard.one().txtRestore.text = "C:\\Good"; });
  machine.Click(wizard.one().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmRTwo"));
}

TEST(RestoreFolder, WithoutRoomIsSaidSo) {
  TestMachine machine("xp");
  MakeBackup(machine);
  machine.computer().SetDrive("D", DriveKind::kFixed);
  machine.computer().SetFreeSpace("D", 10);
  RestoreWizard wizard(machine);
  wizard.Choose(kBackup);
  machine.Do([&] { wizard.one().txtRestore.text = "D:\\Back"; });
  machine.Expect(ui::Answer::kOk, "The restore folder cannot be used: D:\\Back");
  machine.Click(wizard.one().cmdNext);
  EXPECT_TRUE(wizard.Shown("frmROne"));
}

TEST(BackupFolder, ThatCannotBeReadIsNotTakenForEmpty) {
  TestMachine machine("xp");
  machine.Do([&machine] { machine.app().Get<FrmWelcome>().Show(); });
  machine.app().Get<frmSettings>().txtBackup.text = "Q:\\Gone";
  machine.Do([&machine] { machine.app().Get<FrmWelcome>().cmdWC_Restore.Click(); });
  frmROne& page = machine.app().Get<frmROne>();
  EXPECT_EQ(page.File1.Count(), 0);
  EXPECT_TRUE(page.LblUnread.visible);
  machine.app().Get<frmSettings>().txtBackup.text = "C:\\Empty";
  machine.Click(page.Label32);
  EXPECT_FALSE(page.LblUnread.visible);
}

}  // namespace
}  // namespace quorvale::restore_test
