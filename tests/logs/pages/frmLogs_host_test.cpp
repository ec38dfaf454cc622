// The log page.
#include "logs/pages/frmLogs.h"

#include <gtest/gtest.h>

#include "core/main/FrmWelcome.h"
#include "core/pages/account_window.h"
#include "core/pages/frmAccount.h"
#include "core/program/account_folder.h"
#include "core/program/full_text.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

TEST(RenderLogText, ReadsNamesAndValuesOutOfTheLines) {
  EXPECT_EQ(RenderLogText("<?xml version='1.0'?>\r\n"
                          "<BackupSettings>\r\n"
                          "<Main Process='Main Backup'>\r\n"
                          "<ProcessDesc>Save all</ProcessDesc>\r\n"
                          "</Main>\r\n"),
            "-------- Log Starts ---------\r\n"
            "BackupSettings: \r\n"
            "Main Process='Main Backup': \r\n"
            "ProcessDesc: Save all\r\n");
}

TEST(RenderLogText, WithoutAnXmlHeaderThereIsNoLogStartsLine) {
  EXPECT_EQ(RenderLogText("<A>1</A>"), "A: 1");
  EXPECT_EQ(RenderLogText("<?XML version='1.0'?>\n<A>1</A>\n"),
            "-------- Log Starts ---------\r\nA: 1");
}

TEST(RenderLogText, OnlyTheFirstClosingTagOfALineCounts) {
  EXPECT_EQ(RenderLogText("<A>a > b</A><B>x</B>"), "A: a :  b");
  EXPECT_EQ(RenderLogText("plain text"), "plain text");
  EXPECT_EQ(RenderLogText(""), "");
}

class FrmLogsTest : public testing::Test {
 protected:
  frmLogs& Open() {
    machine_.Click(machine_.app().Get<FrmWelcome>().CmdWC_ViewLog);
    return machine_.app().Get<frmLogs>();
  }
  std::string Folder() { return machine_.AppData() + "\\Tarnwick\\Quorvale\\Files\\Logs"; }
  void WriteLog(const std::string& name, const std::string& text) {
    machine_.WriteFile(Folder() + "\\" + name, text);
  }

  TestMachine machine_;
};

TEST_F(FrmLogsTest, AnEmptyFolderYieldsAnEmptyListAndNothingToDelete) {
  frmLogs& page = Open();
  EXPECT_EQ(page.File1.Count(), 0);
  EXPECT_EQ(page.RichTextBox1.text.get(), "");
  EXPECT_EQ(page.txtLog.text.get(), Folder());
  machine_.Expect(ui::Answer::kOk, "There is no log to delete");
  machine_.Click(page.cmdDelete);
  EXPECT_EQ(machine_.ui().boxes.back().request.icon, ui::Icon::kInformation);
}

TEST_F(FrmLogsTest, TheFirstLogIsShownAtOnce) {
  WriteLog("Settings_b.xml", "<A>second</A>\r\n");
  WriteLog("settings_A.xml", "<A>first</A>\r\n");
  frmLogs& page = Open();
  ASSERT_EQ(page.File1.Count(), 2);
  EXPECT_EQ(page.File1.Item(0), "settings_A.xml");
  EXPECT_EQ(page.File1.SelectedText(), "settings_A.xml");
  EXPECT_EQ(page.RichTextBox1.text.get(), "A: first");
  EXPECT_EQ(page.txtLog.text.get(), Folder() + "\\settings_A.xml");
  page.File1.list_index = 1;
  EXPECT_EQ(page.RichTextBox1.text.get(), "A: second");
  EXPECT_EQ(page.txtLog.text.get(), Folder() + "\\Settings_b.xml");
}

TEST_F(FrmLogsTest, AMissingLogChangesNothing) {
  WriteLog("a.xml", "<A>1</A>");
  frmLogs& page = Open();
  page.RenderLog(Folder() + "\\gone.xml");
  EXPECT_EQ(page.RichTextBox1.text.get(), "A: 1");
}

TEST_F(FrmLogsTest, ALogIsReadInTheSystemsCodePage) {
  WriteLog("a.xml", "<Name>M\xFCller</Name>");
  EXPECT_EQ(Open().RichTextBox1.text.get(), "Name: M\xC3\xBCller");
}

TEST_F(FrmLogsTest, WhatTheCodePageCannotHoldIsShownInFull) {
  frmLogs& page = Open();
  const std::string log = Folder() + "\\Settings_Дом.xml";
  WriteTextFile(machine_.app(), log, "<Name>Дом</Name>\r\n");
  EXPECT_EQ(machine_.ReadFile(log), "<Name>?\?\?</Name>\r\n");
  machine_.Click(page.cmdRefresh);
  ASSERT_EQ(page.File1.Count(), 1);
  EXPECT_EQ(page.File1.Item(0), "Settings_Дом.xml");
  EXPECT_EQ(page.RichTextBox1.text.get(), "Name: Дом");
  // A log that an older program wrote over it is another text.
  machine_.WriteFile(log, "<Name>Other</Name>\r\n");
  machine_.Click(page.cmdRefresh);
  EXPECT_EQ(page.RichTextBox1.text.get(), "Name: Other");
  machine_.Expect(ui::Answer::kYes, "");
  machine_.Click(page.cmdDelete);
  EXPECT_FALSE(machine_.Exists(FullTextPath(log)));
}

