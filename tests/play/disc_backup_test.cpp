// Whole backups to discs: burnt, read back, compared, and restored from the parts.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "app/console/console.h"
#include "backup/pages/FrmProcess.h"
#include "backup/pages/frmFinish.h"
#include "platform/host/child_process.h"
#include "platform/host/host_platform.h"
#include "play/new_machine.h"
#include "play/page_driver.h"
#include "play/sample_machine.h"
#include "play/scenario_machine.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;

constexpr char kData[] = "D:\\Mine\\noise.bin";
constexpr char kBackupFolder[] = "D:\\Backups";

std::string Noise(size_t length) {
  std::string bytes(length, '\0');
  std::uint32_t state = 88172645u;
  for (char& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

// The files below a folder of the host, by their bare names.
std::map<std::string, std::string> FilesBelow(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    files[entry.path().filename().string()] = bytes.str();
  }
  return files;
}

class DiscBackup : public testing::Test {
 protected:
  void SetUp() override {
    std::string problem;
    computer_ = MakeScenarioMachine(Folder("machine"), "xp", "Anna", 1, &problem);
    ASSERT_NE(computer_, nullptr) << problem;
    noise_ = Noise(2500000);
    FileToolkit files(computer_->platform().files, [] {});
    ASSERT_TRUE(files.MakeFolderChain("D:\\Mine"));
    ASSERT_TRUE(files.MakeFolderChain(kBackupFolder));
    ASSERT_EQ(files.WriteWhole(kData, noise_), FileStatus::kOk);
    computer_->SetDiscMedia("file:disc.iso", 700000000, std::nullopt);
  }
  std::string Folder(const std::string& name) const { return scratch_.path() + "/" + name; }
  void Expect(ui::Answer answer, const std::string& text) {
    computer_->ui().ExpectBox(answer, text);
  }

  // Backs the file up in parts of this size. The parts are kept as they were before the burn.
  Outcome Backup(std::uint64_t part_size) {
    ui::HeadlessUi& screen = computer_->ui();
    screen.When([this] { return Running<frmFinish>() != nullptr; },
                [this, part_size] { Running<frmFinish>()->run.disc_part_size = part_size; });
    screen.When([this] { return Running<FrmProcess>() != nullptr; },
                [this] { parts_ = FilesBelow(HostPath("CDBackup")); });
    BackupWishes job;
    job.name = "Big";
    job.to = kBackupFolder;
    job.add_files = {kData};
    job.level = "No Compression";
    job.disc = "file: disc.iso";
    PageDriver driver(*computer_);
    const Outcome outcome = driver.Backup(job);
    EXPECT_EQ(driver.problem(), "");
    discs_ = driver.discs();
    EXPECT_EQ(screen.failures, std::vector<std::string>());
    EXPECT_EQ(screen.ExpectedBoxes(), std::vector<std::string>());
    screen.failures.clear();
    return outcome;
  }
  template <class Form>
  Form* Running() {
    return computer_->app() == nullptr ? nullptr : computer_->app()->Loaded<Form>();
  }
  std::string HostPath(const std::string& name) {
    return computer_->host().files().HostPath(std::string(kBackupFolder) + "\\" + name);
  }
  bool PartsAreGone() { return HostPath("").empty() || !fs::exists(HostPath("CDBackup")); }
  // Copies what is on a disc into the folder "read".
  void ReadDisc(const std::string& image) {
    fs::create_directories(Folder("read"));
    ASSERT_EQ(host::RunChild(
                  {"xorriso", "-osirrox", "on", "-indev", "stdio:" + Folder("machine/" + image),
                   "-extract", "/", Folder("read/" + image)},
                  nullptr, nullptr),
              0)
        << image;
    EXPECT_EQ(FilesBelow(Folder("read/" + image)).size(), 1u) << image;
  }
  // All parts in one folder, restored: the file is what it was.
  void ExpectRestored() {
    fs::create_directories(Folder("copied"));
    for (const auto& [name, bytes] : FilesBelow(Folder("read"))) {
      std::ofstream(Folder("copied/" + name), std::ios::binary) << bytes;
    }
    ExpectRestoredFrom(Folder("copied/Big.obk"));
  }
  void ExpectRestoredFrom(const std::string& archive) {
    Files& files = computer_->platform().files;
    ASSERT_EQ(files.RemoveFile(kData, true), FileStatus::kOk);
    Expect(ui::Answer::kOk, "Backup successfully restored");
    RestoreWishes job;
    job.file = archive;
    job.all = true;
    PageDriver driver(*computer_);
    EXPECT_EQ(driver.Restore(job), Outcome::kDone) << driver.problem();
    EXPECT_EQ(computer_->ui().failures, std::vector<std::string>());
    EXPECT_TRUE(FileToolkit(files, [] {}).ReadWhole(kData) == noise_);
  }

  const ScratchFolder scratch_;
  std::unique_ptr<RunningMachine> computer_;
  std::string noise_;
  std::map<std::string, std::string> parts_;
  int discs_ = 0;
};

TEST_F(DiscBackup, OfTwoPartsComesBackFromTwoDiscs) {
  Expect(ui::Answer::kOk, "One CD required");
  Expect(ui::Answer::kOk, "Please insert disk 2");
  Expect(ui::Answer::kOk, "Backup successfully completed");
  ASSERT_EQ(Backup(1500000), Outcome::kDone);
  EXPECT_EQ(discs_, 2);
  EXPECT_TRUE(PartsAreGone());
  for (const char* image : {"disc.iso", "disc_2.iso"}) ReadDisc(image);
  EXPECT_FALSE(fs::exists(Folder("machine/disc_3.iso")));
  EXPECT_EQ(parts_.size(), 2u);
  EXPECT_TRUE(FilesBelow(Folder("read")) == parts_);
  ExpectRestored();
}

TEST_F(DiscBackup, OfThreePartsComesBackFromThreeDiscs) {
  Expect(ui::Answer::kOk, "One CD required");
  Expect(ui::Answer::kOk, "Please insert disk 2");
  Expect(ui::Answer::kOk, "Please insert disk 3");
  Expect(ui::Answer::kOk, "Backup successfully completed");
  ASSERT_EQ(Backup(1000000), Outcome::kDone);
  EXPECT_EQ(discs_, 3);
  EXPECT_TRUE(PartsAreGone());
  for (const char* image : {"disc.iso", "disc_2.iso", "disc_3.iso"}) ReadDisc(image);
  for (const auto& [name, bytes] : parts_) EXPECT_LE(bytes.size(), 1000000u) << name;
  EXPECT_EQ(parts_.size(), 3u);
  EXPECT_TRUE(FilesBelow(Folder("read")) == parts_);
  ExpectRestored();
}

TEST_F(DiscBackup, WithASecondDiscDeclinedIsNotDeliveredButStandsWholeAtHome) {
  computer_->SetDiscMedia("file:disc.iso", 700000000, 1);
  Expect(ui::Answer::kOk, "One CD required");
  Expect(ui::Answer::kOk, "Please insert disk 2");
  Expect(ui::Answer::kNo, "Please enter a writable CD/DVD. Do you want to continue..");
  Expect(ui::Answer::kOk, "CD writting aborted");
  Expect(ui::Answer::kOk, "Backup successfully completed");
  EXPECT_EQ(Backup(1500000), Outcome::kRefused);
  EXPECT_TRUE(PartsAreGone());
  EXPECT_TRUE(fs::exists(Folder("machine/disc.iso")));
  EXPECT_FALSE(fs::exists(Folder("machine/disc_2.iso")));
  EXPECT_EQ(parts_.size(), 2u);
  const Account& account = computer_->app()->account();
  EXPECT_EQ(account.archive, std::string(kBackupFolder) + "\\Big.obk");
  EXPECT_TRUE(account.HasToTell());
  ExpectRestoredFrom(HostPath("Big.obk"));
}

TEST_F(DiscBackup, OnMediaThatAreTooSmallIsGivenUp) {
  computer_->SetDiscMedia("file:disc.iso", 1048576, std::nullopt);
  Expect(ui::Answer::kOk, "Total of 1  CD required");
  Expect(ui::Answer::kYes, "Please enter a writable CD/DVD. Do you want to continue..");
  Expect(ui::Answer::kNo, "Please enter a writable CD/DVD. Do you want to continue..");
  Expect(ui::Answer::kOk, "CD writting aborted");
  Expect(ui::Answer::kOk, "Backup successfully completed");
  EXPECT_EQ(Backup(600000000), Outcome::kRefused);
  EXPECT_TRUE(PartsAreGone());
  EXPECT_FALSE(fs::exists(Folder("machine/disc.iso")));
}

TEST_F(DiscBackup, CannotGoToADriveThatIsNotThere) {
  BackupWishes job;
  job.name = "Big";
  job.add_files = {kData};
  job.disc = "Q:";
  PageDriver driver(*computer_);
  EXPECT_EQ(driver.Backup(job), Outcome::kRefused);
  EXPECT_EQ(driver.problem(), "there is no disc writer \"Q:\".");
}

// --- The console edition ------------------------------------------------------------------------

class DiscCommand : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(MakeMachine(machine_, MachinePlan()), "");
    std::ofstream(scratch_.path() + "/letter.txt") << "Dear Bernd";
  }
  ExitStatus Run(std::vector<std::string> words) {
    std::istringstream in;
    std::ostringstream error;
    out_.str("");
    Terminal terminal{in, out_, error};
    words.insert(words.begin(), {"--machine", machine_, "backup", "Job", "--add-file",
                                 scratch_.path() + "/letter.txt"});
    return RunConsole(words, terminal);
  }

  const ScratchFolder scratch_;
  const std::string machine_ = scratch_.path() + "/machine";
  std::ostringstream out_;
};

