#include "backup/format/settings_file.h"

#include <initializer_list>

#include "backup/format/settings_items.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

using namespace settings_items;

// What stands for the key of an Outlook store without a file of its own.
constexpr char kExchangeMails[] = "Exchange Mails";

class Lines {
 public:
  void Add(const std::string& line) {
    text_ += line;
    text_ += "\r\n";
  }
  void Element(const std::string& name, const std::string& text) {
    Add("<" + name + ">" + text + "</" + name + ">");
  }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

void WriteAnsi(Program& program, const std::string& path, const Lines& lines) {
  program.files().WriteWhole(path, program.platform().system.ToAnsi(lines.text()));
}

std::string ItemKey(const Session& session, size_t index) {
  return index < session.gBackupItemKeys.size() ? session.gBackupItemKeys[index] : "";
}

void AddHead(Program& program, Lines* lines) {
  const Session& session = program.session();
  lines->Add("<?xml version='1.0'?>");
  lines->Add("<BackupSettings>");
  lines->Add("<Main Process='" + session.gBackupProcessName + "'>");
  lines->Element("ProcessDesc", session.gBackupProcessDesc);
  lines->Element("DateTime", DateStamp(program.platform().system.Now()));
  lines->Element("BackupFolder", session.gBackupFolder);
  lines->Add("<ItemsForBackup>");
}

void AddTail(Lines* lines) {
  lines->Add("</Main>");
  lines->Add("</BackupSettings>");
}

enum class EmptyKey { kNamed, kKept };

// One pair of lines for each product whose words the item's path holds.
void AddItems(const Session& session, std::initializer_list<ProductId> products, EmptyKey empty_key,
              Lines* lines) {
  for (size_t i = 0; i < session.gBackupItemPaths.size(); ++i) {
    const std::string& path = session.gBackupItemPaths[i];
    for (const ProductId id : products) {
      if (!Contains(path, PathPrefix(id))) continue;
      std::string key = ItemKey(session, i);
      if (key.empty() && empty_key == EmptyKey::kNamed && id == ProductId::kMicrosoftOutlook) {
        key = kExchangeMails;
      }
      const std::string element = ProductOf(id).settings_element;
      lines->Add("<" + element + " Key='" + key + kAttributeEnd + path);
      lines->Add("</" + element + ">");
    }
  }
}

void AddAdvancedSettings(const Session& session, Lines* lines) {
  lines->Add("<AdvancedSettings>");
  lines->Element("LogDetails", session.gLogDetails);
  lines->Element("UseCompression", session.gUseCompression);
  // Two elements are named after what they once held: these are the level and the password.
  lines->Element("SelfExtractingBackup", session.gCompressionLevel);
  lines->Element("VerifyArchive", session.gArchivePassword);
  lines->Element("ProtectWithPassword", session.gProtectWithPassword);
  lines->Element("BackupSettingsFiles", session.gBackupFileName);
  lines->Add("</AdvancedSettings>");
}

// False if an old hand-over file stays.
bool RemoveOld(Program& program, const std::string& path) {
  if (program.files().FileExists(path)) program.platform().files.RemoveFile(path, true);
  return !program.files().FileExists(path);
}

void AddElement(Lines* lines, const std::string& name, const std::string& text) {
  lines->Add("<" + name + ">");
  lines->Add(text);
  lines->Add("</" + name + ">");
}

// The log has lines of its own for each product; of Windows Mail it tells nothing.
void AddLoggedItem(const std::string& path, const std::string& key, const std::string& closing,
                   Lines* lines) {
  const auto add = [&](ProductId id, const std::string& text) {
    if (Contains(path, PathPrefix(id))) AddElement(lines, ProductOf(id).caption, text);
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

// The log up to its option block; `closing` ends the line of an Outlook item.
Lines LogLines(Program& program, const std::string& closing) {
  const Session& session = program.session();
  Lines lines;
  lines.Add("<?xml version='1.0'?>");
  lines.Add("<BackupSettings>");
  lines.Add("<Main Process: " + session.gBackupProcessName + ">");
  lines.Element("Process Description", session.gBackupProcessDesc);
  lines.Element("DateTime", LogMoment(program));
  lines.Element("Backup Folder", session.gBackupFolder);
  lines.Add("");
  lines.Add("<ItemsForBackup>");
  lines.Add("");
  for (size_t i = 0; i < session.gBackupItemPaths.size(); ++i) {
    AddLoggedItem(session.gBackupItemPaths[i], ItemKey(session, i), closing, &lines);
  }
  lines.Add("</ItemsForBackup>");
  lines.Add("<Advanced Settings>");
  lines.Element("Use Compression", session.gUseCompression);
  lines.Element("Password Protected", session.gProtectWithPassword);
  lines.Element("Backup File Name", session.gBackupFileName);
  lines.Add("</AdvancedSettings>");
  return lines;
}

}  // namespace

bool ReadSettingsFile(Program& program, const std::string& path, SettingsFile* settings) {
  *settings = SettingsFile();
  const std::optional<std::string> bytes = program.files().ReadWhole(path);
  return bytes && ParseSettings(program.platform().system.FromAnsi(*bytes), settings);
}

std::string StagedSettingsPath(const std::string& stage, const Program& program) {
  const Session& session = program.session();
  return WithBackslash(stage) + WithoutExtension(session.gBackupFileName) + session.gUniqueSuffix +
         ".xml";
}

void WriteBackupSettings(Program& program, const std::string& path) {
  if (program.files().FileExists(path)) return;
  Lines lines;
  AddHead(program, &lines);
  AddItems(program.session(),
           {ProductId::kMicrosoftOutlook, ProductId::kWindowsMail, ProductId::kOutlookExpress,
            ProductId::kInternetExplorer, ProductId::kOtherFiles, ProductId::kAddedFolders,
            ProductId::kAddedFiles},
           EmptyKey::kNamed, &lines);
  lines.Add("</ItemsForBackup>");
  AddAdvancedSettings(program.session(), &lines);
  AddTail(&lines);
  WriteAnsi(program, path, lines);
}

void WriteQuickSettings(Program& program, const std::string& path) {
  if (program.files().FileExists(path)) return;
  Lines lines;
  AddHead(program, &lines);
  AddItems(program.session(),
           {ProductId::kMicrosoftOutlook, ProductId::kOutlookExpress, ProductId::kInternetExplorer,
            ProductId::kOtherFiles},
           EmptyKey::kKept, &lines);
  lines.Add("</ItemsForBackup>");
  AddAdvancedSettings(program.session(), &lines);
  AddTail(&lines);
  WriteAnsi(program, path, lines);
}

void SaveJobState(Program& program, const std::string& path, const HandOver& hand_over) {
  if (!RemoveOld(program, path)) return;
  Lines lines;
  AddHead(program, &lines);
  lines.Add("</ItemsForBackup>");
  lines.Element("BackupName", hand_over.name);
  lines.Element("BackupType", hand_over.kind);
  AddTail(&lines);
  WriteAnsi(program, path, lines);
}

void SaveTreeState(Program& program, const std::string& path, const HandOver& hand_over) {
  if (!RemoveOld(program, path)) return;
  Lines lines;
  AddHead(program, &lines);
  AddItems(program.session(),
           {ProductId::kMicrosoftOutlook, ProductId::kOutlookExpress, ProductId::kWindowsMail,
            ProductId::kInternetExplorer, ProductId::kOtherFiles, ProductId::kAddedFolders,
            ProductId::kAddedFiles},
           EmptyKey::kNamed, &lines);
  lines.Add("</ItemsForBackup>");
  lines.Element("BackupName", hand_over.name);
  lines.Element("BackupPath", hand_over.path);
  lines.Element("BackupType", hand_over.kind);
  AddTail(&lines);
  WriteAnsi(program, path, lines);
}

void WriteRestartSettings(Program& program, const std::string& path, const HandOver& hand_over) {
  if (!RemoveOld(program, path)) return;
  Lines lines;
  AddHead(program, &lines);
  lines.Add("</ItemsForBackup>");
  lines.Element("BackupName", hand_over.name);
  lines.Element("BackupType", hand_over.kind);
  AddTail(&lines);
  WriteAnsi(program, path, lines);
}

void SaveScheduleState(Program& program, const std::string& path, const HandOver& hand_over) {
  if (!RemoveOld(program, path)) return;
  Lines lines;
  AddHead(program, &lines);
  lines.Add("</ItemsForBackup>");
  lines.Element("BackupType", hand_over.kind);
  AddTail(&lines);
  WriteAnsi(program, path, lines);
}

std::string BackupLogPath(const Program& program) {
  return LogFolder(program) + "Settings_" + WithoutExtension(program.session().gBackupFileName) +
         ".xml";
}

void WriteReviewLog(Program& program, const std::string& path) {
  Lines lines = LogLines(program, ">");
  AddTail(&lines);
  WriteAnsi(program, path, lines);
}

void WriteRunLog(Program& program, const std::string& path,
                 const std::vector<std::string>& skipped) {
  Lines lines = LogLines(program, kAttributeEnd);
  lines.Add("<Skipped File/Folders>");
  for (const std::string& source : skipped) {
    if (!source.empty()) lines.Add(source);
  }
  lines.Add("</Skipped File/Folder>");
  AddTail(&lines);
  WriteAnsi(program, path, lines);
}

}  // namespace quorvale
