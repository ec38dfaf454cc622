#include "backup/pages/FrmBackupMedia.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "backup/media_program.h"
#include "backup/pages/frmFinish.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

class MediaPage : public backup_test::MediaProgram {
 protected:
  MediaPage() {
    app_.session().gBackupItemPaths = {"Other Files", "Other Files\\My Documents"};
    app_.session().gBackupItemKeys = {"Other Files", "C:\\Nothing\\"};
    app_.session().gBackupFolder = "C:\\Out";
    page_ = &app_.Get<FrmBackupMedia>();
    page_->Show();
  }
  bool OnReviewPage() {
    frmfour* review = app_.Loaded<frmfour>();
    return review != nullptr && review->Visible() && !page_->Visible();
  }
  void Next() { page_->cmdNext.Click(); }
  void ExpectRefused(const std::string& text) {
    machine_.Expect(ui::Answer::kOk, text);
    Next();
    EXPECT_FALSE(OnReviewPage()) << text;
    EXPECT_EQ(machine_.ui().pointer(), ui::Pointer::kDefault);
  }
  void FillFtp() {
    page_->ChkFTP.Click();
    page_->TxtHostname.text = "ftp.example.com";
    page_->TxtUserName.text = "anna";
    page_->TxtPassword.text = "pw";
    page_->TxtRemoteDir.text = "/in";
  }

  FrmBackupMedia* page_ = nullptr;
};

TEST_F(MediaPage, OpensWithTheHardDisk) {
  EXPECT_EQ(page_->ChkHardDisk.value, 1);
  EXPECT_EQ(page_->ChkCDDVD.value, 0);
  EXPECT_EQ(page_->ChkFTP.value, 0);
  EXPECT_EQ(page_->txtpath.text.get(), "C:\\Out");
  EXPECT_FALSE(page_->cboDrives.enabled);
  EXPECT_FALSE(page_->TxtHostname.enabled);
  EXPECT_FALSE(page_->lblhost.visible);
}

TEST_F(MediaPage, TwoBoxesCannotBeTickedTogether) {
  page_->ChkFTP.Click();
  EXPECT_EQ(page_->ChkHardDisk.value, 0);
  EXPECT_EQ(page_->ChkFTP.value, 1);
  EXPECT_TRUE(page_->TxtHostname.enabled);
  page_->ChkCDDVD.Click();
  EXPECT_EQ(page_->ChkFTP.value, 0);
  EXPECT_EQ(page_->ChkHardDisk.value, 0);
  EXPECT_EQ(page_->ChkCDDVD.value, 1);
  EXPECT_FALSE(page_->TxtHostname.enabled);
  page_->ChkHardDisk.Click();
  EXPECT_EQ(page_->ChkHardDisk.value, 1);
  EXPECT_EQ(page_->ChkCDDVD.value, 0);
  EXPECT_FALSE(page_->cboDrives.enabled);
}

TEST_F(MediaPage, TheHardDiskIsTheFallback) {
  page_->ChkHardDisk.Click();
  EXPECT_EQ(page_->ChkHardDisk.value, 1);
  page_->ChkFTP.Click();
  page_->ChkFTP.Click();
  EXPECT_EQ(page_->ChkHardDisk.value, 1);
  EXPECT_EQ(page_->ChkFTP.value, 0);
}

TEST_F(MediaPage, NothingTickedIsRefused) {
  page_->ChkCDDVD.Click();
  page_->ChkCDDVD.Click();
  EXPECT_EQ(page_->ChkHardDisk.value, 0);
  ExpectRefused("You have not selected any backup media");
}

TEST_F(MediaPage, TheHardDiskGoesOnToTheReview) {
  app_.session().gMediaFtp = true;
  app_.session().gMediaDisc = true;
  Next();
  EXPECT_TRUE(OnReviewPage());
  EXPECT_FALSE(app_.session().gMediaFtp);
  EXPECT_FALSE(app_.session().gMediaDisc);
  EXPECT_TRUE(app_.Get<FrmWelcome>().lblBackupOptions[4]->bold);
  EXPECT_EQ(app_.Get<frmfour>().lblnoitem.caption.get(), "Press next to begin Backup");
}

