#include "core/program/full_text.h"

#include "base/paths.h"
#include "base/text.h"

namespace quorvale {
namespace {

// The whole text, or its absence where the code page holds all of it.
FileStatus WriteFullText(Program& program, const std::string& path, const std::string& text,
                         bool needed) {
  const std::string full_path = FullTextPath(path);
  if (!needed) {
    if (!program.files().FileExists(full_path)) return FileStatus::kOk;
    return program.platform().files.RemoveFile(full_path, true);
  }
  program.files().MakeFolderChain(ParentFolder(full_path));
  return program.files().WriteWhole(full_path, text);
}

}  // namespace

std::string FullTextPath(const std::string& path) {
  return ParentFolder(path) + "\\Full text\\" + FileNameOf(path);
}

FileStatus WriteTextFile(Program& program, const std::string& path, const std::string& text) {
  SystemInfo& system = program.platform().system;
  const std::string bytes = system.ToAnsi(text);
  const FileStatus full = WriteFullText(program, path, text, system.FromAnsi(bytes) != text);
  const FileStatus status = program.files().WriteWhole(path, bytes);
  return status == FileStatus::kOk ? full : status;
}

std::optional<std::string> ReadTextFile(Program& program, const std::string& path) {
  const std::optional<std::string> bytes = program.files().ReadWhole(path);
  if (!bytes) return std::nullopt;
  return FullTextOf(program, path, *bytes);
}

std::string FullTextOf(Program& program, const std::string& path, const std::string& bytes) {
  SystemInfo& system = program.platform().system;
  std::optional<std::string> full = program.files().ReadWhole(FullTextPath(path));
  if (full && IsUtf8(*full) && system.ToAnsi(*full) == bytes) return *std::move(full);
  return system.FromAnsi(bytes);
}

FileStatus RemoveTextFile(Program& program, const std::string& path, bool force) {
  const std::string full_path = FullTextPath(path);
  if (program.files().FileExists(full_path)) {
    program.platform().files.RemoveFile(full_path, force);
  }
  return program.platform().files.RemoveFile(path, force);
}

}  // namespace quorvale
