#include "platform/APIFile.h"

#include "base/paths.h"
#include "base/text.h"

namespace quorvale {

void APIFile::NeedFile(const std::string& path, const char* procedure, const char* purpose) {
  if (files_.FileExists(path)) return;
  RunTimeError error;
  error.number = kFileToOperateOnIsMissing;
  error.source = "FileOperations::CopyFile";
  error.description = std::string("APIFileOperations.") + procedure +
                      " cannot execute because the file to be " + purpose + " (" + path +
                      ") cannot be found.";
  throw RaisedError(error);
}

int APIFile::DeleteFlags() const {
  int flags = 0;
  if (NoConfirm) flags |= file_operation_flag::kNoConfirmation;
  if (Silent) flags |= file_operation_flag::kSilent;
  if (SimpleProgress) flags |= file_operation_flag::kSimpleProgress;
  return flags;
}

int APIFile::AllFlags() const {
  int flags = DeleteFlags();
  if (RenameOnCollision) flags |= file_operation_flag::kRenameOnCollision;
  if (NoConfirmMakeDir) flags |= file_operation_flag::kNoConfirmMakeDir;
  return flags;
}

bool APIFile::CopyFile(const std::string& source, const std::string& target) {
  NeedFile(source, "CopyFile", "copied");
  if (EqualsNoCase(source, target)) return true;
  if (!files_.FileExists(target)) {
    return shell_.Operate(FileOperation::kCopy, source, target, AllFlags());
  }
  const std::string aside = files_.FreshName(target);
  if (files_.files().Replace(target, aside) != FileStatus::kOk) return false;
  const bool copied =
      shell_.Operate(FileOperation::kCopy, source, target, AllFlags()) && files_.FileExists(target);
  if (copied) {
    DeleteFile(aside);
  } else {
    files_.files().Replace(aside, target);
  }
  return copied;
}

bool APIFile::DeleteFile(const std::string& path) {
  NeedFile(path, "DeleteFile", "deleted");
  return shell_.Operate(FileOperation::kDelete, path, "", DeleteFlags());
}

bool APIFile::MoveFile(const std::string& source, const std::string& target) {
  return shell_.Operate(FileOperation::kMove, source, target, AllFlags());
}

bool APIFile::RenameFile(const std::string& path, const std::string& new_path) {
  NeedFile(path, "CopyFile", "renamed");
  return shell_.Operate(FileOperation::kRename, path, new_path, AllFlags());
}

}  // namespace quorvale
