// What the writer and the reader of settings files both know of an item's line
// "<OE Key='key' >path".
#pragma once

#include <cstddef>

namespace quorvale::settings_items {

// Which items go under which element, by a text anywhere in the tree path.
struct ItemElement {
  const char* substring;
  const char* element;
};
inline constexpr ItemElement kOutlook{"Microsoft Outlook\\", "MO"};
inline constexpr ItemElement kWindowsMail{"Windows Mail\\", "WM"};
inline constexpr ItemElement kOutlookExpress{"Outlook Express\\", "OE"};
inline constexpr ItemElement kInternetExplorer{"Internet Explorer\\", "IE"};
inline constexpr ItemElement kOtherFiles{"Other Files\\", "OF"};
inline constexpr ItemElement kAddedFolders{"Add Other Folders\\", "AOF"};
inline constexpr ItemElement kAddedFiles{"Add More Files\\", "AMF"};

// What stands between key and path: the blank belongs to the format.
inline constexpr char kAttributeEnd[] = "' >";

// No element name of an item is longer.
inline constexpr size_t kLongestElement = 16;

}  // namespace quorvale::settings_items
