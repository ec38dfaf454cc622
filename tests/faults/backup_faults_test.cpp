// Every call that a backup makes fails once. What was there stays, and what the backup lacks, its
// account names.
#include <gtest/gtest.h>

#include <ostream>

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

struct Case {
  const char* what;
  BackupWay way;
  bool over_an_earlier_one = false;
  int processors = 1;
};

void PrintTo(const Case& wanted, std::ostream* out) { *out << wanted.what; }

FaultOutcome BackUpWithFault(std::uint64_t number, const Case& wanted,
                             const BackupContent& everything) {
  FaultComputer computer(wanted.processors);
  computer.FillForBackup();
  computer.memory.files.Put(kOtherArchive, Noise(5000, 99));
  if (wanted.over_an_earlier_one) computer.memory.files.Put(kArchive, Noise(3000, 98));
  const Contents before = computer.Now();
  FaultOutcome outcome;
  {
    Program program(computer.faults.platform());
    CommitBackup(program, wanted.way);
    computer.faults.FailCall(number);
    // What the first page does when the person agreed to overwrite it.
    if (wanted.over_an_earlier_one) program.platform().files.RemoveFile(kArchive, true);
    const BackupResult result = RunBackup(program);
    outcome.failed_call = computer.faults.failed_call();
    computer.faults.FailCall(0);
    outcome.problems = CheckBackup(computer, result, before, everything, program.account());
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

class BackupFaults : public testing::TestWithParam<Case> {};

TEST_P(BackupFaults, AreNamedByTheAccountOrTheBackupIsWhole) {
  FaultComputer sound;
  sound.FillForBackup();
  const BackupContent everything = ContentOfEverything(sound);
  ASSERT_TRUE(everything.is_whole);
  ASSERT_GT(everything.members.size(), 20u);
  TryEveryFault(GetParam().what, [&everything](std::uint64_t number) {
    return BackUpWithFault(number, GetParam(), everything);
  });
}

INSTANTIATE_TEST_SUITE_P(Ways, BackupFaults,
                         testing::Values(Case{"a backup", {}},
                                         Case{"an overwriting backup", {}, true},
                                         Case{"a backup with a password", {.with_password = true}},
                                         Case{"a backup for discs", {.for_discs = true}},
                                         Case{"a backup with a log", {.with_log = true}},
                                         Case{"a backup on Windows Vista", {.on_vista = true}},
                                         Case{"a backup by four processors", {}, false, 4}));

}  // namespace
}  // namespace quorvale::fault_test