TEST_F(FrmLogsTest, DeleteAsksAndThenShowsTheNextFile) {
  WriteLog("a.xml", "<A>1</A>");
  WriteLog("b.xml", "<B>2</B>");
  frmLogs& page = Open();
  const std::string question =
      "The operation can't be undone. Are you sure you want to delete \"a.xml\"?";
  machine_.Expect(ui::Answer::kNo, question);
  machine_.Click(page.cmdDelete);
  EXPECT_EQ(page.File1.Count(), 2);
  EXPECT_EQ(machine_.ui().boxes.back().request.icon, ui::Icon::kQuestion);
  machine_.Expect(ui::Answer::kYes, question);
  machine_.Click(page.cmdDelete);
  EXPECT_FALSE(machine_.Exists(Folder() + "\\a.xml"));
  EXPECT_EQ(page.File1.Count(), 1);
  EXPECT_EQ(page.File1.SelectedText(), "b.xml");
  EXPECT_EQ(page.RichTextBox1.text.get(), "B: 2");
}

TEST_F(FrmLogsTest, TheLogBehindTheDeletedOneIsShownOrElseTheLast) {
  for (const char* name : {"a.xml", "b.xml", "c.xml"}) WriteLog(name, "<Name>" + std::string(name));
  frmLogs& page = Open();
  page.File1.list_index = 1;
  machine_.Expect(ui::Answer::kYes, "");
  machine_.Click(page.cmdDelete);
  EXPECT_EQ(page.File1.SelectedText(), "c.xml");
  EXPECT_EQ(page.RichTextBox1.text.get(), "Name: c.xml");
  machine_.Expect(ui::Answer::kYes, "");
  machine_.Click(page.cmdDelete);
  EXPECT_EQ(page.File1.SelectedText(), "a.xml");
  machine_.Expect(ui::Answer::kYes, "");
  machine_.Click(page.cmdDelete);
  EXPECT_EQ(page.File1.Count(), 0);
  EXPECT_EQ(page.RichTextBox1.text.get(), "");
}

TEST_F(FrmLogsTest, EveryControlHasItsWords) {
  frmLogs& page = Open();
  EXPECT_EQ(page.PicHeader.picture.get(), "LOG_HEADER");
  EXPECT_EQ(page.lblHeader.caption.get(), "View Log and Log Settings");
  EXPECT_EQ(page.lblSubheading.caption.get(), "View backup and restore logs");
  EXPECT_EQ(page.Frame1.caption.get(), "Log Settings and Details");
  EXPECT_EQ(page.lblLogPath.caption.get(), "Log File Path");
  EXPECT_EQ(page.cmdDelete.caption.get(), "Delete");
  EXPECT_EQ(page.cmdRefresh.caption.get(), "Refresh");
  EXPECT_EQ(page.Command2.caption.get(), "Open Folder");
}

TEST_F(FrmLogsTest, RefreshAndEachActivationListTheFolderAgain) {
  frmLogs& page = Open();
  WriteLog("a.xml", "<A>1</A>");
  machine_.Click(page.cmdRefresh);
  EXPECT_EQ(page.File1.Count(), 1);
  WriteLog("b.xml", "<B>2</B>");
  page.Activate();
  EXPECT_EQ(page.File1.Count(), 2);
  machine_.RemoveTree(Folder());
  machine_.Click(page.cmdRefresh);
  EXPECT_EQ(page.File1.Count(), 0);
  EXPECT_EQ(page.RichTextBox1.text.get(), "");
  EXPECT_TRUE(machine_.Exists(Folder()));
}

TEST_F(FrmLogsTest, AFileAndTheFolderOpenOutside) {
  WriteLog("a.xml", "<A>1</A>");
  frmLogs& page = Open();
  ASSERT_TRUE(page.File1.on_double_click);
  page.File1.on_double_click();
  machine_.Click(page.Command2);
  EXPECT_EQ(machine_.computer().Started(),
            (std::vector<std::string>{"run|Notepad " + Folder() + "\\a.xml",
                                      "run|Explorer " + Folder()}));
}

// --- Accounts -----------------------------------------------------------------------------------

