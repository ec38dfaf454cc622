// The plan of a backup: which members a selection has, and under which names.
#include "backup/run/backup_plan.h"

#include <gtest/gtest.h>

#include "core/program/ModGlobal.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

using Strings = std::vector<std::string>;
using Items = std::vector<std::pair<std::string, std::string>>;  // path and key

class BackupPlanTest : public testing::Test {
 protected:
  BackupPlanTest() {
    program_.session().gOSName = kWindows2000;
    program_.session().gBackupFolder = "C:\\Out";
    program_.session().gBackupBasePath = "C:\\Out\\Job";
  }
  BackupPlan Plan(const Items& items) {
    Session& session = program_.session();
    session.gBackupItemPaths.clear();
    session.gBackupItemKeys.clear();
    session.gFileCollection.Clear();
    for (const auto& [path, key] : items) {
      session.gBackupItemPaths.push_back(path);
      session.gBackupItemKeys.push_back(key);
    }
    return PlanBackup(
        program_, [this](BackupPhase phase) { return phase != left_out_; }, [] { return true; });
  }
  static Items Files(const Strings& files) {
    Items items;
    for (const std::string& file : files) items.emplace_back("Add More Files\\" + file, file);
    return items;
  }
  // "source > entry below the stem", of each member of an item.
  Strings Members(const PlannedItem& item) {
    Strings members;
    for (const PlannedMember& member : item.members) {
      const FileArr& file = program_.session().gFileCollection.At(member.file);
      members.push_back(file.SourceFilePath + " > " + file.DestFilePath.substr(4));
    }
    return members;
  }
  void Write(const Strings& files) {
    for (const std::string& file : files) machine_.WriteFile(file, "of " + file);
  }
  TestMachine machine_;
  Program program_{machine_.platform()};
  BackupPhase left_out_ = BackupPhase::kWindowsMail;
};

TEST_F(BackupPlanTest, OfFilesOfOneNameTheLastHasItAndTheOthersANumber) {
  Write({"C:\\a\\x.txt", "C:\\b\\X.TXT", "D:\\c\\x.txt", "D:\\d\\x_1.txt"});
  const BackupPlan plan =
      Plan(Files({"C:\\a\\x.txt", "C:\\b\\X.TXT", "D:\\c\\x.txt", "D:\\d\\x_1.txt"}));
  EXPECT_EQ(Members(plan.items[0]), Strings{"C:\\a\\x.txt > Added More Files\\x_2.txt"});
  EXPECT_EQ(Members(plan.items[1]), Strings{"C:\\b\\X.TXT > Added More Files\\X_3.TXT"});
  EXPECT_EQ(Members(plan.items[2]), Strings{"D:\\c\\x.txt > Added More Files\\x.txt"});
  EXPECT_EQ(Members(plan.items[3]), Strings{"D:\\d\\x_1.txt > Added More Files\\x_1.txt"});
}

TEST_F(BackupPlanTest, AFileThatIsNotThereTakesNobodysName) {
  Write({"C:\\a\\x.txt", "C:\\b\\x.txt"});
  const BackupPlan plan = Plan(Files({"C:\\a\\x.txt", "C:\\b\\x.txt", "C:\\gone\\x.txt"}));
  EXPECT_EQ(Members(plan.items[0]), Strings{"C:\\a\\x.txt > Added More Files\\x_1.txt"});
  EXPECT_EQ(Members(plan.items[1]), Strings{"C:\\b\\x.txt > Added More Files\\x.txt"});
  EXPECT_FALSE(plan.items[2].is_there);
  EXPECT_EQ(Members(plan.items[2]), Strings{"C:\\gone\\x.txt > Added More Files\\x_2.txt"});
}

TEST_F(BackupPlanTest, FoldersOfOneNameKeepTheirFilesApart) {
  Write({"C:\\Work\\Backup\\a.txt", "C:\\Work\\Backup\\sub\\c.txt", "D:\\Other\\Backup\\A.txt",
         "D:\\Other\\Backup\\d.txt", "D:\\Other\\Backup\\sub\\e.txt"});
  const BackupPlan plan = Plan({{"Add Other Folders\\C:\\Work\\Backup", "C:\\Work\\Backup"},
                                {"Add Other Folders\\D:\\Other\\Backup", "D:\\Other\\Backup"}});
  EXPECT_EQ(Members(plan.items[0]),
            (Strings{"C:\\Work\\Backup\\a.txt > Added Other Folders\\Backup\\a_1.txt",
                     "C:\\Work\\Backup\\sub\\c.txt > Added Other Folders\\Backup\\sub\\c.txt",
                     "C:\\Work\\Backup\\sub\\*.* > Added Other Folders\\Backup\\sub\\*.*",
                     "C:\\Work\\Backup\\*.* > Added Other Folders\\Backup\\*.*"}));
  EXPECT_EQ(Members(plan.items[1]),
            (Strings{"D:\\Other\\Backup\\A.txt > Added Other Folders\\Backup\\A.txt",
                     "D:\\Other\\Backup\\d.txt > Added Other Folders\\Backup\\d.txt",
                     "D:\\Other\\Backup\\sub\\e.txt > Added Other Folders\\Backup\\sub\\e.txt",
                     "C:\\Work\\Backup\\sub\\*.* > Added Other Folders\\Backup\\sub\\*.*",
                     "C:\\Work\\Backup\\*.* > Added Other Folders\\Backup\\*.*"}));
  EXPECT_EQ(plan.items[1].members[2].inner, "sub\\e.txt");
  EXPECT_TRUE(plan.items[1].members[3].is_shared);
}

