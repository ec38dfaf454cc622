// Whole small files of the host itself, by host paths.
#pragma once

#include <optional>
#include <string>

namespace quorvale::host {

// Nothing if it cannot be read or is no plain file.
std::optional<std::string> ReadHostFile(const std::string& path);

// Puts new content in a file's place: it is at every moment the whole old or the whole new file,
// also if the power fails. False, and the reason, if the old one stays.
bool ReplaceHostFile(const std::string& path, const std::string& bytes, std::string* error);

}  // namespace quorvale::host
