#include "platform/host/stored_attributes.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/host/dos_attributes.h"
#include "platform/host/host_file.h"
#include "platform/host/open_files.h"

namespace quorvale::host {
namespace {

using namespace file_attribute;  // NOLINT: the attribute bits, used throughout

class HostExtendedAttribute : public ExtendedAttribute {
 public:
  std::optional<std::uint32_t> Get(const std::string& host) const override {
    return DosAttributesOf(host);
  }
  bool Set(const std::string& host, std::uint32_t attributes) const override {
    char text[16];
    const int length = std::snprintf(text, sizeof(text), "0x%x", attributes);
    return setxattr(host.c_str(), kDosAttributeName, text, static_cast<std::size_t>(length), 0) ==
           0;
  }
  bool Remove(const std::string& host) const override {
    return removexattr(host.c_str(), kDosAttributeName) == 0 || errno == ENODATA;
  }
};

// What a file or folder has that nothing is stored of.
std::uint32_t UsualBits(bool is_folder) { return is_folder ? 0 : kArchive; }

// The text of kAttributesFile: a line for each name.
std::string FileText(const FolderListing& listing) {
  std::string text;
  for (const auto& [entry, bits] : listing.attributes) {
    char number[16];
    std::snprintf(number, sizeof(number), "0x%x", bits);
    text += std::string(number) + " " + entry + "\n";
  }
  return text;
}

}  // namespace

StoredAttributes::StoredAttributes(FolderCache& cache, std::unique_ptr<ExtendedAttribute> extended)
    : cache_(cache), extended_(std::move(extended)) {
  if (extended_ == nullptr) extended_ = std::make_unique<HostExtendedAttribute>();
}

std::optional<std::uint32_t> StoredAttributes::InFile(const std::string& parent,
                                                      const std::string& name) {
  const FolderListing* listing = cache_.Known(parent);
  if (listing == nullptr) listing = cache_.Listing(parent);
  if (listing == nullptr || listing->attributes.empty()) return std::nullopt;
  const auto found = listing->attributes.find(name);
  if (found == listing->attributes.end()) return std::nullopt;
  return found->second;
}

std::uint32_t StoredAttributes::Read(const Place& place, const struct stat& info) {
  const bool is_folder = S_ISDIR(info.st_mode);
  const std::optional<std::uint32_t> extended = extended_->Get(place.host);
  std::optional<std::uint32_t> stored = extended;
  if (!stored && !place.parent.empty()) stored = InFile(place.parent, place.name);
  const std::uint32_t attributes = stored.value_or(UsualBits(is_folder)) & kSettableAttributes;
  if (is_folder) return attributes | kFolder;
  // A disk of another computer keeps a file's read-only bit where it belongs; its mount says
  // nothing. Here the host's own right to write is the truth.
  if (place.drive != nullptr && place.drive->read_only && extended) return attributes;
  return (info.st_mode & S_IWUSR) == 0 ? attributes | kReadOnly : attributes & ~kReadOnly;
}

FileStatus StoredAttributes::Store(const Place& place, std::uint32_t attributes, bool is_folder) {
  struct stat info {};
  if (stat(place.host.c_str(), &info) != 0) return StatusOf(errno);
  const mode_t writable = info.st_mode | S_IWUSR;
  // A file that cannot be written takes no attribute either.
  if (!is_folder && info.st_mode != writable && chmod(place.host.c_str(), writable & 07777) != 0) {
    return StatusOf(errno);
  }
  const FileStatus status =
      StoreBits(place, is_folder ? attributes : attributes & ~kReadOnly, is_folder);
  if (!is_folder && (attributes & kReadOnly) != 0) {
    const mode_t read_only = writable & ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH);
    if (chmod(place.host.c_str(), read_only & 07777) != 0) return StatusOf(errno);
  }
  return status;
}

FileStatus StoredAttributes::StoreBits(const Place& place, std::uint32_t bits, bool is_folder) {
  const bool usual = bits == UsualBits(is_folder);
  const bool kept = usual ? extended_->Remove(place.host) : extended_->Set(place.host, bits);
  std::optional<std::uint32_t> in_file;
  if (!kept && !usual) in_file = bits;
  if (!place.parent.empty()) return StoreInFile(place.parent, place.name, in_file);
  return in_file ? FileStatus::kFailed : FileStatus::kOk;
}

FileStatus StoredAttributes::StoreInFile(const std::string& parent, const std::string& name,
                                         std::optional<std::uint32_t> attributes) {
  FolderListing* listing = cache_.Listing(parent);
  if (listing == nullptr) return FileStatus::kFailed;
  if (!attributes && listing->attributes.erase(name) == 0) return FileStatus::kOk;
  // A line holds one name.
  if (attributes && name.find('\n') != std::string::npos) return FileStatus::kFailed;
  if (attributes) listing->attributes[name] = *attributes;

  const std::string path = JoinHostPath(parent, kAttributesFile);
  std::string error;
  const bool done = listing->attributes.empty() ? unlink(path.c_str()) == 0
                                                : ReplaceHostFile(path, FileText(*listing), &error);
  // The listing was changed by hand: it is read anew when it is needed.
  cache_.Forget(parent);
  return done ? FileStatus::kOk : FileStatus::kFailed;
}

}  // namespace quorvale::host
