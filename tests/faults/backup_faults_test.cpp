// Every call that a backup makes fails once. What was there stays, and what the backup lacks, its
// account names.
#include <gtest/gtest.h>

#include "faults/fault_backup.h"

namespace quorvale::fault_test {
namespace {

constexpr char kOtherArchive[] = "C:\\Backups\\Other.obk";

void Append(std::vector<std::string>* problems, const std::vector<std::string>& more) {
  problems->insert(problems->end(), more.begin(), more.end());
}

// Each backup under a final name is whole and holds what its account does not name; where there is
// none, the run says that it failed.
std::vector<std::string> CheckBackup(FaultComputer& computer, const BackupResult& result,
                                     const Contents& before, const BackupContent& everything,
                                     const Account& account) {
  std::vector<std::string> problems;
  const Contents after = computer.Now();
  bool has_archive = false;
  for (const auto& [path, bytes] : after.files) {
    if (!path.ends_with(".obk")) continue;
    const auto old = before.files.find(path);
    if (old != before.files.end() && old->second == bytes) continue;
    has_archive = true;
    if (result.outcome == BackupOutcome::kDone && path != result.archive) {
      problems.push_back("a backup that the run does not tell: " + path);
    }
    Append(&problems, WhatIsLost(ReadBackup(computer, path), everything, account));
  }
  if (result.outcome == BackupOutcome::kDone && !has_archive) {
    problems.push_back("done without a backup");
  }
  if (result.outcome != BackupOutcome::kDone && account.end() != AccountEnd::kFailed) {
    problems.push_back("the account does not say that the run failed");
  }
  Append(&problems, WhatChanged(before, after));
  return problems;
}

class BackupFaults : public testing::Test {
 protected:
  BackupFaults() {
    FaultComputer computer;
    computer.FillForBackup();
    everything_ = ContentOfEverything(computer);
  }

  // `prepare` stands for what the pages do before the review page's Next.
  FaultOutcome Run(std::uint64_t number, bool over_an_earlier_one) {
    FaultComputer computer;
    computer.FillForBackup();
    computer.memory.files.Put(kOtherArchive, Noise(5000, 99));
    if (over_an_earlier_one) computer.memory.files.Put(kArchive, Noise(3000, 98));
    Contents before = computer.Now();
    FaultOutcome outcome;
    {
      Program program(computer.faults.platform());
      CommitBackup(program);
      computer.faults.FailCall(number);
      // What the first page does when the person agreed to overwrite it.
      if (over_an_earlier_one) program.platform().files.RemoveFile(kArchive, true);
      const BackupResult result = RunBackup(program);
      outcome.failed_call = computer.faults.failed_call();
      computer.faults.FailCall(0);
      outcome.problems = CheckBackup(computer, result, before, everything_, program.account());
      if (number == 0 && !program.account().entries().empty()) {
        outcome.problems.push_back("a sound run has something to tell: " +
                                   program.account().Sentence());
      }
    }
    if (computer.memory.files.Bytes(kOtherArchive) != before.files.at(kOtherArchive)) {
      outcome.problems.push_back("another backup was touched");
    }
    if (computer.faults.files.open_files() != 0) outcome.problems.push_back("a file stays open");
    return outcome;
  }

  BackupContent everything_;
};

TEST_F(BackupFaults, ABackupWithAFaultIsWholeOrTellsWhatItLacks) {
  ASSERT_TRUE(everything_.is_whole);
  ASSERT_GT(everything_.members.size(), 20u);
  TryEveryFault("a backup", [this](std::uint64_t number) { return Run(number, false); });
}

TEST_F(BackupFaults, ABackupOverAnEarlierOneLosesNothingElse) {
  TryEveryFault("an overwriting backup",
                [this](std::uint64_t number) { return Run(number, true); });
}

}  // namespace
}  // namespace quorvale::fault_test
