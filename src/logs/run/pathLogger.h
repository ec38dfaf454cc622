// Walks a folder tree and records what it finds in flat lists, so that its caller needs no
// recursion. In spite of its name it writes no log.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace quorvale {

// A list whose entries are also found by a key: "K" and their number, from "K0" on.
template <class T>
class NumberedList {
 public:
  void Add(T value) { entries_.push_back(std::move(value)); }
  void Clear() { entries_.clear(); }
  int Count() const { return static_cast<int>(entries_.size()); }
  // By the place in the list, from 1.
  const T& Item(int place) const { return entries_.at(static_cast<size_t>(place - 1)); }
  // Null if there is no such key.
  const T* Find(const std::string& key) const {
    for (size_t i = 0; i < entries_.size(); ++i) {
      if (key == "K" + std::to_string(i)) return &entries_[i];
    }
    return nullptr;
  }
  const std::vector<T>& entries() const { return entries_; }

 private:
  std::vector<T> entries_;
};

class pathLogger {
 public:
  // `pump` is called at each folder.
  pathLogger(Files& files, std::function<void()> pump);

  // Empties the lists and sets fullFileNamesOnly. Done by construction, and before a second walk.
  void PathLogInit();
  // Walks the tree below a folder level by level, each level in the file system's order. A folder
  // that does not exist leaves the lists empty. False if a folder that was found can no longer be
  // opened, or if the lists hold a walk already; they keep what is in them.
  bool LogPath(const std::string& root);
  // Entries of the list of files that is in use.
  int Count() const;
  void Terminate();

  bool fullFileNamesOnly = true;

  // The folders, the root first ("K0").
  const NumberedList<std::string>& pathNames() const { return path_names_; }
  // Only without fullFileNamesOnly: the bare names of the files, and for each the place of its
  // folder among pathNames, from 1.
  const NumberedList<std::string>& fileNames() const { return file_names_; }
  const NumberedList<int>& pathPointers() const { return path_pointers_; }
  // Only with fullFileNamesOnly.
  const NumberedList<std::string>& fullFileNames() const { return full_file_names_; }

 private:
  bool LogFolder(int place);

  Files& files_;
  std::function<void()> pump_;
  NumberedList<std::string> path_names_;
  NumberedList<std::string> file_names_;
  NumberedList<int> path_pointers_;
  NumberedList<std::string> full_file_names_;
};

}  // namespace quorvale
