// What a restore tells its account: nothing is missing without an entry that says why.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
#include "restore/job_archive.h"
#include "restore/run/restore_run.h"

namespace quorvale::restore_test {
namespace {

constexpr char kFolder[] = "C:\\Kept";
constexpr char kTyped[] = "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\TypedURLs";

// A job of everything that an archive lists, and what its run tells.
class AccountBench {
 public:
  explicit AccountBench(const JobArchive& archive) : machine("xp") {
    machine.session().gAppDataPath = DataFolder(machine.app());
    machine.session().gOSName = kWindows2000;
    job.gRestoreFilePath = archive.Write(machine);
    job.gRestoreFolder = kFolder;
    job.gRestoreToDefaultFolders = true;
    for (const Item& item : archive.items()) {
      job.gRestoreSelection.push_back({item.path, item.key, job.restore_items.size()});
      job.restore_items.push_back({item.path, {item.path, item.key}});
    }
  }

  // Changes one byte of a text that stands in the archive as it is.
  void Damage(const std::string& text) {
    std::string bytes = machine.ReadFile(job.gRestoreFilePath);
    const size_t at = bytes.find(text);
    ASSERT_NE(at, std::string::npos);
    bytes[at] ^= 1;
    machine.WriteFile(job.gRestoreFilePath, bytes);
  }

  const Account& Run(RestoreEvents events = {}) {
    RestoreRun run(machine.app(), job, std::move(events));
    machine.Do([&] { run.Run(); });
    return machine.app().account();
  }

