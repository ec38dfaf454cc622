#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "backup/format/log_writer.h"
#include "backup/format/settings_file.h"
#include "backup/pages/frmOne.h"
#include "discovery/pages/FrmTwo.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kPath[] = "C:\\Out\\file.xml";

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

// A session with one item of each kind.
class SettingsWriter : public testing::Test {
 protected:
  SettingsWriter() {
    machine_.computer().SetClock(
        {.year = 2026, .month = 11, .day = 14, .hour = 22, .minute = 5, .second = 9, .weekday = 7});
    Session& session = machine_.session();
    session.gBackupProcessName = kMainBackup;
    session.gBackupProcessDesc = kMainBackupDescription;
    session.gBackupFolder = "C:\\Backup";
    session.gLogDetails = "True";
    session.gUseCompression = "True";
    session.gCompressionLevel = "6";
    session.gArchivePassword = "";
    session.gProtectWithPassword = "False";
    session.gBackupFileName = "My job.obk";
    machine_.MakeFolder("C:\\Out");
  }

  void Add(const std::string& path, const std::string& key) {
    machine_.session().gBackupItemPaths.push_back(path);
    machine_.session().gBackupItemKeys.push_back(key);
  }

  void AddOneOfEach() {
    Add("Add More Files\\D:\\a.txt", "D:\\a.txt");
    Add("Add Other Folders\\D:\\W", "D:\\W");
    Add("Other Files\\My Documents", "C:\\Doc\\");
    Add("Internet Explorer\\Favorites", "C:\\Fav");
    Add("Outlook Express\\Email Messages\\Inbox.dbx", "C:\\S\\Inbox.dbx");
    Add("Windows Mail\\Mails", "C:\\WM\\");
    Add("Microsoft Outlook\\Identities\\O\\Account Emails-Files\\Box", "");
    Add("", "");
  }

  std::vector<std::string> Head() {
    return {"<?xml version='1.0'?>",
            "<BackupSettings>",
            "<Main Process='Main Backup'>",
            std::string("<ProcessDesc>") + kMainBackupDescription + "</ProcessDesc>",
            "<DateTime>7_14_11_2026_22_5</DateTime>",
            "<BackupFolder>C:\\Backup</BackupFolder>",
            "<ItemsForBackup>"};
  }

  std::vector<std::string> Options() {
    return {"<AdvancedSettings>",
            "<LogDetails>True</LogDetails>",
            "<UseCompression>True</UseCompression>",
            "<SelfExtractingBackup>6</SelfExtractingBackup>",
            "<VerifyArchive></VerifyArchive>",
            "<ProtectWithPassword>False</ProtectWithPassword>",
            "<BackupSettingsFiles>My job.obk</BackupSettingsFiles>",
            "</AdvancedSettings>"};
  }

  std::string Text(const std::vector<std::vector<std::string>>& groups) {
    std::string text;
    for (const auto& group : groups) text += Lines(group);
    return text;
  }

  const std::vector<std::string> end_items_{"</ItemsForBackup>"};
  const std::vector<std::string> tail_{"</Main>", "</BackupSettings>"};
  TestMachine machine_;
};

TEST_F(SettingsWriter, CanonicalFileLineByLine) {
  AddOneOfEach();
  WriteBackupSettings(machine_.app(), kPath);
  EXPECT_EQ(machine_.ReadFile(kPath),
            Text({Head(),
                  {"<AMF Key='D:\\a.txt' >Add More Files\\D:\\a.txt", "</AMF>",
                   "<AOF Key='D:\\W' >Add Other Folders\\D:\\W", "</AOF>",
                   "<OF Key='C:\\Doc\\' >Other Files\\My Documents", "</OF>",
                   "<IE Key='C:\\Fav' >Internet Explorer\\Favorites", "</IE>",
                   "<OE Key='C:\\S\\Inbox.dbx' >Outlook Express\\Email Messages\\Inbox.dbx",
                   "</OE>", "<WM Key='C:\\WM\\' >Windows Mail\\Mails", "</WM>",
                   "<MO Key='Exchange Mails' >Microsoft Outlook\\Identities\\O\\Account "
                   "Emails-Files\\Box",
                   "</MO>"},
                  end_items_,
                  Options(),
                  tail_}));
}