TEST_F(BackupPlanTest, AFileGivesWayToAFolderOfItsName) {
  Write({"C:\\Work\\Backup\\data.d", "D:\\Other\\Backup\\data.d\\x.txt"});
  const BackupPlan plan = Plan({{"Add Other Folders\\D:\\Other\\Backup", "D:\\Other\\Backup"},
                                {"Add Other Folders\\C:\\Work\\Backup", "C:\\Work\\Backup"}});
  EXPECT_EQ(Members(plan.items[1]),
            (Strings{"C:\\Work\\Backup\\data.d > Added Other Folders\\Backup\\data_1.d",
                     "D:\\Other\\Backup\\*.* > Added Other Folders\\Backup\\*.*"}));
}

TEST_F(BackupPlanTest, ExportsOfOneNameAreStagedApart) {
  const std::string root = "Outlook Express\\Account Settings\\";
  const BackupPlan plan = Plan({{root + "mail a", "HKEY_CURRENT_USER\\1"},
                                {root + "Mail_A", "HKEY_CURRENT_USER\\2"},
                                {root + "mail a", "HKEY_CURRENT_USER\\3"}});
  const std::string stage = "C:\\Out\\Job\\";
  EXPECT_EQ(Members(plan.items[0]),
            Strings{stage + root + "mail_a_1.reg > " + root + "mail_a_1.reg"});
  EXPECT_EQ(Members(plan.items[1]),
            Strings{stage + root + "Mail_A_2.reg > " + root + "Mail_A_2.reg"});
  EXPECT_EQ(Members(plan.items[2]), Strings{stage + root + "mail_a.reg > " + root + "mail_a.reg"});
}

TEST_F(BackupPlanTest, ProfilesWhoseNamesBeginLikeAccountKeepTheirExports) {
  Items items;
  for (const char* name : {"Accounting", "Accounts", "AccountB"}) {
    items.emplace_back("Microsoft Outlook\\Identities\\" + std::string(name) + "\\Account Settings",
                       "HKEY_CURRENT_USER\\" + std::string(name));
  }
  const BackupPlan plan = Plan(items);
  std::vector<std::string> entries;
  for (const PlannedItem& item : plan.items) entries.push_back(Members(item).at(0));
  const std::string folder = "C:\\Out\\Job\\Microsoft Outlook\\Identities\\";
  const std::string entry = " > Microsoft Outlook\\Identities\\";
  EXPECT_EQ(entries, (Strings{folder + "Account_Settings_1.reg" + entry + "Account_Settings_1.reg",
                              folder + "Account_Settings_2.reg" + entry + "Account_Settings_2.reg",
                              folder + "Account_Settings.reg" + entry + "Account_Settings.reg"}));
}

TEST_F(BackupPlanTest, AnExportWhoseNameNoFileCanHaveIsStagedUnderAnother) {
  const BackupPlan plan = Plan(
      {{"Microsoft Outlook\\Identities\\Acme Inc.\\Account Settings", "HKEY_CURRENT_USER\\x"}});
  ASSERT_EQ(Members(plan.items[0]).size(), 1u);
  const FileArr& file = program_.session().gFileCollection.At(0);
  EXPECT_EQ(file.SourceFilePath, "C:\\Out\\Job\\Exports\\0.reg");
  EXPECT_EQ(file.DestFilePath,
            "Job\\Microsoft Outlook\\Identities\\Acme Inc.\\Account_Settings.reg");
}

TEST_F(BackupPlanTest, OneFileListedTwiceInOneProfileIsOneEntry) {
  Write({"C:\\Mail\\a.pst"});
  const std::string path = "Microsoft Outlook\\Identities\\P\\Account Emails-Files\\";
  const BackupPlan plan =
      Plan({{path + "One", "C:\\Mail\\a.pst"}, {path + "Two", "C:\\Mail\\a.pst"}});
  EXPECT_EQ(program_.session().gFileCollection.Count(), 1u);
  EXPECT_TRUE(plan.items[1].members.at(0).is_shared);
  EXPECT_EQ(Members(plan.items[0]), Members(plan.items[1]));
}

TEST_F(BackupPlanTest, WhatDoesNotApplyHasNoMembers) {
  Write({"C:\\Mail\\a.pst"});
  left_out_ = BackupPhase::kOutlook;
  const BackupPlan plan =
      Plan({{"Microsoft Outlook\\Identities\\P\\Account Emails-Files\\x", "C:\\Mail\\a.pst"}});
  EXPECT_FALSE(plan.items[0].is_taken);
  EXPECT_TRUE(plan.items[0].members.empty());
}

TEST_F(BackupPlanTest, TheStagingFolderIsNotPartOfTheBackup) {
  Write({"C:\\Out\\Job\\Job.xml", "C:\\Out\\mine.txt"});
  const BackupPlan plan = Plan({{"Add Other Folders\\C:\\Out", "C:\\Out"}});
  EXPECT_EQ(Members(plan.items[0]),
            (Strings{"C:\\Out\\mine.txt > Added Other Folders\\Out\\mine.txt",
                     "C:\\Out\\*.* > Added Other Folders\\Out\\*.*"}));
}

}  // namespace
}  // namespace quorvale
