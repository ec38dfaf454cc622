// Copies, moves, renames and deletes files with the shell's own progress window and questions.
#pragma once

#include <string>

#include "base/run_time_error.h"
#include "platform/file_toolkit.h"
#include "platform/shell.h"

namespace quorvale {

// The number of the errors below.
inline constexpr std::int32_t kFileToOperateOnIsMissing = kFirstObjectError + 1001;

class APIFile {
 public:
  APIFile(Shell& shell, FileToolkit& files) : shell_(shell), files_(files) {}

  bool SimpleProgress = false;    // no names in the progress window
  bool Silent = false;            // no progress window
  bool RenameOnCollision = true;  // a target that is there stays; a new name is found
  bool NoConfirmMakeDir = false;
  bool NoConfirm = false;  // no questions

  // Each answers whether it was done; false also if the user cancelled it. CopyFile, DeleteFile and
  // RenameFile throw RaisedError (kFileToOperateOnIsMissing) if there is no such file.
  //
  // The copy takes the place of a target that is there. Until it is complete, that one is kept
  // beside it.
  bool CopyFile(const std::string& source, const std::string& target);
  bool DeleteFile(const std::string& path);
  bool MoveFile(const std::string& source, const std::string& target);
  bool RenameFile(const std::string& path, const std::string& new_path);

 private:
  void NeedFile(const std::string& path, const char* procedure, const char* purpose);
  int DeleteFlags() const;
  int AllFlags() const;

  Shell& shell_;
  FileToolkit& files_;
};

}  // namespace quorvale
