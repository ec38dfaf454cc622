// Small operations on files and folders, above the seam. None shows a message unless it says so.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"

namespace quorvale {

// One element of a deep listing: a file, or a folder that is empty or holds listed files.
struct DeepEntry {
  std::string path;
  bool is_folder = false;
};

// Why a deep listing has no entries for something that stands there.
enum class PassedOver {
  kNoDot,       // a file without a dot in its name, which the pattern leaves out
  kUnreadable,  // a folder whose entries cannot be read
};
using TellPassedOver = std::function<void(const std::string& path, PassedOver why)>;

class FileToolkit {
 public:
  // `pump` is called on entry of each listing and while it runs.
  FileToolkit(Files& files, std::function<void()> pump) : files_(files), pump_(std::move(pump)) {}

  bool FileExists(const std::string& path);
  bool FolderExists(const std::string& path);
  // Makes every folder of the path that is missing. True if the folder stands afterwards.
  bool MakeFolderChain(const std::string& path);

  // The names of the plain files of a folder that match the pattern, each followed by "|", in the
  // file system's order. "*.ext" compares the extension in lower case; "*.*" takes all that have a
  // dot in their name, "*" all.
  std::string ListFiles(const std::string& folder, const std::string& pattern);
  // The same, cut at the separators.
  std::vector<std::string> ListFileNames(const std::string& folder, const std::string& pattern);
  // The files of the whole tree below a folder. A folder follows the entries below it; empty
  // folders are listed too. Folders have no trailing "\". A listing that `stop` ends is cut short.
  std::vector<DeepEntry> ListFilesDeep(const std::string& folder, const std::string& pattern,
                                       const std::function<bool()>& stop = nullptr,
                                       const TellPassedOver& passed_over = nullptr);
  // Deletes the matching files of the whole tree; what cannot be deleted stays. True when the walk
  // ended.
  bool DeleteMatching(const std::string& folder, const std::string& pattern);
  // Deletes a folder with all that is in it. True when it is gone afterwards.
  bool KillFolder(const std::string& path);
  // Bytes of all files below a folder.
  double FolderSize(const std::string& folder);
  // Copies one file with its time and attributes; the target is the old or the whole new file.
  FileStatus CopyFile(const std::string& source, const std::string& target);

  // Whole small files. Reading gives nothing if the file is missing or longer than `limit` bytes.
  std::optional<std::string> ReadWhole(const std::string& path, std::uint64_t limit = 64u << 20);
  // The file is afterwards the whole old or the whole new one.
  FileStatus WriteWhole(const std::string& path, const std::string& bytes);

  // A free name beside a file, for what takes the file's place when it is complete.
  std::string FreshName(const std::string& target);

  Files& files() { return files_; }

 private:
  struct Walk {
    const std::string& pattern;
    const std::function<bool()>& stop;
    const TellPassedOver& passed_over;
    std::vector<DeepEntry>* entries;
  };
  bool WalkFolder(const std::string& folder, const Walk& walk, bool is_there);
  std::vector<FileInfo> ListForWalk(const std::string& folder, const Walk& walk);
  FileStatus Finish(std::unique_ptr<OutputFile> output, FileStatus status, const std::string& fresh,
                    const std::string& target, const FileInfo* like);

  Files& files_;
  std::function<void()> pump_;
};

}  // namespace quorvale
