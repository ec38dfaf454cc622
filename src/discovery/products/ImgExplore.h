// The picture list of the item trees, in its fixed order. A node names its picture by key; the
// pictures themselves are resources of these names.
#pragma once

#include <array>
#include <string_view>

namespace quorvale {

inline constexpr std::array<std::string_view, 37> kImgExplore = {
    "oea",  // Outlook Express root
    "oer",
    "iea",  // Internet Explorer root
    "moa",  // Microsoft Outlook root
    "mor",    "ier",
    "af",  // Other Files root, macro files
    "rf",
    "aa1",  // root for added folders
    "fc",   // closed folder
    "fo",   // open folder
    "msn",  // MSN account
    "non",  // plain mail account
    "ab",   // address book
    "ob",   // outbox
    "se",   // sent items
    "de",   // deleted items
    "mf",   // other mail folders
    "dr",   // drafts
    "ib",   // inbox
    "bs",   // blocked senders
    "mr",   // message rule
    "st",   // stationery
    "sg",   // signature
    "set",  // settings
    "ac",     "co",
    "reg",  // registry key
    "new",  // news or directory account
    "id",   // identity
    "dc",   // dictionary
    "stat",
    "of",  // offline folder, added folder
    "otherf",
    "ab1",  // root for added files
    "dc1",  // added file
    "WM",   // Windows Mail root
};

}  // namespace quorvale