  TestMachine machine;
  RestoreJob job;
};

JobArchive ThreeFiles() {
  JobArchive archive;
  for (const char* name : {"a", "b", "c"}) {
    const std::string place = std::string("C:\\New\\") + name + ".txt";
    archive.With("Add More Files\\" + place, place,
                 std::string("Added More Files\\") + name + ".txt",
                 std::string("content of ") + name);
  }
  return archive;
}

std::vector<std::string> Told(const Account& account) {
  std::vector<std::string> told;
  for (const AccountEntry& entry : account.entries()) {
    told.push_back(entry.source + ": " + ReasonText(entry.reason));
  }
  return told;
}
using Lines = std::vector<std::string>;

std::uint64_t GoodFiles(const Account& account) {
  std::uint64_t good = 0;
  for (const AccountItem& item : account.items()) good += item.good;
  return good;
}

TEST(RestoreAccount, OfARunThatDidAllHasNothingToTell) {
  AccountBench bench(ThreeFiles());
  bench.machine.computer().SetClock({2026, 3, 5, 9, 7, 1, 5});
  const Account& account = bench.Run();
  EXPECT_EQ(account.run(), AccountRun::kRestore);
  EXPECT_EQ(account.name(), "Job");
  EXPECT_EQ(account.began(), "2026-03-05 09:07:01");
  EXPECT_EQ(account.archive, "C:\\Backups\\Job.obk");
  EXPECT_EQ(account.end(), AccountEnd::kDone);
  EXPECT_FALSE(account.HasToTell());
  ASSERT_EQ(account.items().size(), 3u);
  EXPECT_EQ(account.items()[1].path, "Add More Files\\C:\\New\\b.txt");
  EXPECT_EQ(account.items()[1].key, "C:\\New\\b.txt");
  for (const AccountItem& item : account.items()) EXPECT_EQ(item.good, 1u);
}

TEST(RestoreAccount, NamesADamagedMember) {
  AccountBench bench(ThreeFiles());
  bench.Damage("content of b");
  const Account& account = bench.Run();
  EXPECT_EQ(Told(account), Lines{"C:\\New\\b.txt: damaged in the backup"});
  EXPECT_EQ(account.entries()[0].fate, AccountFate::kNotRestored);
  EXPECT_EQ(account.entries()[0].item, "Add More Files\\C:\\New\\b.txt");
  EXPECT_EQ(account.Sentence(), "1 file is not restored.");
  EXPECT_EQ(GoodFiles(account), 2u);
  EXPECT_EQ(bench.machine.ReadFile("C:\\New\\c.txt"), "content of c");
}

TEST(RestoreAccount, NamesWhatStandsInTheWay) {
  AccountBench bench(ThreeFiles());
  bench.machine.MakeFolder("C:\\New\\a.txt");
  bench.machine.WriteFile("C:\\New\\b.txt", "in use");
  bench.machine.faults().files.SetInUse("C:\\New\\b.txt", true);
  const Account& account = bench.Run();
  EXPECT_EQ(Told(account),
            (Lines{"C:\\New\\a.txt: something else of that name stands in its place",
                   "C:\\New\\b.txt: its place is in use, or there are no rights to write it"}));
  bench.machine.faults().files.SetInUse("C:\\New\\b.txt", false);
  EXPECT_EQ(bench.machine.ReadFile("C:\\New\\b.txt"), "in use");
}

TEST(RestoreAccount, NamesAFileInThePlaceOfAFolder) {
  AccountBench bench(ThreeFiles());
  bench.machine.WriteFile("C:\\New", "a file");
  const Account& account = bench.Run();
  ASSERT_EQ(account.entries().size(), 3u);
  for (const AccountEntry& entry : account.entries()) {
    EXPECT_EQ(entry.reason, AccountReason::kPlaceTaken);
  }
  EXPECT_EQ(GoodFiles(account), 0u);
}

TEST(RestoreAccount, NamesEachFileThatAFullDiskDidNotTake) {
  JobArchive archive;
  archive.Item("Add Other Folders\\C:\\Work", "C:\\Work");
  for (const char* name : {"a", "b", "c"}) {
    archive.Member(std::string("Added Other Folders\\Work\\") + name, std::string(50'000, *name));
  }
  AccountBench bench(archive);
  bench.machine.computer().SetFreeSpace("C", 60'000);
  const Account& account = bench.Run();
  EXPECT_EQ(GoodFiles(account), 1u);
  EXPECT_EQ(Told(account),
            (Lines{"C:\\Work\\b: no room on the disk", "C:\\Work: no room on the disk"}));
}

TEST(RestoreAccount, SaysWhereThingsStandThatHaveNoHome) {
  JobArchive archive;
  archive.With("Add More Files\\Q:\\a.txt", "Q:\\a.txt", "Added More Files\\a.txt", "one")
      .With("Add Other Folders\\Q:\\Work", "Q:\\Work", "Added Other Folders\\Work\\in\\c.txt",
            "three");
  AccountBench bench(archive);
  const Account& account = bench.Run();
  EXPECT_EQ(Told(account), (Lines{"Q:\\a.txt: its drive or folder is not on this computer",
                                  "Q:\\Work: its drive or folder is not on this computer"}));
  ASSERT_EQ(account.CountOf(AccountFate::kPutElsewhere), 2u);
  EXPECT_EQ(bench.machine.ReadFile(account.entries()[0].place), "one");
  EXPECT_EQ(bench.machine.ReadFile(account.entries()[1].place + "\\in\\c.txt"), "three");
}

TEST(RestoreAccount, WhatFitsNeitherHomeNorTheRestoreFolderIsNotSaidToBeThere) {
  JobArchive archive;
  archive.With("Add More Files\\Q:\\a.txt", "Q:\\a.txt", "Added More Files\\a.txt", "one");
  AccountBench bench(archive);
  bench.job.gRestoreFolder = "R:\\Kept";
  RestoreRun run(bench.machine.app(), bench.job, {});
  RestoreResult result;
  bench.machine.Do([&] { result = run.Run(); });
  EXPECT_FALSE(result.left_in_restore_folder);
  EXPECT_EQ(Told(bench.machine.app().account()),
            Lines{"Q:\\a.txt: its drive or folder is not on this computer"});
  EXPECT_EQ(bench.machine.app().account().CountOf(AccountFate::kNotRestored), 1u);
}

JobArchive TypedUrls() {
  JobArchive archive;
  archive.With("Internet Explorer\\Typed Urls", kTyped,
               "Internet Explorer\\Typed Urls\\Typed_Urls.reg",
               RegText(kTyped, "url1", "http://a.example/"));
  return archive;
}

TEST(RestoreAccount, CountsAnImportThatTheRegistryShows) {
  AccountBench bench(TypedUrls());
  const Account& account = bench.Run();
  EXPECT_FALSE(account.HasToTell());
  EXPECT_EQ(GoodFiles(account), 1u);
}

TEST(RestoreAccount, NamesAnImportThatTheRegistryEditorDidNotTake) {
  // It is not there, or it never ends; and the value of an earlier time stands.
  const std::vector<std::function<void(TestMachine&)>> ways = {
      [](TestMachine& machine) { machine.faults().shell.RefuseProgram("regedit.exe"); },
      [](TestMachine& machine) { machine.faults().shell.HangRuns(true); },
  };
  for (const auto& way : ways) {
    AccountBench bench(TypedUrls());
    bench.machine.SetString(kTyped, "url1", "http://old.example/");
    way(bench.machine);
    const Account& account = bench.Run();
    EXPECT_EQ(Told(account), Lines{std::string(kTyped) + ": the registry editor did not take it"});
    EXPECT_EQ(GoodFiles(account), 0u);
    EXPECT_EQ(account.entries()[0].thing, AccountThing::kRegistryKey);
  }
}

TEST(RestoreAccount, NamesAnExportThatIsDamagedByItsKey) {
  AccountBench bench(TypedUrls());
  bench.Damage("http://a.example/");
  EXPECT_EQ(Told(bench.Run()), Lines{std::string(kTyped) + ": damaged in the backup"});
}

TEST(RestoreAccount, NamesWhatTheBackupDoesNotHold) {
  JobArchive archive = ThreeFiles();
  archive.Item("Add More Files\\C:\\New\\d.txt", "C:\\New\\d.txt");
  archive.Item("Add Other Folders\\C:\\Work", "C:\\Work");
  AccountBench bench(archive);
  EXPECT_EQ(Told(bench.Run()),
            (Lines{"C:\\New\\d.txt: not in the backup", "C:\\Work: not in the backup"}));
}

TEST(RestoreAccount, NamesWhatAStopLeft) {
  AccountBench bench(ThreeFiles());
  int items = 0;
  bool going = true;
  RestoreEvents events;
  events.item = [&](const std::string&) { going = ++items < 2; };
  events.keep_going = [&] { return going; };
  const Account& account = bench.Run(events);
  EXPECT_EQ(account.end(), AccountEnd::kStopped);
  EXPECT_EQ(Told(account), (Lines{"C:\\New\\b.txt: the run was stopped before",
                                  "C:\\New\\c.txt: the run was stopped before"}));
}

TEST(RestoreAccount, OfABackupThatIsGoneSaysThatNothingWasRestored) {
  AccountBench bench(ThreeFiles());
  bench.machine.RemoveFile(bench.job.gRestoreFilePath);
  const Account& account = bench.Run();
  EXPECT_EQ(account.end(), AccountEnd::kFailed);
  EXPECT_EQ(account.Sentence(), "The restore was not done: not there: C:\\Backups\\Job.obk.");
  EXPECT_EQ(account.CountOf(AccountFate::kNotRestored), 3u);
}

}  // namespace
}  // namespace quorvale::restore_test
