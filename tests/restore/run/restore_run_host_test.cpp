// The restore engine without a page: a job is built by hand and run over the files of a computer.
#include "restore/run/restore_run.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "core/program/ModGlobal.h"
#include "restore/job_archive.h"
#include "restore/run/restore_places.h"

namespace quorvale::restore_test {
namespace {

constexpr char kFolder[] = "C:\\Kept";

// The job of restoring everything that an archive lists, as the pages commit it.
class EngineBench {
 public:
  EngineBench(const std::string& like, JobArchive archive) : machine(like) {
    machine.session().gAppDataPath = DataFolder(machine.app());
    machine.session().gOSName = like == "vista" ? kWindowsVista : kWindows2000;
    job.gRestoreFilePath = archive.Write(machine);
    job.gRestoreFolder = kFolder;
    job.gRestoreToDefaultFolders = true;
    for (const Item& item : archive.items()) {
      job.gRestoreSelection.push_back({item.path, item.key, job.restore_items.size()});
      job.restore_items.push_back({item.path, {item.path, item.key}});
    }
  }

  RestoreResult Run(RestoreEvents events = {}) {
    run = std::make_unique<RestoreRun>(machine.app(), job, std::move(events));
    RestoreResult result;
    machine.Do([&] { result = run->Run(); });
    return result;
  }