TEST_F(MediaPage, FtpFieldsAreCheckedInOrder) {
  page_->ChkFTP.Click();
  ExpectRefused("Host name cannot be blank");
  EXPECT_EQ(page_->focused, &page_->TxtHostname);
  page_->TxtHostname.text = "h";
  page_->TxtPort.text = " ";
  ExpectRefused("Port cannot be blank");
  EXPECT_EQ(page_->TxtPort.text.get(), "21");
  ExpectRefused("User name cannot be blank");
  EXPECT_EQ(page_->focused, &page_->TxtUserName);
  page_->TxtUserName.text = "u";
  ExpectRefused("Password cannot be blank");
  EXPECT_EQ(page_->focused, &page_->TxtPassword);
  EXPECT_TRUE(ftp_.calls.empty());
}

TEST_F(MediaPage, APortThatIsNoNumberIsReplacedAndThePageWaits) {
  FillFtp();
  page_->TxtPort.text = "2x";
  ExpectRefused("Port should contain only numeric values");
  EXPECT_EQ(page_->TxtPort.text.get(), "21");
}

TEST_F(MediaPage, AnEmptyRemoteFolderBecomesARootVisibly) {
  FillFtp();
  page_->TxtRemoteDir.text = " ";
  Next();
  EXPECT_EQ(page_->TxtRemoteDir.text.get(), "/");
  EXPECT_EQ(ftp_.calls.back(), "cd /");
  EXPECT_TRUE(OnReviewPage());
}

TEST_F(MediaPage, TheTestedServerIsCommittedToTheJob) {
  FillFtp();
  page_->TxtHostname.text = " ftp://ftp.example.com ";
  page_->TxtPort.text = "2121";
  Next();
  const FtpServer& server = app_.session().ftp_server;
  EXPECT_EQ(server.host, "ftp://ftp.example.com");
  EXPECT_EQ(server.port, "2121");
  EXPECT_EQ(server.user, "anna");
  EXPECT_EQ(server.password, "pw");
  EXPECT_EQ(server.folder, "/in");
  EXPECT_FALSE(server.anonymous);
}

TEST_F(MediaPage, TheChosenDriveIsCommittedToTheJob) {
  page_->ChkCDDVD.Click();
  app_.session().gBackupEstimatedSize = 1;
  machine_.Expect(ui::Answer::kOk, "One CD required");
  Next();
  EXPECT_EQ(app_.session().disc_drive, 3);
}

TEST_F(MediaPage, AHostWithTheSchemeGivesTheSameConnection) {
  for (const char* host : {"ftp.example.com", "ftp://ftp.example.com", "FTP://ftp.example.com",
                           "ftp:\\\\ftp.example.com"}) {
    ftp_.calls.clear();
    ftp_.state = FtpState::kIdle;
    FillFtp();
    page_->TxtHostname.text = host;
    Next();
    EXPECT_EQ(ftp_.calls,
              (std::vector<std::string>{"ftp.example.com:21 anna/pw", "pwd", "cd /in"}));
    EXPECT_TRUE(app_.session().gMediaFtp);
    page_->ChkHardDisk.value = 1;
    page_->Show();
  }
}

TEST_F(MediaPage, AnonymousUsesTheGuestAndDisablesTheBoxes) {
  FillFtp();
  page_->ChkAnonymous.Click();
  EXPECT_FALSE(page_->TxtUserName.enabled);
  EXPECT_FALSE(page_->TxtPassword.enabled);
  page_->TxtUserName.text = "";
  Next();
  EXPECT_EQ(ftp_.calls.at(0), "ftp.example.com:21 anonymous/guest");
  EXPECT_TRUE(OnReviewPage());
}

TEST_F(MediaPage, AnOpenConnectionIsClosedFirst) {
  FillFtp();
  ftp_.state = FtpState::kConnected;
  Next();
  EXPECT_EQ(ftp_.calls.at(0), "bye");
}

TEST_F(MediaPage, AFailedConnectionIsToldAndKeepsThePage) {
  FillFtp();
  for (bool connects : {false, true}) {
    ftp_.connects = connects;
    ftp_.has_folder = false;
    ExpectRefused(
        "There was error in FTP connection. Please check the FTP settings and try connection "
        "again");
    EXPECT_TRUE(page_->cmdNext.enabled);
    EXPECT_TRUE(page_->cmdBack.enabled);
    EXPECT_TRUE(page_->cmdCancel.enabled);
    EXPECT_EQ(page_->focused, &page_->TxtHostname);
    EXPECT_FALSE(app_.session().gMediaFtp);
  }
}

TEST_F(MediaPage, APortThatNoServerHasFailsAsAConnectionDoes) {
  FillFtp();
  for (const char* port : {"0", "65536", "99999999999999999999"}) {
    page_->TxtPort.text = port;
    ExpectRefused(
        "There was error in FTP connection. Please check the FTP settings and try connection "
        "again");
    EXPECT_EQ(page_->TxtPort.text.get(), port);
  }
  EXPECT_TRUE(ftp_.calls.empty());
}

