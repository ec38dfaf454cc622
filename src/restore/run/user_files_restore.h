// The user's own files: added files, added folders, the desktop and the documents.
#pragma once

#include <string>

#include "restore/run/restore_tools.h"

namespace quorvale {

// Added files, one by one, until a stop. What belongs on a drive that is gone goes below
// FolderForLeftItems.
void RestoreAddedFiles(const RestoreTools& tools);
// One added file.
void RestoreOtherFiles(const RestoreTools& tools, const RestoreRow& row);
// Added folders, until a stop; likewise.
void OFolder(const RestoreTools& tools);
// The desktop's files and the documents, until a stop; likewise for documents of a system that
// calls their folder by another word.
void OtherFiles(const RestoreTools& tools);

// The path up to and including "Desktop" (the documents folder's word), and the tail behind it.
// "" for a path without that word.
std::string extractDesktopPath(const std::string& path);
std::string restDesktopPath(const std::string& path);
std::string extractPath(const Program& program, const std::string& path);
std::string restPath(const Program& program, const std::string& path);

}  // namespace quorvale
