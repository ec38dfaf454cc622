// Operations on path texts. Nothing here looks at a disk.
#pragma once

#include <string>

namespace quorvale {

// The text behind the last "\"; the whole text if there is none.
std::string FileNameOf(const std::string& path);
// The text before the last "\"; "" if there is none. `C:\x` gives `C:`.
std::string ParentFolder(const std::string& path);
// The path with one "\" at its end.
std::string WithBackslash(const std::string& path);
// The path without one "\" at its end.
std::string WithoutBackslash(const std::string& path);
// A leading "\\" is kept; every "\\" behind it becomes "\".
std::string CollapseBackslashes(const std::string& path);
// The text without its last four characters (an extension such as ".obk"); "" if it is shorter.
std::string WithoutLastFour(const std::string& name);
// The name with a number before its extension: "mail.pst" and 2 give "mail_2.pst". The folders of a
// path are left alone.
std::string NumberedName(const std::string& path, int number);
// True for "\\server\share...".
bool IsNetworkPath(const std::string& path);
// True for "\\server\share", also with "\" at its end: it is there or not, nobody makes it.
bool IsShareRoot(const std::string& path);
// The folder that a person means by a typed text: blanks at both ends go, "/" counts as "\", and no
// name is empty, ".", "..", or ends in a dot or a blank, as the system would read it. A text
// without a drive means a folder of `drive` ("C:"). Only a drive's root ends in "\"; "" stays "".
std::string TypedFolder(const std::string& text, const std::string& drive);
// What free space is asked for: the whole text of a network path, else its first two characters.
std::string DriveOf(const std::string& path);

}  // namespace quorvale
