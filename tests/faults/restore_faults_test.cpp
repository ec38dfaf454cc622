// Every call that a restore onto a used computer makes fails once. Each file is the whole old or
// the whole new one, and what did not come back, the account names.
#include <gtest/gtest.h>

#include "faults/fault_backup.h"
#include "faults/fault_restore.h"
#include "faults/fault_walk.h"

namespace quorvale::fault_test {
namespace {

class RestoreFaults : public testing::Test {
 protected:
  RestoreFaults() : archive_(BackupOfEverything()) {
    FaultComputer computer;
    Fill(computer);
    Program program(computer.memory.platform());
    CommitRestore(program, kArchive);
    RunRestore(program);
    whole_ = computer.Now();
  }

  void Fill(FaultComputer& computer) {
    computer.FillForRestore();
    computer.memory.files.Put(kArchive, archive_);
  }

  FaultOutcome Run(std::uint64_t number) {
    FaultComputer computer;
    Fill(computer);
    const Contents before = computer.Now();
    FaultOutcome outcome;
    {
      Program program(computer.faults.platform());
      CommitRestore(program, kArchive);
      computer.faults.FailCall(number);
      const RestoreResult result = RunRestore(program);
      outcome.failed_call = computer.faults.failed_call();
      computer.faults.FailCall(0);
      outcome.problems = WhatIsWrong(result, program.account(), before, whole_, computer.Now());
      if (number == 0 && !program.account().entries().empty()) {
        outcome.problems.push_back("a sound run has something to tell: " +
                                   program.account().Sentence());
      }
    }
    if (computer.faults.files.open_files() != 0) outcome.problems.push_back("a file stays open");
    return outcome;
  }

  const std::string archive_;
  Contents whole_;
};

// Without this the others would compare with nothing.
TEST_F(RestoreFaults, ASoundRestoreBringsEverythingHome) {
  FaultComputer old_one;
  old_one.FillForBackup();
  const Contents old = old_one.Now();
  int files = 0;
  for (const auto& [path, bytes] : old.files) {
    // The mail store is that of the identity that is there.
    if (path.find("Identities\\{") != std::string::npos) continue;
    ++files;
    EXPECT_EQ(whole_.files[path], bytes) << path;
  }
  EXPECT_EQ(files, 13);
  EXPECT_EQ(whole_.values["1:Software\\Microsoft\\Internet Explorer\\TypedURLs\\url1"],
            old.values.at("1:Software\\Microsoft\\Internet Explorer\\TypedURLs\\url1"));
  EXPECT_EQ(whole_.files["C:\\Documents and Settings\\Anna\\My Documents\\own.doc"], "own");
}

TEST_F(RestoreFaults, ARestoreWithAFaultLosesNothingAndTellsWhatIsMissing) {
  TryEveryFault("a restore onto a used computer",
                [this](std::uint64_t number) { return Run(number); });
}

}  // namespace
}  // namespace quorvale::fault_test
