#include "logs/run/pathLogger.h"

#include "base/paths.h"

namespace quorvale {
namespace {

bool IsFolder(Files& files, const std::string& path) {
  const auto found = files.Stat(path);
  return found && found->IsFolder();
}

// The root as the start of longer paths: a "\" comes before each name anyway.
std::string NormalRoot(const std::string& root) { return WithoutBackslash(root); }

}  // namespace

pathLogger::pathLogger(Files& files, std::function<void()> pump)
    : files_(files), pump_(std::move(pump)) {
  PathLogInit();
}

void pathLogger::PathLogInit() {
  fullFileNamesOnly = true;
  Terminate();
}

void pathLogger::Terminate() {
  path_names_.Clear();
  file_names_.Clear();
  path_pointers_.Clear();
  full_file_names_.Clear();
}

int pathLogger::Count() const {
  return fullFileNamesOnly ? full_file_names_.Count() : file_names_.Count();
}

bool pathLogger::LogPath(const std::string& root) {
  if (!IsFolder(files_, root)) return true;
  if (path_names_.Count() > 0) return false;
  path_names_.Add(NormalRoot(root));
  // The list of folders is the queue of the walk.
  for (int cursor = 1; cursor <= path_names_.Count(); ++cursor) {
    if (!LogFolder(cursor)) return false;
  }
  return true;
}

bool pathLogger::LogFolder(int place) {
  pump_();
  const std::string path = path_names_.Item(place);
  // A drive's root is only a folder with its "\".
  if (!IsFolder(files_, WithBackslash(path))) return false;
  for (const FileInfo& entry : files_.List(WithBackslash(path))) {
    const std::string full_name = path + "\\" + entry.name;
    if (entry.IsFolder()) {
      path_names_.Add(full_name);
    } else if (fullFileNamesOnly) {
      full_file_names_.Add(full_name);
    } else {
      file_names_.Add(entry.name);
      path_pointers_.Add(place);
    }
  }
  return true;
}

}  // namespace quorvale