TEST_F(DiscCommand, BurnsIntoAFile) {
  const std::string image = scratch_.path() + "/out.iso";
  EXPECT_EQ(Run({"--disc", "file:" + image}), ExitStatus::kDone) << out_.str();
  EXPECT_TRUE(out_.str().ends_with("The backup is on 1 disc.\n")) << out_.str();
  EXPECT_TRUE(fs::exists(image));
}

TEST_F(DiscCommand, TakesTheWriterOfTheMachine) {
  std::ofstream(machine_ + "/machine.ini", std::ios::app)
      << "\n[disc]\nwriter = file:disc.iso\nsize = 300000000\n";
  EXPECT_EQ(Run({"--disc", "1"}), ExitStatus::kDone) << out_.str();
  EXPECT_TRUE(fs::exists(machine_ + "/disc.iso"));
  EXPECT_EQ(Run({"--disc", "2"}), ExitStatus::kFailed);
}

TEST_F(DiscCommand, FailsWhereThereIsNoWriter) {
  EXPECT_EQ(Run({"--disc", "1"}), ExitStatus::kFailed);
  EXPECT_NE(out_.str().find("Drives Cannot be initialized...Contact support!"), std::string::npos);
}

TEST_F(DiscCommand, AnsweringYesToEverythingComesToAnEnd) {
  std::ofstream(scratch_.path() + "/letter.txt", std::ios::binary) << Noise(2000000);
  std::ofstream(machine_ + "/machine.ini", std::ios::app)
      << "\n[disc]\nwriter = file:disc.iso\nsize = 1000\n";
  EXPECT_EQ(Run({"--disc", "1", "--yes"}), ExitStatus::kFailed);
  EXPECT_NE(out_.str().find("CD writting aborted"), std::string::npos) << out_.str();
}

}  // namespace
}  // namespace quorvale
