// What an FTP server's reply lines say (RFC 959, section 4.2).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvale {

// The number of a reply's last line ("226 Transfer complete."); 0 for any other line, such as
// "226-More follows".
int FtpReplyCode(std::string_view line);

// True for the numbers that say "done".
inline bool IsFtpSuccess(int code) { return code >= 200 && code < 300; }

// The lines of a text, without their ends; an empty last line does not count.
std::vector<std::string> FtpReplyLines(std::string_view text);

// The folder that the answer to PWD names between quotes (257 "/a ""b"" c"); "" if there is none.
std::string FtpFolderOfReply(std::string_view line);

// True if a text can be part of a command line: not empty, and without control characters, which
// would end the command and begin another.
bool IsFtpArgument(std::string_view text);

}  // namespace quorvale
