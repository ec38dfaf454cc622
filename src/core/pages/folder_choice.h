// Whether a folder that the user has chosen may hold backups or restored data.
#pragma once

#include <string>

#include "core/pages/application.h"

namespace quorvale {

enum class FolderRefusal { kNone, kRecycleBin, kNotFixed, kProgramFiles, kNotWritable };

// Tries to write in the folder, if nothing else stands against it.
FolderRefusal WhyRefused(Program& program, const std::string& folder);

// How a page ends what it says about a folder.
enum class SentenceEnd { kNone, kFullStop };

// False, after a message, if the folder may not be used.
bool FolderMayBeUsed(Application& app, const std::string& folder,
                     SentenceEnd end = SentenceEnd::kNone);

}  // namespace quorvale
