#include "backup/format/log_writer.h"

#include "backup/format/lines.h"
#include "backup/format/settings_items.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

using namespace settings_items;

// The log has lines of its own for each product; of Windows Mail it tells nothing.
void AddLoggedItem(const std::string& path, const std::string& key, const std::string& closing,
                   Lines* lines) {
  const auto add = [&](ProductId id, const std::string& text) {
    if (Contains(path, PathPrefix(id))) lines->TallElement(ProductOf(id).caption, text);
  };
  if (Contains(path, PathPrefix(ProductId::kMicrosoftOutlook))) {
    lines->Add(key.empty() ? "<Exchange Mails >" + path + closing + path : "<" + key + closing);
    lines->Add("</MO>");
  }
  add(ProductId::kOutlookExpress, "<" + path);
  add(ProductId::kInternetExplorer, "<" + path);
  add(ProductId::kOtherFiles, path);
  add(ProductId::kAddedFolders, key);
  add(ProductId::kAddedFiles, key);
}

std::string LogMoment(Program& program) {
  SystemInfo& system = program.platform().system;
  const LocalTime now = system.Now();
  return system.WeekdayName(now.weekday) + "_" + std::to_string(now.month) + "/" +
         std::to_string(now.day) + "/" + std::to_string(now.year) + "_" + system.TimeText(now);
}

// The head of every log, up to its items.
Lines LogHead(Program& program, const std::string& process, const std::string& description) {
  Lines lines;
  lines.Add("<?xml version='1.0'?>");
  lines.Add("<BackupSettings>");
  lines.Add("<Main Process: " + process + ">");
  lines.Element("Process Description", description);
  lines.Element("DateTime", LogMoment(program));
  return lines;
}

void AddItemsStart(const std::string& folder_name, const std::string& folder, Lines* lines) {
  lines->Element(folder_name, folder);
  lines->Add("");
  lines->Add("<ItemsForBackup>");
  lines->Add("");
}

void AddOptions(const std::string& compression, const std::string& protection,
                const std::string& file_name, Lines* lines) {
  lines->Add("</ItemsForBackup>");
  lines->Add("<Advanced Settings>");
  lines->Element("Use Compression", compression);
  lines->Element("Password Protected", protection);
  lines->Element("Backup File Name", file_name);
  lines->Add("</AdvancedSettings>");
}

// A backup's log up to its option block; `closing` ends the line of an Outlook item.
Lines BackupLog(Program& program, const std::string& closing) {
  const BackupJob& job = program.session();
  Lines lines = LogHead(program, job.gBackupProcessName, job.gBackupProcessDesc);
  AddItemsStart("Backup Folder", job.gBackupFolder, &lines);
  for (size_t i = 0; i < job.gBackupItemPaths.size(); ++i) {
    AddLoggedItem(job.gBackupItemPaths[i], BackupItemKey(job, i), closing, &lines);
  }
  AddOptions(job.gUseCompression, job.gProtectWithPassword, job.gBackupFileName, &lines);
  return lines;
}

}  // namespace

std::string BackupLogPath(const Program& program) {
  return LogFolder(program) + "Settings_" + WithoutLastFour(program.session().gBackupFileName) +
         ".xml";
}

FileStatus WriteReviewLog(Program& program, const std::string& path) {
  Lines lines = BackupLog(program, ">");
  lines.End();
  return lines.WriteWithFullText(program, path);
}

FileStatus WriteRunLog(Program& program, const std::string& path,
                       const std::vector<std::string>& skipped) {
  Lines lines = BackupLog(program, kAttributeEnd);
  lines.Add("<Skipped File/Folders>");
  for (const std::string& source : skipped) {
    if (!source.empty()) lines.Add(source);
  }
  lines.Add("</Skipped File/Folder>");
  lines.End();
  return lines.WriteWithFullText(program, path);
}

FileStatus WriteRestoreLog(Program& program, const std::string& path) {
  const RestoreJob& job = program.session();
  Lines lines = LogHead(program, job.gRestoreProcessName, job.gRestoreProcessDesc);
  AddItemsStart("Restore Folder", job.gRestoreFolder, &lines);
  for (const auto& [item, origin] : job.restore_items) {
    const size_t root = item.find('\\');
    if (root != std::string::npos) lines.TallElement(item.substr(0, root), "<" + item);
  }
  AddOptions(job.gRestoreUseCompression, job.gRestoreProtectWithPassword,
             FileNameOf(job.gRestoreFilePath), &lines);
  lines.End();
  return lines.WriteWithFullText(program, path);
}

}  // namespace quorvale
