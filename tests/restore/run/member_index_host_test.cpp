// Members of an archive by name, one listing for many questions.
#include "restore/run/member_index.h"

#include <gtest/gtest.h>

#include "restore/job_archive.h"

namespace quorvale::restore_test {
namespace {

class MemberIndexTest : public testing::Test {
 protected:
  MemberIndex Read(const JobArchive& archive) {
    BackupFile file(program_, archive.Write(machine_), "");
    MemberIndex index;
    index.Read(file);
    return index;
  }

  TestMachine machine_;
  Program program_{machine_.platform()};
};

JobArchive Letters() {
  JobArchive archive;
  archive.Member("Mail\\inbox.dbx", "12345")
      .Member("Mail\\Old\\inbox.dbx", "123")
      .Member("Mail\\Old\\empty\\", "")
      .Member("Mailbox\\a.txt", "1")
      .Member("Mail.txt", "1234567")
      .Member("Ärger\\Übel.txt", "12");
  return archive;
}

TEST_F(MemberIndexTest, FindsANameWithoutRegardToCase) {
  const MemberIndex index = Read(Letters());
  EXPECT_TRUE(index.Has("Job\\Mail\\inbox.dbx"));
  EXPECT_TRUE(index.Has("JOB\\mail\\INBOX.DBX"));
  EXPECT_TRUE(index.Has("job\\ärger\\übel.txt"));
  EXPECT_FALSE(index.Has("Job\\Mail\\inbox.db"));
  EXPECT_FALSE(index.Has("Job\\Mail\\inbox.dbx2"));
  EXPECT_FALSE(index.Has("Job\\Mail"));
  EXPECT_FALSE(index.Has(""));
}

TEST_F(MemberIndexTest, AFoldersPatternTakesWhatIsBelowItAndNothingBesideIt) {
  const MemberIndex index = Read(Letters());
  EXPECT_EQ(index.Count("Job\\Mail\\*"), 3u);
  EXPECT_EQ(index.Count("job\\mail\\old\\*"), 2u);
  EXPECT_EQ(index.Size("Job\\Mail\\*"), 8);
  EXPECT_EQ(index.Size("Job\\Mailbox\\*"), 1);
  EXPECT_FALSE(index.Has("Job\\Mai\\*"));
  EXPECT_EQ(index.Size("Job\\Mai\\*"), 0);
}

TEST_F(MemberIndexTest, CountsMembersOfOneNameAndAddsThemUp) {
  JobArchive archive;
  archive.Member("a.txt", "12").Member("A.TXT", "345").Member("a.txt2", "6");
  const MemberIndex index = Read(archive);
  EXPECT_EQ(index.Count("Job\\a.txt"), 2u);
  EXPECT_EQ(index.Size("Job\\a.txt"), 5);
  EXPECT_EQ(index.Count("Job\\b.txt"), 0u);
}

TEST_F(MemberIndexTest, OfWhatIsNoArchiveItHoldsNothing) {
  MemberIndex index = Read(Letters());
  machine_.WriteFile("C:\\Backups\\Job.obk", "no archive");
  BackupFile file(program_, "C:\\Backups\\Job.obk", "");
  index.Read(file);
  EXPECT_FALSE(index.Has("Job\\Mail\\inbox.dbx"));
  EXPECT_EQ(index.Size("Job\\*"), 0);
}

}  // namespace
}  // namespace quorvale::restore_test