TEST_F(SettingsWriter, QuickFileHoldsFourKindsAndKeepsAnEmptyKey) {
  AddOneOfEach();
  WriteQuickSettings(machine_.app(), kPath);
  EXPECT_EQ(
      machine_.ReadFile(kPath),
      Text({Head(),
            {"<OF Key='C:\\Doc\\' >Other Files\\My Documents", "</OF>",
             "<IE Key='C:\\Fav' >Internet Explorer\\Favorites", "</IE>",
             "<OE Key='C:\\S\\Inbox.dbx' >Outlook Express\\Email Messages\\Inbox.dbx", "</OE>",
             "<MO Key='' >Microsoft Outlook\\Identities\\O\\Account Emails-Files\\Box", "</MO>"},
            end_items_,
            Options(),
            tail_}));
}

TEST_F(SettingsWriter, NoSelectedItemGivesAnEmptyList) {
  Add("", "");
  WriteBackupSettings(machine_.app(), kPath);
  EXPECT_NE(machine_.ReadFile(kPath).find("<ItemsForBackup>\r\n</ItemsForBackup>\r\n"),
            std::string::npos);
}

TEST_F(SettingsWriter, APathThatHoldsTwoKindsIsWrittenTwice) {
  Add("Add Other Folders\\D:\\Outlook Express\\Old", "D:\\Outlook Express\\Old");
  WriteBackupSettings(machine_.app(), kPath);
  EXPECT_NE(machine_.ReadFile(kPath).find(
                "<OE Key='D:\\Outlook Express\\Old' >Add Other Folders\\D:\\Outlook "
                "Express\\Old\r\n</OE>\r\n"
                "<AOF Key='D:\\Outlook Express\\Old' >Add Other Folders\\D:\\Outlook "
                "Express\\Old\r\n</AOF>\r\n"),
            std::string::npos);
}

TEST_F(SettingsWriter, ThePasswordStandsInClearText) {
  machine_.session().gArchivePassword = "abc";
  machine_.session().gProtectWithPassword = "True";
  WriteBackupSettings(machine_.app(), kPath);
  EXPECT_NE(machine_.ReadFile(kPath).find("<VerifyArchive>abc</VerifyArchive>"), std::string::npos);
}

TEST_F(SettingsWriter, APasswordTypedEarlierStaysWithProtectionOff) {
  machine_.session().gArchivePassword = "abc";
  WriteBackupSettings(machine_.app(), kPath);
  EXPECT_NE(machine_.ReadFile(kPath).find("<VerifyArchive>abc</VerifyArchive>\r\n"
                                          "<ProtectWithPassword>False</ProtectWithPassword>\r\n"),
            std::string::npos);
}

TEST_F(SettingsWriter, TheStampIsNotPadded) {
  machine_.computer().SetClock(
      {.year = 2007, .month = 3, .day = 5, .hour = 9, .minute = 7, .second = 0, .weekday = 1});
  WriteBackupSettings(machine_.app(), kPath);
  const std::string text = machine_.ReadFile(kPath);
  const LocalTime now = machine_.platform().system.Now();
  EXPECT_NE(text.find("<DateTime>" + std::to_string(now.weekday) + "_5_3_2007_9_7</DateTime>"),
            std::string::npos)
      << text;
}

TEST_F(SettingsWriter, NothingIsEscaped) {
  Add("Add Other Folders\\D:\\R&D's <x>", "D:\\R&D's <x>");
  WriteBackupSettings(machine_.app(), kPath);
  EXPECT_NE(machine_.ReadFile(kPath).find(
                "<AOF Key='D:\\R&D's <x>' >Add Other Folders\\D:\\R&D's <x>\r\n"),
            std::string::npos);
}

