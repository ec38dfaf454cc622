#include "platform/host/disk/classic_hive.h"

#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "base/text.h"

namespace quorvale::host {
namespace {

constexpr std::size_t kHeadBytes = 32;  // of the file, of the tree and of each block
constexpr std::size_t kKeyBytes = 28;   // of a key in the tree
constexpr std::size_t kDataBytes = 20;  // of a key's data before its name
constexpr std::size_t kValueBytes = 12;
constexpr std::uint32_t kNowhere = 0xFFFFFFFF;

bool IsTextType(std::uint32_t type) {
  return type == registry_type::kString || type == registry_type::kExpandString ||
         type == registry_type::kMultiString;
}

// A number of two or four bytes, which stand there.
std::uint32_t NumberAt(std::string_view bytes, std::size_t at, std::size_t count) {
  std::uint32_t number = 0;
  for (std::size_t i = count; i > 0; --i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return number;
}

// The data of each key, by its block and its number there.
using DataIndex = std::map<std::pair<std::uint32_t, std::uint32_t>, std::string_view>;

void IndexBlock(std::string_view block, std::uint32_t block_number, DataIndex* index) {
  std::size_t at = kHeadBytes;
  while (at + kDataBytes <= block.size()) {
    const std::uint32_t size = NumberAt(block, at, 4);
    if (size < kDataBytes || size > block.size() - at) return;
    index->emplace(std::pair(block_number, NumberAt(block, at + 4, 2)), block.substr(at, size));
    at += size;
  }
}

DataIndex IndexData(std::string_view bytes) {
  DataIndex index;
  std::size_t at = NumberAt(bytes, 8, 4);
  std::uint32_t number = 0;
  while (at < bytes.size() && bytes.size() - at >= kHeadBytes && bytes.substr(at, 4) == "RGDB") {
    // A block that is cut short is taken as far as it goes.
    const std::string_view block = bytes.substr(at, NumberAt(bytes, at + 4, 4));
    if (block.size() < kHeadBytes) break;
    IndexBlock(block, number++, &index);
    at += block.size();
  }
  return index;
}

class Reader {
 public:
  Reader(std::string_view bytes, const CodePage& code_page, const HiveFilter& wanted)
      : tree_(bytes.substr(kHeadBytes)),
        data_(IndexData(bytes)),
        code_page_(code_page),
        wanted_(wanted) {}

  // The root has no data of its own.
  void ReadRoot(HiveKey* root) {
    const std::uint32_t at = NumberAt(tree_, 8, 4);
    if (!Take(at)) return;
    const std::string_view data = DataOf(at);
    if (!data.empty()) ReadValues(data, root);
    ReadSubkeys(at, "", 0, root);
  }
  std::size_t lost() const { return lost_; }

 private:
  // Each key is taken once, so that a tree that runs in circles comes to an end.
  bool Take(std::uint32_t at) {
    const bool inside = at >= kHeadBytes && at <= tree_.size() && tree_.size() - at >= kKeyBytes;
    if (inside && seen_.size() < HiveBounds::kKeys && seen_.insert(at).second) return true;
    ++lost_;
    return false;
  }

  std::string_view DataOf(std::uint32_t at) const {
    const auto found =
        data_.find(std::pair(NumberAt(tree_, at + 26, 2), NumberAt(tree_, at + 24, 2)));
    return found == data_.end() ? std::string_view() : found->second;
  }

  void ReadSubkeys(std::uint32_t parent, const std::string& path, int depth, HiveKey* result) {
    constexpr std::size_t kFirstChild = 16, kNext = 20;
    std::uint32_t at = NumberAt(tree_, parent + kFirstChild, 4);
    while (at != kNowhere && at != 0 && Take(at)) {
      if (depth >= HiveBounds::kDepth || !ReadKey(at, path, depth, result)) ++lost_;
      at = NumberAt(tree_, at + kNext, 4);
    }
  }

  bool ReadKey(std::uint32_t at, const std::string& path, int depth, HiveKey* parent) {
    const std::string_view data = DataOf(at);
    if (data.empty()) return false;
    const std::size_t length = NumberAt(data, 12, 2);
    if (length > data.size() - kDataBytes) return false;
    const std::string name = Text(data.substr(kDataBytes, length));
    if (!IsHiveKeyName(name)) return false;
    const std::string key_path = path.empty() ? name : path + "\\" + name;
    if (wanted_ && !wanted_(key_path)) return true;
    parent->subkeys.emplace_back();
    HiveKey& key = parent->subkeys.back();
    key.name = name;
    if (used_data_.insert(data.data()).second) {
      ReadValues(data, &key);
    } else {
      ++lost_;  // two keys cannot share one place
    }
    ReadSubkeys(at, key_path, depth + 1, &key);
    return true;
  }

  void ReadValues(std::string_view data, HiveKey* key) {
    std::size_t at = kDataBytes + NumberAt(data, 12, 2);
    for (std::uint32_t left = NumberAt(data, 14, 2); left > 0; --left) {
      if (at > data.size() || data.size() - at < kValueBytes) {
        lost_ += left;
        return;
      }
      const std::size_t name = NumberAt(data, at + 8, 2), size = NumberAt(data, at + 10, 2);
      if (name + size > data.size() - at - kValueBytes) {
        lost_ += left;
        return;
      }
      HiveValue value;
      value.type = NumberAt(data, at, 4);
      value.name = Text(data.substr(at + kValueBytes, name));
      const std::string_view bytes = data.substr(at + kValueBytes + name, size);
      value.data = IsTextType(value.type) ? UnicodeText(bytes) : std::string(bytes);
      key->values.push_back(std::move(value));
      at += kValueBytes + name + size;
    }
  }

  std::string Text(std::string_view bytes) const {
    return code_page_.ToUtf8(std::string(bytes.substr(0, bytes.find('\0'))));
  }

  // These systems keep texts without their final NUL.
  std::string UnicodeText(std::string_view bytes) const {
    std::string units = Utf8ToUtf16Bytes(code_page_.ToUtf8(std::string(bytes)));
    if (bytes.empty() || bytes.back() != '\0') units.append(2, '\0');
    return units;
  }

  const std::string_view tree_;
  const DataIndex data_;
  const CodePage& code_page_;
  const HiveFilter& wanted_;
  std::set<std::uint32_t> seen_;
  std::set<const char*> used_data_;
  std::size_t lost_ = 0;
};

}  // namespace

bool IsClassicHive(const std::string& bytes) {
  return bytes.size() >= 2 * kHeadBytes && bytes.compare(0, 4, "CREG") == 0 &&
         bytes.compare(kHeadBytes, 4, "RGKN") == 0;
}

std::optional<Hive> ReadClassicHive(const std::string& bytes, const CodePage& code_page,
                                    const HiveFilter& wanted, std::string* problem) {
  if (!IsClassicHive(bytes)) {
    *problem = "it is no hive of Windows 95, 98 or ME";
    return std::nullopt;
  }
  Hive hive;
  Reader reader(bytes, code_page, wanted);
  reader.ReadRoot(&hive.root);
  if (reader.lost() > 0) {
    hive.remarks.push_back(std::to_string(reader.lost()) +
                           " keys and values of it could not be read");
  }
  return hive;
}

}  // namespace quorvale::host