TEST_F(MediaPage, TheTextsAreTrimmedForTheConnection) {
  FillFtp();
  page_->TxtHostname.text = " ftp://ftp.example.com ";
  page_->TxtPort.text = " 2121 ";
  page_->TxtUserName.text = " anna ";
  page_->TxtPassword.text = " pw ";
  Next();
  EXPECT_EQ(ftp_.calls.at(0), "ftp.example.com:2121 anna/pw");
}

TEST_F(MediaPage, AServerThatDoesNotTellItsFolderIsAFailure) {
  FillFtp();
  ftp_.current_folder = "";
  ExpectRefused(
      "There was error in FTP connection. Please check the FTP settings and try connection "
      "again");
}

TEST_F(MediaPage, TheConnectionThatWorkedStaysOpen) {
  FillFtp();
  Next();
  EXPECT_TRUE(OnReviewPage());
  EXPECT_EQ(ftp_.state, FtpState::kConnected);
  EXPECT_FALSE(ftp_.has_listener());
}

TEST_F(MediaPage, WhileTheConnectionIsTestedTheButtonsRestAndTheWindowLives) {
  FillFtp();
  bool seen = false;
  ftp_.during_connect = [&] {
    seen = true;
    EXPECT_FALSE(page_->cmdBack.enabled);
    EXPECT_FALSE(page_->cmdNext.enabled);
    EXPECT_FALSE(page_->cmdCancel.enabled);
    EXPECT_EQ(machine_.ui().pointer(), ui::Pointer::kHourglass);
    EXPECT_TRUE(ftp_.KeepGoing());
  };
  int pumps = 0;
  machine_.ui().on_pump = [&pumps] { ++pumps; };
  Next();
  EXPECT_TRUE(seen);
  EXPECT_GT(pumps, 0);
  EXPECT_TRUE(page_->cmdNext.enabled);
  EXPECT_TRUE(OnReviewPage());
}

TEST_F(MediaPage, LeavingThePageEndsTheTestOfTheConnection) {
  FillFtp();
  ftp_.during_connect = [&] {
    ResetBackupPages(app_);
    EXPECT_FALSE(ftp_.KeepGoing());
  };
  Next();
  EXPECT_EQ(app_.Loaded<frmfour>(), nullptr);
  EXPECT_EQ(app_.Loaded<FrmBackupMedia>(), nullptr);
  EXPECT_EQ(machine_.ui().pointer(), ui::Pointer::kDefault);
}

TEST_F(MediaPage, ABusyClientLeavesWithoutAWord) {
  ftp_.state = FtpState::kBusy;
  Next();
  EXPECT_FALSE(OnReviewPage());
}

TEST_F(MediaPage, OnlyWritersAreListedWithTheirTexts) {
  page_->ChkCDDVD.Click();
  ASSERT_EQ(page_->cboDrives.Count(), 1);
  EXPECT_EQ(page_->cboDrives.Item(0), "E: Writer 2.1");
  EXPECT_EQ(page_->cboDrives.ItemData(0), 3);
  EXPECT_EQ(page_->cboDrives.list_index, 0);
  EXPECT_EQ(discs_.opened, 3);
  EXPECT_TRUE(page_->cboDrives.enabled);
}

TEST_F(MediaPage, WithoutAWriterTheHardDiskIsTickedAgain) {
  discs_.drives.clear();
  machine_.Expect(ui::Answer::kOk, "There are no compatible drives reported");
  page_->ChkCDDVD.Click();
  EXPECT_EQ(page_->ChkCDDVD.value, 0);
  EXPECT_EQ(page_->ChkHardDisk.value, 1);
  discs_.initialises = false;
  machine_.Expect(ui::Answer::kOk, "Drives Cannot be initialized...Contact support!");
  page_->ChkCDDVD.Click();
  EXPECT_EQ(page_->ChkCDDVD.value, 0);
  EXPECT_EQ(page_->ChkHardDisk.value, 1);
}

TEST_F(MediaPage, ADriveThatDoesNotOpenIsTold) {
  discs_.opens = false;
  machine_.Expect(ui::Answer::kOk, "Select a different drive...could not open selected drive!");
  page_->ChkCDDVD.Click();
}

TEST_F(MediaPage, NoMediumIsTold) {
  page_->ChkCDDVD.Click();
  discs_.medium = false;
  ExpectRefused("No Media Loaded on the disk drive!");
  EXPECT_FALSE(app_.session().gMediaDisc);
}