TEST_F(SettingsWriter, TextIsInTheCodePage) {
  Add("Add Other Folders\\D:\\Zürich", "D:\\Zürich");
  WriteBackupSettings(machine_.app(), kPath);
  EXPECT_NE(machine_.ReadFile(kPath).find("D:\\Z\xFCrich' >"), std::string::npos);
  SettingsFile settings;
  ASSERT_TRUE(ReadSettingsFile(machine_.app(), kPath, &settings));
  EXPECT_EQ(settings.items.at(0).key, "D:\\Zürich");
}

TEST_F(SettingsWriter, AnExistingSettingsFileStays) {
  machine_.WriteFile(kPath, "old");
  WriteBackupSettings(machine_.app(), kPath);
  WriteQuickSettings(machine_.app(), kPath);
  EXPECT_EQ(machine_.ReadFile(kPath), "old");
}

TEST_F(SettingsWriter, JobStateFileHasNoItems) {
  AddOneOfEach();
  machine_.WriteFile(kPath, "old");
  SaveJobState(machine_.app(), kPath, {.name = "Mine", .kind = "Custom"});
  EXPECT_EQ(machine_.ReadFile(kPath),
            Text({Head(),
                  end_items_,
                  {"<BackupName>Mine</BackupName>", "<BackupType>Custom</BackupType>"},
                  tail_}));
}

TEST_F(SettingsWriter, JobStateOfACompleteBackupSaysQuick) {
  frmOne& job = machine_.app().Get<frmOne>();
  job.OptQuick.value = true;
  job.SaveJobState(kPath);
  EXPECT_NE(machine_.ReadFile(kPath).find("<BackupType>Quick</BackupType>"), std::string::npos);
}

TEST_F(SettingsWriter, TreeStateFileHasItemsAndPath) {
  Session& session = machine_.session();
  session.gBackupProcessName = kMainBackup;
  session.gBackupProcessDesc = kMainBackupDescription;
  session.gBackupFolder = "C:\\Backup";
  session.gBackupItemPaths.clear();
  session.gBackupItemKeys.clear();
  Add("Windows Mail\\Outlook Express\\x", "C:\\x");
  Add("Microsoft Outlook\\a", "");
  SaveTreeState(machine_.app(), kPath,
                {.name = "Backup file", .kind = "Custom", .path = "D:\\Elsewhere"});
  EXPECT_EQ(machine_.ReadFile(kPath),
            Text({Head(),
                  {"<OE Key='C:\\x' >Windows Mail\\Outlook Express\\x", "</OE>",
                   "<WM Key='C:\\x' >Windows Mail\\Outlook Express\\x", "</WM>",
                   "<MO Key='Exchange Mails' >Microsoft Outlook\\a", "</MO>"},
                  end_items_,
                  {"<BackupName>Backup file</BackupName>", "<BackupPath>D:\\Elsewhere</BackupPath>",
                   "<BackupType>Custom</BackupType>"},
                  tail_}));
}

TEST_F(SettingsWriter, PageStateFilesOfTheMainWindowAndTheSchedulePage) {
  WriteRestartSettings(machine_.app(), kPath, {.name = "Backup file", .kind = "auto"});
  EXPECT_EQ(machine_.ReadFile(kPath),
            Text({Head(),
                  end_items_,
                  {"<BackupName>Backup file</BackupName>", "<BackupType>auto</BackupType>"},
                  tail_}));
  SaveScheduleState(machine_.app(), kPath, {.kind = "Schedule"});
  EXPECT_EQ(machine_.ReadFile(kPath),
            Text({Head(), end_items_, {"<BackupType>Schedule</BackupType>"}, tail_}));
}

