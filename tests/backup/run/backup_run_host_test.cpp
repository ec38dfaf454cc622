// The engine of a backup without any page: a job is committed to the session, and the run takes it
// over the files of a machine.
#include "backup/run/backup_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "backup/exported_values.h"
#include "backup/format/backup_file.h"
#include "backup/format/log_writer.h"
#include "backup/format/settings_file.h"
#include "core/program/ModGlobal.h"
#include "platform/host/host_platform.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

using Strings = std::vector<std::string>;
using Items = std::vector<std::pair<std::string, std::string>>;  // path and key

constexpr char kStage[] = "C:\\Out\\Job";
constexpr char kArchivePath[] = "C:\\Out\\Job.obk";

class BackupEngine : public testing::Test {
 protected:
  BackupEngine() {
    machine_.WriteFile("C:\\Data\\one.dat", "one");
    machine_.WriteFile("C:\\Data\\Work\\deep\\two.txt", "two");
    machine_.MakeFolder("C:\\Data\\Work\\Empty");
    program_.session().gOSName = kWindows2000;
    program_.session().gAppDataPath = "C:\\App";
  }

  // What the pages commit, and the staging folder with its settings file.
  void Commit(const Items& items) {
    BackupJob job;
    job.gBackupFolder = "C:\\Out";
    job.gBackupFileName = "Job.obk";
    job.gCompressionLevel = "6";
    job.gLogDetails = "False";
    job.gProtectWithPassword = "False";
    for (const auto& [path, key] : items) {
      job.gBackupItemPaths.push_back(path);
      job.gBackupItemKeys.push_back(key);
    }
    static_cast<BackupJob&>(program_.session()) = job;
    program_.session().gBackupBasePath = kStage;
    machine_.MakeFolder(kStage);
    WriteBackupSettings(program_, StagedSettingsPath(kStage, program_));
  }
  void CommitFiles() {
    Commit({{"Add Other Folders\\C:\\Data\\Work", "C:\\Data\\Work"},
            {"Add More Files\\C:\\Data\\one.dat", "C:\\Data\\one.dat"}});
  }
  // Runs to the end. The run goes on until `until_` says stop.
  BackupResult RunAll() {
    BackupRun run(program_, Events());
    BackupResult result = run.Run();
    run.CleanUp(result);
    return result;
  }
  BackupEvents Events() {
    BackupEvents events;
    events.phase = [this](BackupPhase phase) {
      phases_.push_back(phase);
      if (phase == stop_at_) stopped_ = true;
    };
    events.item = [this](const BackupItem& item) { items_.push_back(item.path); };
    events.keep_going = [this] { return !stopped_; };
    return events;
  }
  Strings Members() {
    BackupFile file(program_, kArchivePath, "");
    std::vector<zip::Entry> entries;
    EXPECT_EQ(file.Members(&entries), zip::Result::kDone);
    Strings names;
    for (const zip::Entry& entry : entries) names.push_back(entry.name);
    std::sort(names.begin(), names.end());
    return names;
  }
  std::string Content(const std::string& member) {
    BackupFile file(program_, kArchivePath, "");
    EXPECT_EQ(file.ExtractAs(member, "C:\\Unpacked\\member"), zip::Result::kDone) << member;
    return machine_.ReadFile("C:\\Unpacked\\member");
  }
  TestMachine machine_;
  Program program_{machine_.platform()};
  std::vector<BackupPhase> phases_;
  Strings items_;
  std::optional<BackupPhase> stop_at_;
  bool stopped_ = false;
};

TEST_F(BackupEngine, TakesFilesAndFoldersWithoutAPage) {
  CommitFiles();
  const BackupResult result = RunAll();
  EXPECT_EQ(result.outcome, BackupOutcome::kDone);
  EXPECT_EQ(result.archive, kArchivePath);
  EXPECT_EQ(result.component, zip::Result::kDone);
  EXPECT_TRUE(result.skipped.empty());
  EXPECT_EQ(
      Members(),
      (Strings{"Job\\Added More Files\\one.dat", "Job\\Added Other Folders\\Work\\",
               "Job\\Added Other Folders\\Work\\Empty\\", "Job\\Added Other Folders\\Work\\deep\\",
               "Job\\Added Other Folders\\Work\\deep\\two.txt", "Job\\Job.xml",
               "Job\\Members.txt"}));
  EXPECT_EQ(Content("Job\\Added More Files\\one.dat"), "one");
  EXPECT_FALSE(machine_.Exists(kStage));
}

