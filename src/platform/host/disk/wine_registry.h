// The registry of a Wine prefix (user.reg, system.reg): the text that Wine itself keeps, which is
// not the registry editor's.
#pragma once

#include <optional>
#include <string>

#include "platform/host/disk/hive.h"

namespace quorvale::host {

// True for bytes that begin as such a text does.
bool IsWineRegistry(const std::string& bytes);

// The key that all of the text stands below, as its head tells it ("\User\S-1-5-21-0-0-0-1000");
// "" if it does not.
std::string WineRegistryBase(const std::string& bytes);

// The tree of such a text. Lines that cannot be understood are left out and counted in the
// remarks. Nothing, and the reason, for another text.
std::optional<Hive> ReadWineRegistry(const std::string& bytes, const HiveFilter& wanted,
                                     std::string* problem);

}  // namespace quorvale::host