TEST_F(MediaPage, AnEstimateThatFitsNeedsOneDisc) {
  page_->ChkCDDVD.Click();
  app_.session().gBackupEstimatedSize = 500;
  machine_.Expect(ui::Answer::kOk, "One CD required");
  Next();
  EXPECT_TRUE(OnReviewPage());
  EXPECT_TRUE(app_.session().gMediaDisc);
  EXPECT_EQ(app_.session().gMediaDiscCount, 1);
}

TEST_F(MediaPage, ALargerEstimateIsCountedInOrdinaryDiscs) {
  page_->ChkCDDVD.Click();
  app_.session().gBackupEstimatedSize = 1500;
  machine_.Expect(ui::Answer::kOk, "Total of 3  CD required");
  Next();
  EXPECT_EQ(app_.session().gMediaDiscCount, 3);
}

TEST_F(MediaPage, TheDrivesAreListedAnewEachTime) {
  page_->ChkCDDVD.Click();
  page_->ChkHardDisk.Click();
  discs_.drives = {{4, true, "F", "Other", "3"}, {5, true, "G", "Third", "4"}};
  page_->ChkCDDVD.Click();
  ASSERT_EQ(page_->cboDrives.Count(), 2);
  EXPECT_EQ(page_->cboDrives.Item(1), "G: Third 4");
  page_->cboDrives.list_index = 1;
  EXPECT_EQ(discs_.opened, 5);
}

TEST_F(MediaPage, AMediumWithoutRoomIsCountedInOrdinaryDiscs) {
  page_->ChkCDDVD.Click();
  discs_.free_bytes = 0;
  app_.session().gBackupEstimatedSize = 500;
  machine_.Expect(ui::Answer::kOk, "Total of 1  CD required");
  Next();
  EXPECT_EQ(app_.session().gMediaDiscCount, 1);
  EXPECT_TRUE(app_.session().gMediaDisc);
}

TEST_F(MediaPage, AnyFractionOfADiscIsAWholeOne) {
  page_->ChkCDDVD.Click();
  app_.session().gBackupEstimatedSize = 700;
  machine_.Expect(ui::Answer::kOk, "One CD required");
  Next();
  page_->Show();
  app_.session().gBackupEstimatedSize = 700.01;
  machine_.Expect(ui::Answer::kOk, "Total of 2  CD required");
  Next();
  EXPECT_EQ(app_.session().gMediaDiscCount, 2);
}

TEST_F(MediaPage, ADiscChoiceTakesThePlaceOfAnUpload) {
  FillFtp();
  Next();
  page_->Show();
  page_->ChkCDDVD.Click();
  app_.session().gBackupEstimatedSize = 1;
  machine_.Expect(ui::Answer::kOk, "One CD required");
  Next();
  EXPECT_FALSE(app_.session().gMediaFtp);
  EXPECT_TRUE(app_.session().gMediaDisc);
}

TEST_F(MediaPage, ADiscBackupGoesInPartsIntoItsOwnFolder) {
  page_->ChkCDDVD.Click();
  app_.session().gMediaDisc = true;
  machine_.MakeFolder("C:\\Out\\Job");
  app_.session().gBackupBasePath = "C:\\Out\\Job";
  frmFinish& run = app_.Get<frmFinish>();
  EXPECT_FALSE(run.CompressStage("C:\\Out\\Job"));  // there is no settings file
  EXPECT_EQ(run.run.archive.archive_name, "C:\\Out\\CDBackup\\Job.obk");
  EXPECT_EQ(run.run.archive.split_size, 600000000u);
  EXPECT_FALSE(machine_.Exists("C:\\Out\\CDBackup"));  // nothing was made
}

TEST_F(MediaPage, AHardDiskBackupIsOneFileBesideItsStage) {
  app_.session().gBackupBasePath = "C:\\Out\\Job";
  frmFinish& run = app_.Get<frmFinish>();
  EXPECT_FALSE(run.CompressStage("C:\\Out\\Job"));
  EXPECT_EQ(run.run.archive.archive_name, "C:\\Out\\Job.obk");
  EXPECT_EQ(run.run.archive.split_size, 0u);
}

TEST_F(MediaPage, BackShowsTheOptions) {
  page_->cmdBack.Click();
  EXPECT_TRUE(app_.Get<frmThree>().Visible());
  EXPECT_FALSE(page_->Visible());
}

}  // namespace
}  // namespace quorvale