TEST_F(BackupEngine, TellsItsPhasesAndItems) {
  CommitFiles();
  RunAll();
  EXPECT_EQ(phases_, (std::vector<BackupPhase>{BackupPhase::kPlanning, BackupPhase::kOutlookExpress,
                                               BackupPhase::kOutlook, BackupPhase::kBrowser,
                                               BackupPhase::kOtherFiles, BackupPhase::kSettling,
                                               BackupPhase::kArchive}));
  EXPECT_EQ(items_,
            (Strings{"Add Other Folders\\C:\\Data\\Work", "Add More Files\\C:\\Data\\one.dat"}));
}

TEST_F(BackupEngine, WindowsMailIsAPhaseOfVistaAlone) {
  program_.session().gOSName = kWindowsVista;
  CommitFiles();
  RunAll();
  EXPECT_EQ(phases_.at(1), BackupPhase::kWindowsMail);
}

TEST_F(BackupEngine, AStopInAnyPhaseLeavesNothing) {
  for (const BackupPhase phase :
       {BackupPhase::kPlanning, BackupPhase::kOutlookExpress, BackupPhase::kOutlook,
        BackupPhase::kBrowser, BackupPhase::kOtherFiles, BackupPhase::kSettling,
        BackupPhase::kArchive}) {
    SCOPED_TRACE(static_cast<int>(phase));
    stop_at_ = phase;
    stopped_ = false;
    phases_.clear();
    CommitFiles();
    const BackupResult result = RunAll();
    EXPECT_EQ(result.outcome, BackupOutcome::kStopped);
    EXPECT_EQ(result.component, std::nullopt);
    EXPECT_EQ(result.archive, "");
    EXPECT_EQ(phases_.back(), phase);
    EXPECT_EQ(machine_.AllBelow("C:\\Out"), Strings());
    EXPECT_EQ(machine_.GetValue("HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale", "Last Backup"),
              std::nullopt);
  }
}

TEST_F(BackupEngine, AStopWhileTheArchiveIsMadeEndsTheArchive) {
  CommitFiles();
  BackupEvents events = Events();
  events.archive_file = [this](const std::string&) { stopped_ = true; };
  BackupRun run(program_, std::move(events));
  const BackupResult result = run.Run();
  EXPECT_EQ(result.outcome, BackupOutcome::kStopped);
  EXPECT_EQ(result.component, zip::Result::kAborted);
  run.CleanUp(result);
  EXPECT_EQ(machine_.AllBelow("C:\\Out"), Strings());
}

TEST_F(BackupEngine, AStopAfterTheArchiveTakesItAway) {
  CommitFiles();
  BackupRun run(program_, Events());
  BackupResult result = run.Run();
  ASSERT_EQ(result.outcome, BackupOutcome::kDone);
  result.outcome = BackupOutcome::kStopped;  // while it was delivered
  run.CleanUp(result);
  EXPECT_EQ(machine_.AllBelow("C:\\Out"), Strings());
}

TEST_F(BackupEngine, AProgramThatEndedStopsItsRun) {
  CommitFiles();
  program_.End();
  EXPECT_EQ(RunAll().outcome, BackupOutcome::kStopped);
}

TEST_F(BackupEngine, ARunWithoutListenersIsARunToo) {
  CommitFiles();
  BackupRun run(program_, {});
  EXPECT_EQ(run.Run().outcome, BackupOutcome::kDone);
  EXPECT_TRUE(machine_.Exists(kArchivePath));
}

