// The attributes that Windows gave a file, as the file systems and servers of the host keep them
// beside it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quorvale::host {

// The extended attribute in which this program and file servers keep them.
inline constexpr char kDosAttributeName[] = "user.DOSATTRIB";

// What the value of that attribute says: a number as text ("0x22"), or one of the layouts of a
// newer server. Nothing for other bytes.
std::optional<std::uint32_t> ParseDosAttribute(const std::string& bytes);

// The attributes of a host file: of an NTFS that is mounted here, else of kDosAttributeName.
// Nothing if neither is there.
std::optional<std::uint32_t> DosAttributesOf(const std::string& host_path);

}  // namespace quorvale::host
