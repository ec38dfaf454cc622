#include "backup/pages/FrmProcess.h"

#include <gtest/gtest.h>

#include "backup/format/job_kinds.h"
#include "backup/format/settings_file.h"
#include "backup/media_program.h"
#include "backup/pages/frmFinish.h"
#include "backup/run/disc_folder.h"
#include "discovery/pages/FrmTwo.h"

namespace quorvale {
namespace {

using Strings = std::vector<std::string>;

constexpr char kParts[] = "C:\\Out\\CDbackup";
constexpr char kAnotherMedium[] = "Please enter a writable CD/DVD. Do you want to continue..";
constexpr char kNoDrives[] = "Drives Cannot be initialized...Contact support!";

class Delivery : public backup_test::MediaProgram {
 protected:
  Delivery() {
    app_.session().gBackupProcessName = kMainBackup;
    app_.session().gBackupName = "My job";
  }

  void ForDiscs(const Strings& parts) {
    app_.session().disc_drive = 3;
    app_.session().gMediaDisc = true;
    app_.session().gMediaFtp = false;
    app_.session().gMediaDiscCount = static_cast<int>(parts.size());
    app_.session().gDeliverySource = kParts;
    EXPECT_TRUE(DiscFolder(app_, kParts).Make());
    for (const std::string& part : parts) {
      machine_.WriteFile(std::string(kParts) + "\\" + part, "part");
    }
  }
  void ForFtp(const std::string& folder = "/in") {
    app_.session().ftp_server = {.host = "ftp://ftp.example.com",
                                 .port = "21",
                                 .user = "anna",
                                 .password = "pw",
                                 .folder = folder};
    app_.session().gMediaFtp = true;
    app_.session().gMediaDisc = false;
    app_.session().gDeliverySource = "C:\\Out\\My job_1.obk";
    machine_.WriteFile("C:\\Out\\My job_1.obk", "archive");
  }
  FrmProcess* Dialog() { return app_.Loaded<FrmProcess>(); }
  // The whole life of the dialog.
  void Deliver() {
    machine_.Do([this] { app_.Get<FrmProcess>().ShowModal(); });
  }
  // The same, where the dialog stays open until somebody closes it. What it shows then.
  std::string DeliverAndRead() {
    std::string shown;
    machine_.ui().modal_handler = [&shown](ui::Form& form) {
      shown = static_cast<FrmProcess&>(form).lblStatus.caption;
      form.on_close_request();
      return true;
    };
    Deliver();
    machine_.ui().modal_handler = nullptr;
    return shown;
  }
  // Runs `act` when the dialog's work pumps messages for the nth time from now.
  void AtPump(int number, std::function<void()> act) {
    machine_.ui().on_pump = [number, act = std::move(act), count = 0]() mutable {
      if (++count == number) act();
    };
  }
  static std::string Burnt(const std::string& part) {
    return std::string(kParts) + "\\" + part + " as " + part;
  }
};

// --- Discs --------------------------------------------------------------------------------------

TEST_F(Delivery, ADiscRunTellsHowManyDiscsItNeeds) {
  ForDiscs({"Job.obk"});
  app_.session().gMediaDiscCount = 3;
  FrmProcess& dialog = app_.Get<FrmProcess>();
  EXPECT_EQ(dialog.Caption(), "Backingup data to CD");
  EXPECT_EQ(dialog.LblHeading.caption.get(), "Data backup to CD - Total CD Required - 3");
  EXPECT_EQ(dialog.Img.picture.get(), "WriteCD");
}

TEST_F(Delivery, OnePartMakesOneDisc) {
  ForDiscs({"Job.obk"});
  Deliver();
  EXPECT_EQ(discs_.burnt, (Strings{Burnt("Job.obk")}));
  EXPECT_EQ(discs_.opened, 3);
  EXPECT_EQ(discs_.ejected, 1);
  EXPECT_TRUE(app_.session().gDelivered);
  EXPECT_EQ(Dialog(), nullptr);
}

TEST_F(Delivery, TwoPartsMakeTwoDiscsAndTheMessageCountsFromOne) {
  ForDiscs({"Job.obk", "Job.z01"});
  machine_.Expect(ui::Answer::kOk, "Please insert disk 2");
  Deliver();
  EXPECT_EQ(discs_.burnt, (Strings{Burnt("Job.obk"), Burnt("Job.z01")}));
  EXPECT_EQ(discs_.ejected, 2);
  EXPECT_EQ(Dialog(), nullptr);
}

TEST_F(Delivery, ThreePartsAskForTheSecondAndTheThirdDisc) {
  ForDiscs({"Job.obk", "Job.z01", "Job.z02"});
  machine_.Expect(ui::Answer::kOk, "Please insert disk 2");
  machine_.Expect(ui::Answer::kOk, "Please insert disk 3");
  Deliver();
  EXPECT_EQ(discs_.burnt.size(), 3u);
  EXPECT_TRUE(app_.session().gDelivered);
}

TEST_F(Delivery, TheStatusFollowsTheDrive) {
  ForDiscs({"Job.obk"});
  Strings seen;
  std::vector<int> bar;
  discs_.look = [&] {
    const std::string status = Dialog()->lblStatus.caption;
    if (seen.empty() || seen.back() != status) seen.push_back(status);
    bar.push_back(Dialog()->prgStatus.value);
  };
  discs_.on_eject = [&] { seen.push_back(Dialog()->lblStatus.caption); };
  machine_.ui().on_pump = [&] {
    if (Dialog() == nullptr) return;
    const std::string status = Dialog()->lblStatus.caption;
    if (!seen.empty() && seen.back() != status) seen.push_back(status);
  };
  Deliver();
  EXPECT_EQ(seen, (Strings{"Adding backup file...", "Preparing to write...", "Writting tracks...",
                           "Writting Completed...", "Ejecting Disk...", "Ejecting Disk..."}));
  EXPECT_EQ(bar, (std::vector<int>{0, 0, 0, 50, 100}));
}

TEST_F(Delivery, AMediumWithTooLittleRoomIsEjectedAndTheNextOneTaken) {
  ForDiscs({"Job.obk"});
  machine_.WriteFile(std::string(kParts) + "\\Job.obk", std::string(3u << 20, 'x'));
  discs_.free_bytes = 2u << 20;
  discs_.on_eject = [this] { discs_.free_bytes = 700u << 20; };
  machine_.Expect(ui::Answer::kYes, kAnotherMedium);
  Deliver();
  EXPECT_EQ(discs_.burnt.size(), 1u);
  EXPECT_EQ(discs_.initialised, 2);  // one for each medium
}

TEST_F(Delivery, TheRoomIsComparedInWholeMegabytes) {
  ForDiscs({"Job.obk"});
  machine_.WriteFile(std::string(kParts) + "\\Job.obk", std::string((2u << 20) + 300000, 'x'));
  discs_.free_bytes = 2u << 20;
  Deliver();
  EXPECT_EQ(discs_.burnt.size(), 1u);
}

TEST_F(Delivery, NoMediumCountsAsOneWithoutRoomAlsoForASmallFile) {
  ForDiscs({"Job.obk"});
  discs_.medium = false;
  discs_.on_eject = [this] { discs_.medium = true; };
  machine_.Expect(ui::Answer::kYes, kAnotherMedium);
  Deliver();
  EXPECT_EQ(discs_.burnt.size(), 1u);
}

TEST_F(Delivery, DecliningAFurtherDiscEndsTheDialog) {
  ForDiscs({"Job.obk", "Job.z01"});
  discs_.on_eject = [this] { discs_.medium = false; };
  machine_.Expect(ui::Answer::kOk, "Please insert disk 2");
  machine_.Expect(ui::Answer::kNo, kAnotherMedium);
  machine_.Expect(ui::Answer::kOk, "CD writting aborted");
  Deliver();
  EXPECT_EQ(discs_.burnt.size(), 1u);
  EXPECT_FALSE(app_.session().gDelivered);
  EXPECT_EQ(Dialog(), nullptr);
}

TEST_F(Delivery, AWriteThatDoesNotStartIsTold) {
  ForDiscs({"Job.obk", "Job.z01"});
  discs_.starts = false;
  machine_.Expect(ui::Answer::kOk, "Disc Write could not be started");
  Deliver();
  EXPECT_EQ(discs_.burnt.size(), 1u);
  EXPECT_EQ(Dialog(), nullptr);
}

TEST_F(Delivery, ADriveThatDoesNotOpenIsTold) {
  ForDiscs({"Job.obk"});
  discs_.opens = false;
  machine_.Expect(ui::Answer::kOk, "Select a different drive...could not open selected drive!");
  Deliver();
  EXPECT_TRUE(discs_.burnt.empty());
}

TEST_F(Delivery, DrivesThatComeBackAreUsed) {
  ForDiscs({"Job.obk"});
  discs_.initialises = false;
  machine_.ui().on_box = [this](const ui::MessageBoxRequest&) { discs_.initialises = true; };
  machine_.Expect(ui::Answer::kOk, kNoDrives);
  Deliver();
  machine_.ui().on_box = nullptr;
  EXPECT_EQ(discs_.burnt.size(), 1u);
}

TEST_F(Delivery, DrivesThatStayAwayDoNotKeepTheUserForEver) {
  ForDiscs({"Job.obk"});
  discs_.initialises = false;
  for (int i = 0; i < 3; ++i) machine_.Expect(ui::Answer::kOk, kNoDrives);
  Deliver();
  EXPECT_TRUE(discs_.burnt.empty());
  EXPECT_EQ(Dialog(), nullptr);
}

TEST_F(Delivery, ClosingTheDialogEndsTheBurnWithoutAWord) {
  ForDiscs({"Job.obk", "Job.z01"});
  discs_.look = [this] {
    if (Dialog() != nullptr && Dialog()->prgStatus.value == 50) Dialog()->on_close_request();
  };
  Deliver();
  EXPECT_EQ(discs_.burnt.size(), 1u);
  EXPECT_EQ(discs_.ejected, 0);
  EXPECT_EQ(Dialog(), nullptr);
  EXPECT_FALSE(app_.session().gDelivered);
}

TEST_F(Delivery, AFolderWithoutPartsClosesTheDialog) {
  ForDiscs({});
  Deliver();
  EXPECT_TRUE(discs_.burnt.empty());
  EXPECT_EQ(Dialog(), nullptr);
}

TEST_F(Delivery, AnEmptyPathStopsTheTimerAndWritesNothing) {
  ForDiscs({"Job.obk"});
  FrmProcess& dialog = app_.Get<FrmProcess>();
  dialog.Timer1.enabled = true;
  dialog.WriteDiscFile("");
  EXPECT_FALSE(dialog.Timer1.enabled);
  EXPECT_TRUE(discs_.burnt.empty());
}

TEST_F(Delivery, ATickWithoutAPendingDiscDoesNothing) {
  ForDiscs({"Job.obk"});
  FrmProcess& dialog = app_.Get<FrmProcess>();
  dialog.mFiles = {std::string(kParts) + "\\Job.obk"};
  dialog.Timer1_Timer();
  EXPECT_TRUE(discs_.burnt.empty());
}

TEST_F(Delivery, MegabytesAreRounded) {
  EXPECT_EQ(FrmProcess::ConvertBytesToMBString(0), "0");
  EXPECT_EQ(FrmProcess::ConvertBytesToMBString(524287), "0");
  EXPECT_EQ(FrmProcess::ConvertBytesToMBString(1048576), "1");
  EXPECT_EQ(FrmProcess::ConvertBytesToMBString(600000000), "572");
  EXPECT_EQ(FrmProcess::ConvertBytesToMBString(737280000), "703");
}

TEST_F(Delivery, TheFilesOfAFolderAreNamedAndCounted) {
  ForDiscs({"Job.obk", "Job.z01"});
  machine_.WriteFile(std::string(kParts) + "\\sub\\x.bin", "x");
  Strings names;
  EXPECT_EQ(app_.Get<FrmProcess>().GetFilesInFolder(kParts, &names), 2);
  EXPECT_EQ(names, (Strings{"Job.obk", "Job.z01"}));
  EXPECT_EQ(app_.Get<FrmProcess>().GetFilesInFolder("C:\\Nowhere", &names), 0);
}

// --- Upload -------------------------------------------------------------------------------------

TEST_F(Delivery, AnUploadSaysSo) {
  ForFtp();
  FrmProcess& dialog = app_.Get<FrmProcess>();
  EXPECT_EQ(dialog.Caption(), "Uploading to FTP");
  EXPECT_EQ(dialog.LblHeading.caption.get(), "Uploading Please wait....");
  EXPECT_EQ(dialog.Img.picture.get(), "FTPIcon");
}

TEST_F(Delivery, TheRemoteNameIsTheJobsNotTheFiles) {
  ForFtp();
  machine_.Expect(ui::Answer::kOk, "Transfer completed");
  Deliver();
  EXPECT_EQ(ftp_.calls, (Strings{"ftp.example.com:21 anna/pw", "pwd", "cd /in",
                                 "send C:\\Out\\My job_1.obk as My job.obk.part",
                                 "rename My job.obk.part to My job.obk", "bye"}));
  EXPECT_TRUE(app_.session().gDelivered);
  EXPECT_FALSE(ftp_.has_listener());
}

TEST_F(Delivery, TheOpenConnectionOfThePageIsTakenAnew) {
  ForFtp("in");
  ftp_.state = FtpState::kConnected;
  machine_.Expect(ui::Answer::kOk, "Transfer completed");
  Deliver();
  EXPECT_EQ(ftp_.calls.at(0), "bye");
  EXPECT_EQ(ftp_.calls.at(1), "ftp.example.com:21 anna/pw");
}

TEST_F(Delivery, AnAnonymousUserUploadsAsGuest) {
  ForFtp("  ");
  app_.session().ftp_server.anonymous = true;
  machine_.Expect(ui::Answer::kOk, "Transfer completed");
  Deliver();
  EXPECT_EQ(ftp_.calls.at(0), "ftp.example.com:21 anonymous/guest");
  EXPECT_EQ(ftp_.calls.at(2), "cd /");
}

TEST_F(Delivery, AServerThatTellsTheEndInTheKnownWordsNeedsNoMessage) {
  ForFtp();
  ftp_.send_reply = "226 Transfer complete.";
  Deliver();
  EXPECT_EQ(Dialog(), nullptr);
  EXPECT_TRUE(app_.session().gDelivered);
}

TEST_F(Delivery, AnotherEndOfTheTransferIsTold) {
  ForFtp();
  ftp_.send_reply = "226 Transfer complete";  // without the full stop
  machine_.Expect(ui::Answer::kOk, "Transfer completed");
  Deliver();
}

TEST_F(Delivery, TheKnownWordsForAMissingFolderAreTold) {
  ForFtp();
  ftp_.has_folder = false;
  ftp_.folder_reply = "550 sdds: The system cannot find the file specified.";
  machine_.Expect(ui::Answer::kOk, "Folder name is invalid");
  Deliver();
  EXPECT_EQ(ftp_.calls.back(), "bye");
  EXPECT_EQ(ftp_.calls.size(), 4u);  // nothing was sent
  EXPECT_FALSE(app_.session().gDelivered);
}

TEST_F(Delivery, OtherWordsForAMissingFolderGiveNoMessageAndStayToBeRead) {
  ForFtp();
  ftp_.has_folder = false;
  ftp_.folder_reply = "550 Can't change directory to /in: No such file or directory";
  EXPECT_EQ(DeliverAndRead(), ftp_.folder_reply);
  EXPECT_EQ(ftp_.calls.back(), "bye");
  EXPECT_EQ(ftp_.calls.size(), 4u);
  EXPECT_FALSE(app_.session().gDelivered);
}

TEST_F(Delivery, AFailedConnectionLeavesTheDialogOpen) {
  ForFtp();
  ftp_.connects = false;
  EXPECT_EQ(DeliverAndRead(), "The server cannot be reached.");
  EXPECT_EQ(ftp_.calls, (Strings{"ftp.example.com:21 anna/pw", "bye"}));
}

TEST_F(Delivery, AFailedTransferLeavesTheDialogOpenWithTheServersAnswer) {
  ForFtp();
  ftp_.sends = false;
  ftp_.send_reply = "552 There was no room for that";
  EXPECT_EQ(DeliverAndRead(), "552 There was no room for that");
  EXPECT_FALSE(app_.session().gDelivered);
  ASSERT_EQ(app_.account().entries().size(), 1u);
  EXPECT_EQ(app_.account().entries()[0].reason, AccountReason::kServerRefused);
  EXPECT_EQ(app_.account().entries()[0].detail, "552 There was no room for that");
}

TEST_F(Delivery, TheBarFollowsTheUpload) {
  ForFtp();
  std::vector<int> bar;
  ftp_.during_send = [&](int) { bar.push_back(Dialog()->prgStatus.value); };
  machine_.Expect(ui::Answer::kOk, "Transfer completed");
  Deliver();
  EXPECT_EQ(bar, (std::vector<int>{0, 50, 100}));
}

TEST_F(Delivery, ClosingTheDialogEndsTheUploadAtOnce) {
  ForFtp();
  std::vector<int> sent;
  ftp_.during_send = [&](int percent) {
    sent.push_back(percent);
    if (percent == 50) Dialog()->on_close_request();
  };
  Deliver();
  EXPECT_EQ(sent, (std::vector<int>{0, 50}));
  EXPECT_EQ(ftp_.calls.back(), "bye");
  EXPECT_EQ(Dialog(), nullptr);
  EXPECT_FALSE(app_.session().gDelivered);
}

TEST_F(Delivery, ClosingBeforeTheWorkStartsDoesNothing) {
  ForFtp();
  machine_.Do([this] {
    FrmProcess& dialog = app_.Get<FrmProcess>();
    dialog.Show();
    dialog.on_close_request();
  });
  EXPECT_TRUE(ftp_.calls.empty());
}

// --- The end of the archive stage ---------------------------------------------------------------

class ArchiveEnd : public Delivery {
 protected:
  void SetUp() override {
    Session& session = app_.session();
    app_.Get<FrmTwo>().txtpath.text = "C:\\Out";
    session.gBackupFolder = "C:\\Out";
    session.gBackupFileName = "Job.obk";
    session.gBackupBasePath = "C:\\Out\\Job";
    session.gCompressionLevel = "0";
    session.gProtectWithPassword = "False";
    machine_.MakeFolder("C:\\Out\\Job");
    WriteBackupSettings(app_, StagedSettingsPath("C:\\Out\\Job", app_));
  }
  void DeclineTheDisc() {
    discs_.free_bytes = 0;
    machine_.Expect(ui::Answer::kNo, kAnotherMedium);
    machine_.Expect(ui::Answer::kOk, "CD writting aborted");
  }
  zip::Result TestArchive(const std::string& path) {
    zip::Archive archive(machine_.platform());
    archive.archive_name = path;
    return archive.Test();
  }
  bool Compress() {
    bool made = false;
    machine_.Do([&] { made = app_.Get<frmFinish>().CompressStage("C:\\Out\\Job"); });
    return made;
  }
};

TEST_F(ArchiveEnd, TheFinishedFileIsUploadedAndStays) {
  ForFtp();
  machine_.Expect(ui::Answer::kOk, "Transfer completed");
  EXPECT_TRUE(Compress());
  EXPECT_EQ(ftp_.calls.at(3), "send C:\\Out\\Job.obk as My job.obk.part");
  EXPECT_TRUE(machine_.Exists("C:\\Out\\Job.obk"));
}

TEST_F(ArchiveEnd, AFailedUploadLeavesABackupThatIsDone) {
  ForFtp();
  ftp_.sends = false;
  machine_.ui().modal_handler = [](ui::Form& form) {
    form.on_close_request();
    return true;
  };
  EXPECT_TRUE(Compress());
  machine_.ui().modal_handler = nullptr;
  EXPECT_FALSE(app_.session().gDelivered);
  EXPECT_TRUE(machine_.Exists("C:\\Out\\Job.obk"));
}

TEST_F(ArchiveEnd, NothingIsDeliveredWhereNoArchiveWasMade) {
  ForFtp();
  machine_.RemoveTree("C:\\Out\\Job");
  EXPECT_FALSE(Compress());
  EXPECT_TRUE(ftp_.calls.empty());
}

TEST_F(ArchiveEnd, TheFolderOfPartsGoesAfterTheDiscsAreWritten) {
  ForDiscs({});
  EXPECT_TRUE(Compress());
  EXPECT_EQ(discs_.burnt, (Strings{"C:\\Out\\CDbackup\\Job.obk as Job.obk"}));
  EXPECT_FALSE(machine_.Exists("C:\\Out\\CDBackup"));
  EXPECT_TRUE(app_.session().gMediaDisc);
}

TEST_F(ArchiveEnd, TheFolderOfPartsGoesAlsoWhenADiscIsDeclinedButTheBackupStaysWhole) {
  ForDiscs({});
  DeclineTheDisc();
  EXPECT_TRUE(Compress());
  EXPECT_FALSE(machine_.Exists("C:\\Out\\CDBackup"));
  EXPECT_EQ(TestArchive("C:\\Out\\Job.obk"), zip::Result::kDone);
  ASSERT_EQ(app_.account().entries().size(), 1u);
  EXPECT_EQ(app_.account().entries()[0].reason, AccountReason::kDiscRefused);
  EXPECT_EQ(app_.account().entries()[0].source,
            "Not all discs of the backup were written. The backup is at C:\\Out\\Job.obk.");
}

TEST_F(ArchiveEnd, PartsThatCannotBecomeOneFileStay) {
  ForDiscs({});
  DeclineTheDisc();
  discs_.on_eject = [this] { machine_.WriteFile("C:\\Out\\Job.obk", "somebody's"); };
  EXPECT_TRUE(Compress());
  EXPECT_EQ(machine_.ReadFile("C:\\Out\\Job.obk"), "somebody's");
  EXPECT_EQ(TestArchive("C:\\Out\\CDBackup\\Job.obk"), zip::Result::kDone);
  ASSERT_EQ(app_.account().entries().size(), 1u);
  EXPECT_NE(app_.account().entries()[0].source.find("It is in its parts in C:\\Out\\CDBackup"),
            std::string::npos);
  // Nor does a later run remove them.
  EXPECT_FALSE(DiscFolder(app_, "C:\\Out\\CDBackup").IsOurs());
}

TEST_F(ArchiveEnd, WhatIsDamagedIsNotCalledABackup) {
  ForDiscs({});
  DeclineTheDisc();
  discs_.on_eject = [this] {
    const std::string part = "C:\\Out\\CDBackup\\Job.obk";
    std::string bytes = machine_.ReadFile(part);
    bytes[60] = static_cast<char>(bytes[60] ^ 1);
    machine_.WriteFile(part, bytes);
  };
  EXPECT_TRUE(Compress());
  EXPECT_FALSE(machine_.Exists("C:\\Out\\Job.obk"));
  EXPECT_TRUE(machine_.Exists("C:\\Out\\CDBackup\\Job.obk"));
}

TEST_F(ArchiveEnd, ADialogThatIsClosedLeavesTheBackupWhole) {
  ForDiscs({});
  discs_.look = [this] {
    if (Dialog() != nullptr && Dialog()->prgStatus.value == 50) Dialog()->on_close_request();
  };
  EXPECT_TRUE(Compress());
  EXPECT_FALSE(machine_.Exists("C:\\Out\\CDBackup"));
  EXPECT_EQ(TestArchive("C:\\Out\\Job.obk"), zip::Result::kDone);
}

TEST_F(ArchiveEnd, AMediumThatIsGoneIsToldAndThePartsStay) {
  ForDiscs({});
  discs_.medium = false;
  machine_.Expect(ui::Answer::kOk,
                  "No Media Loaded on the disk drive. Unable to write data to the disk\r\n"
                  "Your backup is on C:\\Out\\CDbackup");
  EXPECT_TRUE(Compress());
  EXPECT_FALSE(app_.session().gMediaDisc);
  EXPECT_TRUE(machine_.Exists("C:\\Out\\CDBackup\\Job.obk"));
  EXPECT_TRUE(discs_.burnt.empty());
  ASSERT_EQ(app_.account().entries().size(), 1u);
  EXPECT_EQ(app_.account().entries()[0].source,
            "No disc was written. The backup is in its parts in C:\\Out\\CDbackup.");
}

TEST_F(ArchiveEnd, ABackupThatPassesTheMediaPageByStaysOnTheHardDisk) {
  ForDiscs({});
  app_.session().gMediaDisc = false;  // as the quick choice of the job page leaves it
  EXPECT_TRUE(Compress());
  EXPECT_TRUE(machine_.Exists("C:\\Out\\Job.obk"));
  EXPECT_TRUE(discs_.burnt.empty());
}

}  // namespace
}  // namespace quorvale
