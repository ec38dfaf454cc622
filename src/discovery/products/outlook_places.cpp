#include "discovery/products/outlook_places.h"

namespace quorvale {
namespace {

// Where the dictionaries of a version lie, below the Microsoft folder.
std::string ProofFolder(const std::string& version) {
  for (const char* older :
       {"Outlook.Application.9", "Outlook.Application.10", "Outlook.Application.11"}) {
    if (version == older) return "\\Proof";
  }
  return version == "Outlook.Application.12" ? "\\UProof" : "";
}

}  // namespace

std::string OutlookGroupFolder(std::string_view caption, const std::string& profile,
                               const std::string& version) {
  if (caption == "Offline folders" || caption == "Personal Address Book") {
    return profile + kOutlookLocalFolder;
  }
  if (caption == "Signatures") return profile + kMicrosoftRoamingFolder + "\\Signatures";
  if (caption == "Dictionary") return profile + kMicrosoftRoamingFolder + ProofFolder(version);
  if (caption == "Adult-Junk Senders" || caption == "Macros and VBA programs" ||
      caption == "Setting Files") {
    return profile + kOutlookRoamingFolder;
  }
  return "";
}

}  // namespace quorvale
