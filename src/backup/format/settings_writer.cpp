#include "backup/format/settings_file.h"

#include <initializer_list>

#include "backup/format/lines.h"
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

enum class EmptyKey { kNamed, kKept };

// One pair of lines for each product whose words the item's path holds.
void AddItems(const Session& session, std::initializer_list<ProductId> products, EmptyKey empty_key,
              Lines* lines) {
  for (size_t i = 0; i < session.gBackupItemPaths.size(); ++i) {
    const std::string& path = session.gBackupItemPaths[i];
    for (const ProductId id : products) {
      if (!Contains(path, PathPrefix(id))) continue;
      std::string key = BackupItemKey(session, i);
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
  if (program.files().FileExists(path)) RemoveTextFile(program, path, true);
  return !program.files().FileExists(path);
}

}  // namespace

std::string SettingsKey(const std::string& path, const std::string& key) {
  const bool is_outlook = Contains(path, PathPrefix(ProductId::kMicrosoftOutlook));
  return key.empty() && is_outlook ? kExchangeMails : key;
}

std::string StagedSettingsPath(const std::string& stage, const Program& program) {
  const Session& session = program.session();
  return WithBackslash(stage) + WithoutLastFour(session.gBackupFileName) + session.gUniqueSuffix +
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
  lines.End();
  lines.Write(program, path);
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
  lines.End();
  lines.Write(program, path);
}

void SaveJobState(Program& program, const std::string& path, const HandOver& hand_over) {
  if (!RemoveOld(program, path)) return;
  Lines lines;
  AddHead(program, &lines);
  lines.Add("</ItemsForBackup>");
  lines.Element("BackupName", hand_over.name);
  lines.Element("BackupType", hand_over.kind);
  lines.End();
  lines.WriteWithFullText(program, path);
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
  lines.End();
  lines.WriteWithFullText(program, path);
}

void WriteRestartSettings(Program& program, const std::string& path, const HandOver& hand_over) {
  if (!RemoveOld(program, path)) return;
  Lines lines;
  AddHead(program, &lines);
  lines.Add("</ItemsForBackup>");
  lines.Element("BackupName", hand_over.name);
  lines.Element("BackupType", hand_over.kind);
  lines.End();
  lines.WriteWithFullText(program, path);
}

void SaveScheduleState(Program& program, const std::string& path, const HandOver& hand_over) {
  if (!RemoveOld(program, path)) return;
  Lines lines;
  AddHead(program, &lines);
  lines.Add("</ItemsForBackup>");
  lines.Element("BackupType", hand_over.kind);
  lines.End();
  lines.WriteWithFullText(program, path);
}

}  // namespace quorvale