class AccountsOfFrmLogsTest : public FrmLogsTest {
 protected:
  // Keeps the account of a backup that lacks a file; its path.
  std::string Keep(const std::string& began) {
    machine_.app().Get<FrmWelcome>();
    Account account;
    account.Begin(AccountRun::kBackup, "Mail", began);
    AccountEntry entry;
    entry.source = "C:\\Docs\\a.txt";
    entry.reason = AccountReason::kUnreadable;
    account.Add(entry);
    account.End(AccountEnd::kDone, began);
    std::string path;
    EXPECT_EQ(WriteAccount(machine_.app(), account, &path), FileStatus::kOk);
    return path;
  }
  static std::vector<std::string> Listed(const frmLogs& page) {
    std::vector<std::string> names;
    for (int i = 0; i < page.File1.Count(); ++i) names.push_back(page.File1.Item(i));
    return names;
  }
};

TEST_F(AccountsOfFrmLogsTest, StandBehindTheLogsTheNewestFirst) {
  Keep("2026-11-22 05:08:12");
  Keep("2026-11-23 05:08:12");
  WriteLog("Settings_z.xml", "<A>1</A>");
  frmLogs& page = Open();
  EXPECT_EQ(Listed(page),
            (std::vector<std::string>{"Settings_z.xml", "2026-11-23 05-08-12 backup.txt",
                                      "2026-11-22 05-08-12 backup.txt"}));
  EXPECT_EQ(page.RichTextBox1.text.get(), "A: 1");
}

TEST_F(AccountsOfFrmLogsTest, AreReadAsAPersonReadsThem) {
  const std::string path = Keep("2026-11-22 05:08:12");
  frmLogs& page = Open();
  EXPECT_EQ(page.txtLog.text.get(), path);
  EXPECT_EQ(page.RichTextBox1.text.get(),
            "1 file is not in this backup.\r\n\r\n"
            "Backup \"Mail\", 2026-11-22 05:08:12\r\n"
            "Ended: 2026-11-22 05:08:12\r\n"
            "\r\nNot in this backup:\r\n"
            "C:\\Docs\\a.txt: in use, or no rights to read it\r\n");
  machine_.WriteFile(path, "no account");
  machine_.Click(page.cmdRefresh);
  EXPECT_EQ(page.RichTextBox1.text.get(), "no account");
}

TEST_F(AccountsOfFrmLogsTest, OpenInTheirWindowByADoubleClick) {
  const std::string older = Keep("2026-11-22 05:08:12");
  const std::string newer = Keep("2026-11-23 05:08:12");
  frmLogs& page = Open();
  page.File1.list_index = 1;
  page.File1.on_double_click();
  ASSERT_NE(machine_.app().Loaded<frmAccount>(), nullptr);
  EXPECT_EQ(machine_.app().Get<frmAccount>().lblRun.caption.get(),
            "Backup \"Mail\", 2026-11-22 05:08:12");
  // The one that is still to be told was not looked at by that.
  EXPECT_EQ(UnseenAccount(machine_.app()), newer);
  page.File1.list_index = 0;
  page.File1.on_double_click();
  EXPECT_EQ(UnseenAccount(machine_.app()), "");
  EXPECT_TRUE(page.Visible());
  EXPECT_TRUE(machine_.computer().Started().empty());
  machine_.WriteFile(newer, "no account");
  page.File1.on_double_click();
  EXPECT_EQ(machine_.computer().Started(), std::vector<std::string>{"run|Notepad " + newer});
}

TEST_F(AccountsOfFrmLogsTest, AreDeletedLikeLogs) {
  const std::string older = Keep("2026-11-22 05:08:12");
  const std::string newer = Keep("2026-11-23 05:08:12");
  frmLogs& page = Open();
  const std::string question =
      "The operation can't be undone. Are you sure you want to delete "
      "\"2026-11-23 05-08-12 backup.txt\"?";
  machine_.Expect(ui::Answer::kNo, question);
  machine_.Click(page.cmdDelete);
  EXPECT_TRUE(machine_.Exists(newer));
  machine_.Expect(ui::Answer::kYes, question);
  machine_.Click(page.cmdDelete);
  EXPECT_FALSE(machine_.Exists(newer));
  EXPECT_EQ(Listed(page), std::vector<std::string>{"2026-11-22 05-08-12 backup.txt"});
  EXPECT_EQ(page.txtLog.text.get(), older);
  EXPECT_EQ(UnseenAccount(machine_.app()), "");
}

TEST_F(FrmLogsTest, CancelLeadsHomeAndBackClosesThePageOnly) {
  FrmWelcome& welcome = machine_.app().Get<FrmWelcome>();
  machine_.Click(Open().cmdCancel);
  EXPECT_FALSE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.CmdWC_ViewLog.enabled);
  frmLogs& page = Open();
  EXPECT_TRUE(page.Visible());
  machine_.Click(page.cmdBack);
  EXPECT_EQ(machine_.app().Loaded<frmLogs>(), nullptr);
  EXPECT_TRUE(welcome.PicMainBackupBase.visible);
  EXPECT_TRUE(welcome.CmdWC_Home.enabled);
}

}  // namespace
}  // namespace quorvale
