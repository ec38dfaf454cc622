// Text files of the program that are in the system's code page, and what that cannot hold.
//
// Such a file keeps its form: a character outside the code page is "?" in it. Where that loses
// something, the whole text stands beside it in UTF-8, in the folder "Full text" of the file's own
// folder and under its name. It counts only while it is the text of that very file: one that an
// older program wrote over the file, or that was left behind, is passed over.
#pragma once

#include <optional>
#include <string>

#include "core/program/program.h"

namespace quorvale {

// Where the whole text of a file stands, if it stands anywhere.
std::string FullTextPath(const std::string& path);
// Writes both; each is afterwards the whole old or the whole new one. A full text that is not
// needed is gone. The status is the file's own, or else that of its full text.
FileStatus WriteTextFile(Program& program, const std::string& path, const std::string& text);
// The text in UTF-8. Nothing if the file cannot be read.
std::optional<std::string> ReadTextFile(Program& program, const std::string& path);
// The same where the file's bytes are known already.
std::string FullTextOf(Program& program, const std::string& path, const std::string& bytes);
// Removes both; `force` removes read-only ones too. The status is the file's own.
FileStatus RemoveTextFile(Program& program, const std::string& path, bool force);

}  // namespace quorvale
