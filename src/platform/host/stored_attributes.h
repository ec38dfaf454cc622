// Where the attributes of a machine's files lie on the host: the read-only one of a file in its own
// right to write, the others as an extended attribute, or in a file beside it (kAttributesFile)
// where the host's file system has none.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/files.h"
#include "platform/host/folder_cache.h"
#include "platform/host/path_walk.h"

namespace quorvale::host {

// The attributes that can be set.
inline constexpr std::uint32_t kSettableAttributes =
    file_attribute::kReadOnly | file_attribute::kHidden | file_attribute::kSystem |
    file_attribute::kArchive;

// The one extended attribute that is used, by host path.
class ExtendedAttribute {
 public:
  virtual ~ExtendedAttribute() = default;
  // Nothing if there is none.
  virtual std::optional<std::uint32_t> Get(const std::string& host) const = 0;
  // False if the file system keeps none.
  virtual bool Set(const std::string& host, std::uint32_t attributes) const = 0;
  // True if there is none afterwards.
  virtual bool Remove(const std::string& host) const = 0;
};

class StoredAttributes {
 public:
  // `cache` must live as long as this object. `extended`: null for the host's own.
  StoredAttributes(FolderCache& cache, std::unique_ptr<ExtendedAttribute> extended);

  // The attributes of what stands at a place, with the folder bit; `info` is the host's view of it.
  std::uint32_t Read(const Place& place, const struct stat& info);
  // Sets those of kSettableAttributes.
  FileStatus Store(const Place& place, std::uint32_t attributes, bool is_folder);

  // What kAttributesFile says of a name, as its folder was listed last.
  std::optional<std::uint32_t> InFile(const std::string& parent, const std::string& name);
  // Writes it; nothing: the name goes out of the file.
  FileStatus StoreInFile(const std::string& parent, const std::string& name,
                         std::optional<std::uint32_t> attributes);

 private:
  // All but a file's read-only bit.
  FileStatus StoreBits(const Place& place, std::uint32_t bits, bool is_folder);

  FolderCache& cache_;
  std::unique_ptr<ExtendedAttribute> extended_;
};

}  // namespace quorvale::host