TEST_F(BackupEngine, AnExportHoldsItsKeyAlsoIfItEndsLate) {
  machine_.SetString("HKEY_CURRENT_USER\\Software\\Urls", "url1", "http://www.example.com/");
  machine_.faults().shell.DelayRuns(200, 20000);
  Commit({{"Internet Explorer\\Typed Urls", "HKEY_CURRENT_USER\\Software\\Urls"}});
  EXPECT_EQ(RunAll().outcome, BackupOutcome::kDone);
  const auto values = backup_test::ExportedValues(
      machine_, Content("Job\\Internet Explorer\\Typed Urls\\Typed_Urls.reg"));
  EXPECT_EQ(values, (std::map<std::string, std::string>{
                        {"HKEY_CURRENT_USER\\Software\\Urls\\url1", "http://www.example.com/"}}));
}

TEST_F(BackupEngine, WhatIsGoneIsSkippedAndLogged) {
  Commit({{"Add Other Folders\\C:\\Data\\Gone", "C:\\Data\\Gone"},
          {"Add More Files\\C:\\Data\\gone.dat", "C:\\Data\\gone.dat"},
          {"Add More Files\\C:\\Data\\one.dat", "C:\\Data\\one.dat"}});
  program_.session().gLogDetails = "True";
  machine_.MakeFolder(LogFolder(program_));
  const BackupResult result = RunAll();
  EXPECT_EQ(result.outcome, BackupOutcome::kDone);
  EXPECT_EQ(result.skipped, (Strings{"C:\\Data\\Gone", "C:\\Data\\gone.dat"}));
  EXPECT_NE(machine_.ReadFile(BackupLogPath(program_))
                .find("<Skipped File/Folders>\r\nC:\\Data\\Gone\r\nC:\\Data\\gone.dat\r\n"),
            std::string::npos);
}

TEST_F(BackupEngine, WithoutItsSettingsFileThereIsNoArchive) {
  CommitFiles();
  machine_.RemoveFile(StagedSettingsPath(kStage, program_));
  const BackupResult result = RunAll();
  EXPECT_EQ(result.outcome, BackupOutcome::kFailed);
  EXPECT_EQ(result.component, zip::Result::kFailed);
  EXPECT_EQ(machine_.AllBelow("C:\\Out"), Strings());
}

TEST_F(BackupEngine, AFullDiskIsNotTheEnd) {
  CommitFiles();
  machine_.WriteFile("C:\\Data\\Work\\noise.bin", [] {
    std::string noise;
    unsigned state = 1;
    for (int i = 0; i < 300000; ++i) noise += static_cast<char>((state = state * 69069 + 1) >> 24);
    return noise;
  }());
  BackupEvents events = Events();
  events.phase = [this](BackupPhase phase) {
    if (phase == BackupPhase::kArchive) machine_.computer().SetFreeSpace("C", 100000);
  };
  BackupRun run(program_, std::move(events));
  BackupResult result = run.Run();
  EXPECT_EQ(result.outcome, BackupOutcome::kNoSpace);
  EXPECT_EQ(result.archive, "");
  machine_.computer().SetFreeSpace("C", 100000000);
  result = run.MakeArchive("C:\\Elsewhere\\Job");
  EXPECT_EQ(result.outcome, BackupOutcome::kDone);
  EXPECT_EQ(result.archive, kArchivePath);  // the name of the first attempt
}

TEST_F(BackupEngine, AFolderThatCannotBeMadeIsTold) {
  Commit({{"Add More Files\\C:\\Data\\one.dat", "C:\\Data\\one.dat"}});
  program_.session().gBackupBasePath = "Q:\\Out\\Job";
  Strings refused;
  BackupEvents events = Events();
  events.folder_refused = [&refused](const std::string& path) { refused.push_back(path); };
  BackupRun run(program_, std::move(events));
  run.BackupOtherItems();
  EXPECT_EQ(refused, Strings{"Q:\\Out\\Job\\Added More Files\\"});
}

TEST_F(BackupEngine, ADiscBackupIsSplitIntoAFolderOfItsOwn) {
  CommitFiles();
  program_.session().gMediaDisc = true;
  BackupRun run(program_, {});
  EXPECT_EQ(run.Run().archive, "C:\\Out\\CDBackup\\Job.obk");
  EXPECT_EQ(run.archive.split_size, run.disc_part_size);
}

}  // namespace
}  // namespace quorvale
