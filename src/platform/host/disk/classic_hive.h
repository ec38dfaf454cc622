// The hives of Windows 95, 98 and ME (USER.DAT, SYSTEM.DAT). A reader of our own: the library that
// reads them (libcreg) hangs on hives that are forged.
//
// A hive is a head, the tree of its keys ("RGKN") and blocks of their names and values ("RGDB").
// All numbers are little-endian; places in the tree count from its "RGKN".
#pragma once

#include <optional>
#include <string>

#include "platform/host/code_page.h"
#include "platform/host/disk/hive.h"

namespace quorvale::host {

// True for bytes that begin as such a hive does.
bool IsClassicHive(const std::string& bytes);

// The tree of a hive's bytes; its texts are in `code_page`. What cannot be read is left out and
// told in the remarks. Nothing, and the reason, if there is no tree to be read.
std::optional<Hive> ReadClassicHive(const std::string& bytes, const CodePage& code_page,
                                    const HiveFilter& wanted, std::string* problem);

}  // namespace quorvale::host
