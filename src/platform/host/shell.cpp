#include "platform/host/shell.h"

#include "base/paths.h"
#include "base/text.h"
#include "platform/file_toolkit.h"
#include "platform/registry_text.h"

namespace quorvale::host {
namespace {

constexpr int kStarted = 42;      // what ShellExecute gives for success
constexpr int kFileNotFound = 2;  // its refusals
constexpr int kAccessDenied = 5;

// How long a run of the registry editor takes: it ends when it was asked for this often, or at the
// first question after so many milliseconds.
constexpr int kRunPolls = 3;
constexpr std::uint64_t kRunMilliseconds = 2000;

// The largest text that an import reads.
constexpr std::uint64_t kMostImportBytes = 256u << 20;

bool IsRegistryEditor(const std::string& program) {
  const std::string name = FoldCase(FileNameOf(program));
  return name == "regedit.exe" || name == "regedit";
}

// A switch of the registry editor ("/e") as its letter, or '\0'.
char SwitchLetter(const std::string& word) {
  if (word.size() != 2 || (word[0] != '/' && word[0] != '-')) return '\0';
  return FoldCase(word)[1];
}

}  // namespace

std::vector<std::string> CommandWords(const std::string& command_line) {
  std::vector<std::string> words;
  std::string word;
  bool in_word = false;
  bool in_quotes = false;
  for (char c : command_line) {
    if (c == '"') {
      in_quotes = !in_quotes;
      in_word = true;
    } else if (c == ' ' && !in_quotes) {
      if (in_word) words.push_back(word);
      word.clear();
      in_word = false;
    } else {
      word += c;
      in_word = true;
    }
  }
  if (in_word) words.push_back(word);
  return words;
}

HostShell::HostShell(const MachineFolder& machine, HostRegistryStore& registry, Files& files,
                     SystemInfo& system)
    : registry_(registry),
      files_(files),
      system_(system),
      folders_(machine.folders),
      elevation_refused_(machine.elevation_refused) {}

std::string HostShell::SpecialFolder(int folder) {
  const auto found = folders_.find(folder);
  if (found == folders_.end()) return "";
  const std::string path = WithoutBackslash(found->second);
  return path.size() == 2 && path[1] == ':' ? path + "\\" : path;
}

RunId HostShell::Run(const std::string& command_line, WindowStyle style) {
  std::vector<std::string> words = CommandWords(command_line);
  if (words.empty()) return 0;
  const bool is_editor = IsRegistryEditor(words[0]);
  StartedProgram program;
  program.command_line = command_line;
  program.style = style;
  words.erase(words.begin());
  program.run = is_editor ? StartEditor(words) : ++last_run_;
  (is_editor ? editor_runs_ : started_).push_back(program);
  return program.run;
}

int HostShell::Execute(const std::string& verb, const std::string& file,
                       const std::string& parameters, const std::string& folder, int show,
                       RunId* run) {
  if (run != nullptr) *run = 0;
  if (file.empty()) return kFileNotFound;
  if (EqualsNoCase(verb, "runas") && elevation_refused_) return kAccessDenied;
  StartedProgram program;
  program.verb = verb;
  program.file = file;
  program.parameters = parameters;
  program.folder = folder;
  program.show = show;
  const bool is_editor = IsRegistryEditor(file);
  program.run = is_editor ? StartEditor(CommandWords(parameters)) : ++last_run_;
  (is_editor ? editor_runs_ : started_).push_back(program);
  if (run != nullptr) *run = program.run;
  return kStarted;
}

// Arguments: [/s] /e FILE KEY exports, [/s] [/c] FILE imports.
RunId HostShell::StartEditor(const std::vector<std::string>& arguments) {
  EditorRun run;
  std::vector<std::string> names;
  for (const std::string& argument : arguments) {
    const char letter = SwitchLetter(argument);
    if (letter == 'e') run.exports = true;
    if (letter == '\0') names.push_back(argument);
  }
  if (!names.empty()) run.file = names[0];
  if (names.size() > 1) run.key = names[1];
  run.polls_left = kRunPolls;
  run.ends_at = system_.Ticks() + kRunMilliseconds;
  outstanding_[++last_run_] = run;
  return last_run_;
}

bool HostShell::IsRunning(RunId id) {
  const auto found = outstanding_.find(id);
  if (found == outstanding_.end()) return false;
  EditorRun& run = found->second;
  if (--run.polls_left > 0 && system_.Ticks() < run.ends_at) return true;
  const EditorRun ended = run;
  outstanding_.erase(found);
  End(ended);
  return false;
}

void HostShell::FinishRuns() {
  while (!outstanding_.empty()) {
    const EditorRun run = outstanding_.begin()->second;
    outstanding_.erase(outstanding_.begin());
    End(run);
  }
}

void HostShell::End(const EditorRun& run) {
  if (run.file.empty()) return;
  if (run.exports) {
    Export(run.file, run.key);
  } else {
    Import(run.file);
  }
}

void HostShell::Export(const std::string& file, const std::string& key) {
  const auto path = ParseRegistryPath(key);
  if (!path || !registry_.KeyExists(path->root, path->subkey)) return;
  // Only NT 5 and later write the newer text.
  const SystemVersion version = system_.Version();
  const RegistryTextVersion text_version = version.platform_id == 2 && version.major >= 5
                                               ? RegistryTextVersion::kVersion5
                                               : RegistryTextVersion::kRegedit4;
  const auto to_ansi = [this](const std::string& text) { return system_.ToAnsi(text); };
  FileToolkit(files_, [] {})
      .WriteWhole(file, WriteRegistryText(registry_.Export(path->root, path->subkey), text_version,
                                          to_ansi));
}

void HostShell::Import(const std::string& file) {
  const auto bytes = FileToolkit(files_, [] {}).ReadWhole(file, kMostImportBytes);
  if (!bytes) return;
  std::vector<RegistryStatement> statements;
  std::vector<RegistryTextError> errors;
  const auto from_ansi = [this](const std::string& text) { return system_.FromAnsi(text); };
  if (ReadRegistryText(*bytes, from_ansi, &statements, &errors)) registry_.Merge(statements);
}

bool HostShell::CreateLink(const ShellLink& link) {
  const std::string text = "[Link]\r\nTarget=" + link.target + "\r\nArguments=" + link.arguments +
                           "\r\nWorkingFolder=" + link.working_folder +
                           "\r\nHotKey=" + link.hot_key + "\r\nDescription=" + link.description +
                           "\r\nWindowStyle=" + std::to_string(link.window_style) +
                           "\r\nIconIndex=" + std::to_string(link.icon_index) + "\r\n";
  if (FileToolkit(files_, [] {}).WriteWhole(link.link_path, text) != FileStatus::kOk) return false;
  links_made_.push_back(link);
  return true;
}

bool HostShell::Remove(const std::string& path) {
  FileToolkit toolkit(files_, [] {});
  if (toolkit.FolderExists(path)) return toolkit.KillFolder(path);
  return files_.RemoveFile(path, true) == FileStatus::kOk;
}

bool HostShell::CopyTree(const std::string& source, const std::string& target) {
  FileToolkit toolkit(files_, [] {});
  if (!toolkit.FolderExists(source)) return toolkit.CopyFile(source, target) == FileStatus::kOk;
  bool copied = toolkit.MakeFolderChain(target);
  for (const FileInfo& entry : files_.List(source)) {
    copied =
        CopyTree(WithBackslash(source) + entry.name, WithBackslash(target) + entry.name) && copied;
  }
  return copied;
}

std::string HostShell::PlaceFor(const std::string& target, int flags) {
  if (!files_.Stat(target)) return target;
  if ((flags & file_operation_flag::kRenameOnCollision) == 0) {
    return (flags & file_operation_flag::kNoConfirmation) != 0 ? target : "";
  }
  const std::string folder = ParentFolder(target) + "\\";
  std::string name = "Copy of " + FileNameOf(target);
  for (int n = 2; files_.Stat(folder + name); ++n) {
    name = "Copy (" + std::to_string(n) + ") of " + FileNameOf(target);
  }
  return folder + name;
}

bool HostShell::Operate(FileOperation operation, const std::string& source,
                        const std::string& target, int flags) {
  if (!files_.Stat(source)) return false;
  if (operation == FileOperation::kDelete) return Remove(source);
  const std::string place = PlaceFor(target, flags);
  if (place.empty()) return false;
  if (operation == FileOperation::kCopy) return CopyTree(source, place);
  if (files_.Replace(source, place) == FileStatus::kOk) return true;
  // Another drive.
  return operation == FileOperation::kMove && CopyTree(source, place) && Remove(source);
}

void HostShell::ShowHelp(const std::string& help_file, const std::string& topic) {
  help_shown_.push_back({help_file, topic});
}

void HostShell::PlaySoundFile(const std::string& path) { sounds_played_.push_back(path); }

}  // namespace quorvale::host