  TestMachine machine;
  RestoreJob job;
  std::unique_ptr<RestoreRun> run;
};

JobArchive TwoFilesAndAFolder() {
  JobArchive archive;
  archive.With("Add More Files\\C:\\New\\a.txt", "C:\\New\\a.txt", "Added More Files\\a.txt", "one")
      .With("Add More Files\\C:\\New\\b.txt", "C:\\New\\b.txt", "Added More Files\\b.txt", "two")
      .With("Add Other Folders\\D:\\Work", "D:\\Work", "Added Other Folders\\Work\\in\\c.txt",
            "three");
  return archive;
}

TEST(RestoreRun, PutsItemsHomeAndRecordsItself) {
  EngineBench bench("xp", TwoFilesAndAFolder());
  bench.machine.computer().SetClock({2026, 3, 5, 9, 7, 1, 5});
  bench.machine.computer().SetDrive("D", DriveKind::kFixed);
  const RestoreResult result = bench.Run();
  EXPECT_EQ(result.outcome, RestoreOutcome::kDone);
  EXPECT_FALSE(result.left_in_restore_folder);
  EXPECT_EQ(bench.machine.ReadFile("C:\\New\\a.txt"), "one");
  EXPECT_EQ(bench.machine.ReadFile("C:\\New\\b.txt"), "two");
  EXPECT_EQ(bench.machine.ReadFile("D:\\Work\\in\\c.txt"), "three");
  EXPECT_EQ(
      bench.machine.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale", "Last Restore"),
      "03/05/2026 9:07:01 AM");
  EXPECT_TRUE(bench.machine.Boxes().empty());
  EXPECT_TRUE(bench.machine.app().LoadedForms().empty());
}

TEST(RestoreRun, TellsItsPhasesInOrderAndWindowsMailOnVistaOnly) {
  for (const char* like : {"xp", "vista"}) {
    EngineBench bench(like, TwoFilesAndAFolder());
    std::vector<RestorePhase> begun, ended;
    RestoreEvents events;
    events.phase_begins = [&](RestorePhase phase) { begun.push_back(phase); };
    events.phase_ends = [&](RestorePhase phase) { ended.push_back(phase); };
    bench.Run(events);
    std::vector<RestorePhase> expected = {RestorePhase::kPrepare};
    if (like == std::string("vista")) expected.push_back(RestorePhase::kWindowsMail);
    for (RestorePhase phase :
         {RestorePhase::kOutlookExpress, RestorePhase::kOutlook, RestorePhase::kInternetExplorer,
          RestorePhase::kAddedFiles, RestorePhase::kAddedFolders, RestorePhase::kOtherFiles}) {
      expected.push_back(phase);
    }
    EXPECT_EQ(begun, expected) << like;
    EXPECT_EQ(ended, expected) << like;
  }
}

TEST(RestoreRun, AStoppedRunKeepsWhatItRestoredAndBeginsNothingMore) {
  EngineBench bench("xp", TwoFilesAndAFolder());
  bool going = true;
  std::vector<RestorePhase> begun;
  RestoreEvents events;
  events.phase_begins = [&](RestorePhase phase) {
    begun.push_back(phase);
    if (phase == RestorePhase::kAddedFolders) going = false;
  };
  events.keep_going = [&] { return going; };
  EXPECT_EQ(bench.Run(events).outcome, RestoreOutcome::kStopped);
  EXPECT_EQ(begun.back(), RestorePhase::kAddedFolders);
  EXPECT_EQ(bench.machine.ReadFile("C:\\New\\b.txt"), "two");
  EXPECT_FALSE(bench.machine.Exists("D:\\Work"));
  EXPECT_EQ(
      bench.machine.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale", "Last Restore"),
      std::nullopt);
}

TEST(RestoreRun, NamesEachMemberAndEachItem) {
  EngineBench bench("xp", TwoFilesAndAFolder());
  std::vector<std::string> items, members;
  bool testing = true;
  RestoreEvents events;
  events.phase_ends = [&](RestorePhase) { testing = false; };
  events.item = [&](const std::string& item) { items.push_back(item); };
  events.file = [&](const std::string& member) {
    if (!testing) members.push_back(member);
  };
  bench.machine.computer().SetDrive("D", DriveKind::kFixed);
  bench.Run(events);
  EXPECT_EQ(items, (std::vector<std::string>{"Add More Files\\C:\\New\\a.txt",
                                             "Add More Files\\C:\\New\\b.txt"}));
  EXPECT_EQ(members, (std::vector<std::string>{"Job\\Added More Files\\a.txt",
                                               "Job\\Added More Files\\b.txt",
                                               "Job\\Added Other Folders\\Work\\in\\c.txt"}));
}

TEST(RestoreRun, WhatCannotGoHomeIsLeftAndSaidSo) {
  JobArchive archive;
  archive.With("Add More Files\\Q:\\gone.txt", "Q:\\gone.txt", "Added More Files\\gone.txt",
               "kept");
  EngineBench bench("xp", archive);
  EXPECT_TRUE(bench.Run().left_in_restore_folder);
  EXPECT_EQ(bench.machine.ReadFile(std::string(kFolder) + "\\Job\\Added more Files\\gone.txt"),
            "kept");
}

TEST(RestoreRun, AFolderThatNobodyWantsIsTheProgramsOwn) {
  EngineBench bench("xp", TwoFilesAndAFolder());
  EXPECT_EQ(RestoreFolder(bench.machine.app(), bench.job), kFolder);
  EXPECT_EQ(FolderForLeftItems(bench.machine.app(), bench.job), kFolder);
  bench.job.gNoRestoreFolder = true;
  const std::string own = bench.machine.session().gAppDataPath;
  EXPECT_EQ(RestoreFolder(bench.machine.app(), bench.job), TempXmlFolder(bench.machine.app()));
  EXPECT_EQ(FolderForLeftItems(bench.machine.app(), bench.job), own + "\\Restore");
}

TEST(RestoreRun, TheSettingsFileAndStagedExportsGoWithTheRun) {
  const std::string key = "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\TypedURLs";
  JobArchive archive;
  archive.With("Internet Explorer\\Typed Urls", key,
               "Internet Explorer\\Typed Urls\\Typed_Urls.reg",
               RegText(key, "url1", "http://a.example/"));
  EngineBench bench("xp", archive);
  bench.job.restore_settings_file = std::string(kFolder) + "\\Job\\Job.xml";
  bench.machine.WriteFile(bench.job.restore_settings_file, "settings");
  bench.machine.WriteFile(std::string(kFolder) + "\\of an earlier run.txt", "mine");
  bench.Run();
  EXPECT_EQ(bench.machine.GetValue(key, "url1"), "http://a.example/");
  EXPECT_TRUE(bench.run->DeleteRestoreFolder(std::string(kFolder) + "\\Job\\"));
  EXPECT_EQ(bench.machine.AllBelow(kFolder),
            std::vector<std::string>{std::string(kFolder) + "\\of an earlier run.txt"});
}

TEST(RestoreRun, ReportsOutlooksDataFilesWithTheirProfile) {
  JobArchive archive;
  archive.With("Microsoft Outlook\\Identities\\Home (Default)\\Account Emails-Files\\Mail",
               "C:\\Old\\mail.pst", "Microsoft Outlook\\Identities\\Home (Default)\\mail.pst",
               "letters");
  EngineBench bench("xp", archive);
  const RestoreResult result = bench.Run();
  ASSERT_EQ(result.data_files.size(), 1u);
  EXPECT_EQ(bench.machine.ReadFile(result.data_files[0].first), "letters");
  EXPECT_EQ(result.data_files[0].second, "Home");
}

TEST(RestoreRun, KeptDataFilesOutliveTheStagingAndAreNothingLeftOver) {
  JobArchive archive;
  archive.With("Microsoft Outlook\\Identities\\Home\\Account Emails-Files\\Mail",
               "C:\\Old\\mail.pst", "Microsoft Outlook\\Identities\\Home\\mail.pst", "letters");
  EngineBench bench("xp", archive);
  bench.job.gRestoreToDefaultFolders = false;
  const RestoreResult result = bench.Run();
  EXPECT_FALSE(result.left_in_restore_folder);
  EXPECT_TRUE(result.data_files.empty());
  EXPECT_FALSE(bench.run->DeleteRestoreFolder(std::string(kFolder) + "\\Job"));
  const std::string kept =
      std::string(kFolder) + "\\Job\\Microsoft Outlook\\Identities\\Home\\mail.pst";
  EXPECT_EQ(bench.machine.ReadFile(kept), "letters");
}

// A data file of two profiles, of which the archive may hold either's member or both.
void ExpectOneExtraction(bool first_held, bool second_held, const std::string& taken) {
  JobArchive archive;
  for (const auto& [profile, held] : {std::pair{"P", first_held}, std::pair{"Q", second_held}}) {
    const std::string folder = std::string("Microsoft Outlook\\Identities\\") + profile;
    archive.Item(folder + "\\Account Emails-Files\\Mail", "C:\\Old\\mail.pst");
    if (held) archive.Member(folder + "\\mail.pst", std::string("letters, by ") + profile);
  }
  EngineBench bench("xp", archive);
  std::vector<std::string> members;
  bool testing = true;
  RestoreEvents events;
  events.phase_ends = [&](RestorePhase) { testing = false; };
  events.file = [&](const std::string& member) {
    if (!testing) members.push_back(member);
  };
  bench.Run(events);
  EXPECT_EQ(members, std::vector<std::string>{"Job\\Microsoft Outlook\\Identities\\" + taken +
                                              "\\mail.pst"});
  EXPECT_EQ(
      bench.machine.ReadFile(bench.machine.Profile() +
                             "\\Local Settings\\Application Data\\Microsoft\\Outlook\\mail.pst"),
      "letters, by " + taken);
}

TEST(RestoreRun, ADataFileOfTwoProfilesIsTakenOutOnce) {
  ExpectOneExtraction(true, true, "P");
  ExpectOneExtraction(true, false, "P");
  ExpectOneExtraction(false, true, "Q");
}

TEST(RestoreRun, ABackupThatIsGoneRestoresNothing) {
  EngineBench bench("xp", TwoFilesAndAFolder());
  bench.machine.RemoveFile(bench.job.gRestoreFilePath);
  EXPECT_EQ(bench.Run().outcome, RestoreOutcome::kDone);
  EXPECT_FALSE(bench.machine.Exists("C:\\New"));
}

TEST(Extractor, OfTwoMembersOfOneNameEachItemGetsItsOwn) {
  JobArchive archive;
  archive.With("Add More Files\\C:\\X\\a.txt", "C:\\X\\a.txt", "Added More Files\\a.txt", "first")
      .With("Add More Files\\C:\\Y\\a.txt", "C:\\Y\\a.txt", "Added More Files\\a.txt", "second");
  EngineBench bench("xp", archive);
  for (size_t i = 0; i < 2; ++i) {
    bench.job.restore_items[i].origin.place_among_namesakes = i;
    bench.job.restore_items[i].origin.namesakes = 2;
  }
  bench.Run();
  EXPECT_EQ(bench.machine.ReadFile("C:\\X\\a.txt"), "first");
  EXPECT_EQ(bench.machine.ReadFile("C:\\Y\\a.txt"), "second");
}

}  // namespace
}  // namespace quorvale::restore_test