TEST_F(SettingsWriter, NothingIsWrittenWhereAnOldHandOverFileStays) {
  machine_.MakeFolder("C:\\Out\\file.xml");  // a folder cannot be deleted as a file
  SaveScheduleState(machine_.app(), kPath, {.kind = "Schedule"});
  EXPECT_TRUE(machine_.AllBelow(kPath).empty());
  EXPECT_EQ(machine_.AllBelow("C:\\Out").size(), 1u);
}

std::vector<std::string> LogHead(TestMachine& machine) {
  SystemInfo& system = machine.platform().system;
  const LocalTime now = system.Now();
  return {"<?xml version='1.0'?>",
          "<BackupSettings>",
          "<Main Process: Main Backup>",
          std::string("<Process Description>") + kMainBackupDescription + "</Process Description>",
          "<DateTime>" + system.WeekdayName(now.weekday) + "_11/14/2026_" + system.TimeText(now) +
              "</DateTime>",
          "<Backup Folder>C:\\Backup</Backup Folder>",
          "",
          "<ItemsForBackup>",
          ""};
}

const std::vector<std::string> kLogOptions = {"</ItemsForBackup>",
                                              "<Advanced Settings>",
                                              "<Use Compression>True</Use Compression>",
                                              "<Password Protected>False</Password Protected>",
                                              "<Backup File Name>My job.obk</Backup File Name>",
                                              "</AdvancedSettings>"};

TEST_F(SettingsWriter, ReviewLogLineByLine) {
  AddOneOfEach();
  Add("Microsoft Outlook\\Dictionary\\a.dic", "C:\\a.dic");
  machine_.WriteFile(kPath, "a longer old log that goes away");
  WriteReviewLog(machine_.app(), kPath);
  EXPECT_EQ(machine_.ReadFile(kPath),
            Text({LogHead(machine_),
                  {"<Add More Files>", "D:\\a.txt", "</Add More Files>", "<Add Other Folders>",
                   "D:\\W", "</Add Other Folders>", "<Other Files>", "Other Files\\My Documents",
                   "</Other Files>", "<Internet Explorer>", "<Internet Explorer\\Favorites",
                   "</Internet Explorer>", "<Outlook Express>",
                   "<Outlook Express\\Email Messages\\Inbox.dbx", "</Outlook Express>",
                   "<Exchange Mails >Microsoft Outlook\\Identities\\O\\Account "
                   "Emails-Files\\Box>Microsoft Outlook\\Identities\\O\\Account "
                   "Emails-Files\\Box",
                   "</MO>", "<C:\\a.dic>", "</MO>"},
                  kLogOptions,
                  tail_}));
}

TEST_F(SettingsWriter, RunLogHasTheSkipListAndAnotherClosingMark) {
  Add("Microsoft Outlook\\Dictionary\\a.dic", "C:\\a.dic");
  Add("Microsoft Outlook\\x", "");
  WriteRunLog(machine_.app(), kPath, {"", "C:\\gone.txt", "D:\\gone"});
  EXPECT_EQ(machine_.ReadFile(kPath),
            Text({LogHead(machine_),
                  {"<C:\\a.dic' >", "</MO>",
                   "<Exchange Mails >Microsoft Outlook\\x' >Microsoft Outlook\\x", "</MO>"},
                  kLogOptions,
                  {"<Skipped File/Folders>", "C:\\gone.txt", "D:\\gone", "</Skipped File/Folder>"},
                  tail_}));
}

TEST_F(SettingsWriter, BothLogsOfAJobStandInOneFile) {
  machine_.session().gAppDataPath = "C:\\Data";
  EXPECT_EQ(BackupLogPath(machine_.app()), "C:\\Data\\Files\\Logs\\Settings_My job.xml");
}

TEST_F(SettingsWriter, AMissingFileIsNoSettingsFile) {
  SettingsFile settings;
  EXPECT_FALSE(ReadSettingsFile(machine_.app(), "C:\\Out\\none.xml", &settings));
}

}  // namespace
}  // namespace quorvale
