#include "app/console/page_commands.h"

#include <ostream>

#include "base/text.h"
#include "core/main/frmSettings.h"
#include "logs/pages/frmLogs.h"

namespace quorvale {
namespace {

// A setting is called like its control.
struct SettingName {
  const char* control;
  const char* button;  // chooses a folder; null for a check box
};
constexpr SettingName kSettings[] = {{"txtBackup", "cmdselectfolder"},
                                     {"txtRestore", "Command1"},
                                     {"chkSound", nullptr},
                                     {"chkLog", nullptr},
                                     {"chkNoExtension", nullptr},
                                     {"chkGUpdate", nullptr},
                                     {"chkShortcut", nullptr},
                                     {"ChkStartMenu", nullptr}};

const SettingName* FindSetting(const std::string& name) {
  for (const SettingName& setting : kSettings) {
    if (EqualsNoCase(setting.control, name)) return &setting;
  }
  return nullptr;
}

}  // namespace

bool PageCommands::Act(const std::string& problem) {
  if (problem_.empty()) problem_ = problem;
  return problem_.empty();
}

bool PageCommands::Open(const std::string& button) {
  computer_.Start("");
  return Act(hands().Click("FrmWelcome", button));
}

// --- Logs ---------------------------------------------------------------------------------------

bool PageCommands::ListLogs() {
  if (!Open("CmdWC_ViewLog")) return false;
  const ui::ListBox& list = computer_.app()->Get<frmLogs>().File1;
  for (int i = 0; i < list.Count(); ++i) terminal_.out << list.Item(i) << "\n";
  return true;
}

bool PageCommands::ChooseLog(const std::string& name) {
  if (!hands().Choose("frmLogs", "File1", name).empty())
    return Act("There is no log " + name + ".");
  return true;
}

bool PageCommands::ShowLog(const std::string& name) {
  if (!Open("CmdWC_ViewLog") || !ChooseLog(name)) return false;
  const std::string text = computer_.app()->Get<frmLogs>().RichTextBox1.text;
  terminal_.out << ReplaceAll(text, "\r\n", "\n") << "\n";
  return true;
}

bool PageCommands::DeleteLog(const std::string& name) {
  if (!Open("CmdWC_ViewLog")) return false;
  ui::ListBox& list = computer_.app()->Get<frmLogs>().File1;
  // With no logs at all the page itself says so.
  if (list.Count() != 0 && !ChooseLog(name)) return false;
  const int before = list.Count();
  return Act(hands().Click("frmLogs", "cmdDelete")) && list.Count() < before;
}

// --- Settings -----------------------------------------------------------------------------------

ui::Control* PageCommands::Setting(const std::string& name) {
  const SettingName* setting = FindSetting(name);
  if (setting == nullptr) {
    Act("There is no setting " + name + ".");
    return nullptr;
  }
  std::string problem;
  ui::Control* control = hands().Find("frmSettings", setting->control, &problem);
  Act(problem);
  return control;
}

bool PageCommands::ListSettings() {
  if (!Open("lblQuicklinks(1)")) return false;
  for (const SettingName& setting : kSettings) {
    const ui::Control* control = Setting(setting.control);
    if (control == nullptr) return false;
    terminal_.out << setting.control << '\t' << ShownText(*control) << '\n';
  }
  return true;
}

bool PageCommands::GetSetting(const std::string& name) {
  if (!Open("lblQuicklinks(1)")) return false;
  const ui::Control* control = Setting(name);
  if (control == nullptr) return false;
  terminal_.out << ShownText(*control) << '\n';
  return true;
}

// The page takes a folder only through its dialog's button, which looks at it first.
bool PageCommands::ChooseFolder(const std::string& button, const ui::Control& box,
                                const std::string& folder) {
  computer_.ui().ExpectFolder(folder);
  return Act(hands().Click("frmSettings", button)) && ShownText(box) == folder;
}

bool PageCommands::SetSetting(const std::string& name, const std::string& value) {
  if (!Open("lblQuicklinks(1)")) return false;
  const ui::Control* control = Setting(name);
  if (control == nullptr) return false;
  const char* button = FindSetting(name)->button;
  if (button != nullptr) return ChooseFolder(button, *control, ComputerPath(value));
  if (value != "0" && value != "1") return Act(control->name() + " is 0 or 1.");
  return Act(hands().Check("frmSettings", control->name(), value == "1"));
}

}  // namespace quorvale
