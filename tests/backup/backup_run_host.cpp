#include <gtest/gtest.h>

#include <algorithm>

#include "backup/format/settings_file.h"
#include "backup_run.h"
#include "base/paths.h"
#include "base/text.h"

namespace quorvale::backup_test {

BackupRun::BackupRun(const std::string& like) : machine_(like) {
  machine_.computer().SetClock(
      {.year = 2026, .month = 11, .day = 14, .hour = 22, .minute = 5, .second = 9, .weekday = 7});
}

void BackupRun::OpenItems(const std::string& name) {
  FrmWelcome& main_window = app().Get<FrmWelcome>();
  main_window.Show();
  machine_.Click(main_window.cmdWC_TakeBackup);
  frmOne& job = app().Get<frmOne>();
  job.txtBackupname.text = name;
  machine_.Click(job.cmdNext);
}

void BackupRun::Tick(const std::string& path) { machine_.Tick(app().Get<FrmTwo>().tvwMain, path); }

void BackupRun::AddFolder(const std::string& path) {
  machine_.ui().ExpectFolder(path);
  Tick("Add Other Folders");
}

void BackupRun::AddFile(const std::string& path) {
  machine_.ui().ExpectFile(path);
  Tick("Add More Files");
}

void BackupRun::OpenOptions() { machine_.Click(app().Get<FrmTwo>().cmdNext); }

void BackupRun::OpenMedia() {
  OpenOptions();
  machine_.Click(app().Get<frmThree>().cmdNext);
}

void BackupRun::OpenReview() {
  OpenMedia();
  machine_.Click(app().Get<FrmBackupMedia>().cmdNext);
}

void BackupRun::Start() { machine_.Click(app().Get<frmfour>().cmdNext); }

void BackupRun::Finish() {
  OpenReview();
  Start();
}

void BackupRun::Select(const std::vector<std::pair<std::string, std::string>>& paths_and_keys) {
  app().Get<FrmWelcome>().Show();
  Session& session = machine_.session();
  session.gBackupFolder = BackupFolder();
  session.gBackupFileName = "Job.obk";
  session.gBackupBasePath = BackupFolder() + "\\Job";
  session.gCompressionLevel = "6";
  session.gLogDetails = "False";
  session.gProtectWithPassword = "False";
  for (const auto& [path, key] : paths_and_keys) {
    session.gBackupItemPaths.push_back(path);
    session.gBackupItemKeys.push_back(key);
  }
  machine_.MakeFolder(session.gBackupBasePath);
  WriteBackupSettings(app(), StagedSettingsPath(session.gBackupBasePath, app()));
}

void BackupRun::When(const std::string& phase_text, std::function<void()> act) {
  machine_.ui().When(
      [this, phase_text] {
        frmFinish* run = Run();
        return run != nullptr && run->lblCurrent.caption->starts_with(phase_text);
      },
      std::move(act));
}

void BackupRun::StopAt(const std::string& phase_text) {
  When(phase_text, [this] {
    machine_.Expect(ui::Answer::kYes, kReallyStop);
    Run()->Command2.Click();
  });
}

std::string BackupRun::BackupFolder() { return app().Get<frmSettings>().txtBackup.text; }

std::string BackupRun::ArchivePath(const std::string& stem) {
  return WithBackslash(BackupFolder()) + stem + ".obk";
}

bool BackupRun::ArchiveExists(const std::string& stem) {
  return machine_.Exists(ArchivePath(stem));
}

std::vector<std::string> BackupRun::Entries(const std::string& stem) {
  zip::Archive archive(machine_.platform());
  archive.archive_name = ArchivePath(stem);
  std::vector<zip::Entry> entries;
  EXPECT_EQ(archive.List(&entries), zip::Result::kDone) << archive.archive_name;
  std::vector<std::string> names;
  for (const zip::Entry& entry : entries) names.push_back(entry.name);
  std::sort(names.begin(), names.end());
  return names;
}

bool BackupRun::HasEntry(const std::string& name, const std::string& stem) {
  const std::vector<std::string> names = Entries(stem);
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string BackupRun::Content(const std::string& entry, const std::string& stem,
                               const std::string& password) {
  zip::Archive archive(machine_.platform());
  archive.archive_name = ArchivePath(stem);
  archive.files_to_process = {entry};
  archive.password = password;
  archive.unzip_folder = "C:\\Unpacked";
  archive.preserve_paths = false;
  machine_.MakeFolder(archive.unzip_folder);
  EXPECT_EQ(archive.Unzip(), zip::Result::kDone) << entry;
  return machine_.ReadFile("C:\\Unpacked\\" + FileNameOf(entry));
}

std::vector<std::string> BackupRun::LeftInBackupFolder() {
  return machine_.AllBelow(BackupFolder());
}

}  // namespace quorvale::backup_test
