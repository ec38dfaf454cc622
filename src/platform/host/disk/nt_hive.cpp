#include "platform/host/disk/nt_hive.h"

#include <hivex.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>

#include "platform/host/disk/memory_file.h"

namespace quorvale::host {
namespace {

// Places of the hive's header.
constexpr std::size_t kHeaderBytes = 4096;
constexpr std::size_t kFirstSequence = 4, kSecondSequence = 8, kWritten = 12, kBlocks = 40;
constexpr std::size_t kChecksum = 508;

std::uint32_t NumberAt(const std::string& bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i > 0; --i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return number;
}

void PutNumber(std::string* bytes, std::size_t at, std::uint32_t number) {
  for (std::size_t i = 0; i < 4; ++i) {
    (*bytes)[at + i] = static_cast<char>(number >> (8 * i) & 0xFF);
  }
}

std::uint32_t HeaderChecksum(const std::string& bytes) {
  std::uint32_t sum = 0;
  for (std::size_t at = 0; at < kChecksum; at += 4) sum ^= NumberAt(bytes, at);
  return sum;
}

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

class Handle {
 public:
  explicit Handle(const std::string& path) : hive_(hivex_open(path.c_str(), HIVEX_OPEN_UNSAFE)) {}
  ~Handle() {
    if (hive_ != nullptr) hivex_close(hive_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  hive_h* get() const { return hive_; }

 private:
  hive_h* hive_;
};

class Reader {
 public:
  Reader(hive_h* hive, std::size_t file_bytes, const HiveFilter& wanted)
      : hive_(hive), bytes_left_(4 * file_bytes + (1u << 20)), wanted_(wanted) {}

  // Reads the key of a node and what is below it. Each node is taken once, so that a tree that
  // runs in circles, or into itself, comes to an end.
  void ReadKey(hive_node_h node, const std::string& path, int depth, HiveKey* key) {
    seen_.insert(node);
    ReadValues(node, key);
    const Owned<hive_node_h> children(hivex_node_children(hive_, node));
    if (!children) {
      ++lost_keys_;
      return;
    }
    for (const hive_node_h* child = children.get(); *child != 0; ++child) {
      ReadSubkey(*child, path, depth, key);
    }
  }

  std::size_t lost_keys() const { return lost_keys_; }
  std::size_t lost_values() const { return lost_values_; }

 private:
  void ReadSubkey(hive_node_h node, const std::string& path, int depth, HiveKey* parent) {
    const Owned<char> name(hivex_node_name(hive_, node));
    if (!name || !IsHiveKeyName(name.get()) || depth >= HiveBounds::kDepth ||
        seen_.size() >= HiveBounds::kKeys || seen_.count(node) != 0) {
      ++lost_keys_;
      return;
    }
    const std::string child_path = path.empty() ? name.get() : path + "\\" + name.get();
    if (wanted_ && !wanted_(child_path)) return;
    parent->subkeys.emplace_back();
    HiveKey& child = parent->subkeys.back();
    child.name = name.get();
    ReadKey(node, child_path, depth + 1, &child);
  }

  void ReadValues(hive_node_h node, HiveKey* key) {
    const Owned<hive_value_h> values(hivex_node_values(hive_, node));
    if (!values) {
      ++lost_values_;
      return;
    }
    for (const hive_value_h* value = values.get(); *value != 0; ++value) {
      if (!ReadValue(*value, key)) ++lost_values_;
    }
  }

  bool ReadValue(hive_value_h value, HiveKey* key) {
    const Owned<char> name(hivex_value_key(hive_, value));
    if (!name || std::strlen(name.get()) > HiveBounds::kNameBytes) return false;
    hive_type type = hive_t_none;
    std::size_t length = 0;
    const Owned<char> data(hivex_value_value(hive_, value, &type, &length));
    const std::size_t cost = length + std::strlen(name.get()) + 1;
    if (!data || cost > bytes_left_) return false;
    bytes_left_ -= cost;
    // The library hands on whatever number the hive has, also one that is no enumerator.
    std::uint32_t number = 0;
    static_assert(sizeof(number) == sizeof(type));
    std::memcpy(&number, &type, sizeof(number));
    key->values.push_back({name.get(), number, std::string(data.get(), length)});
    return true;
  }

  hive_h* const hive_;
  std::size_t bytes_left_;  // many values of a forged hive may share one place
  const HiveFilter& wanted_;
  std::set<hive_node_h> seen_;
  std::size_t lost_keys_ = 0;
  std::size_t lost_values_ = 0;
};

// Makes a header valid whose checksum is not, and tells what is not in order.
void Mend(std::string* bytes, std::vector<std::string>* remarks) {
  if (NumberAt(*bytes, kFirstSequence) != NumberAt(*bytes, kSecondSequence)) {
    remarks->push_back("it was not closed: changes that stand only in its log are missing");
  }
  if (NumberAt(*bytes, kBlocks) > bytes->size() - kHeaderBytes) {
    remarks->push_back("it is cut short");
  }
  const std::uint32_t checksum = HeaderChecksum(*bytes);
  if (checksum == NumberAt(*bytes, kChecksum)) return;
  remarks->push_back("its header is damaged");
  PutNumber(bytes, kChecksum, checksum);
}

}  // namespace

bool IsNtHive(const std::string& bytes) {
  return bytes.size() >= kHeaderBytes && bytes.compare(0, 4, "regf") == 0;
}

std::int64_t NtHiveWritten(const std::string& bytes) {
  if (!IsNtHive(bytes)) return 0;
  const std::uint64_t high = NumberAt(bytes, kWritten + 4);
  return static_cast<std::int64_t>(high << 32 | NumberAt(bytes, kWritten));
}

std::optional<Hive> ReadNtHive(const std::string& bytes, const HiveFilter& wanted,
                               std::string* problem) {
  if (!IsNtHive(bytes)) {
    *problem = "it is no hive";
    return std::nullopt;
  }
  Hive hive;
  std::string mended = bytes;
  Mend(&mended, &hive.remarks);
  const MemoryFile file(mended);
  const Handle handle(file.path());
  const hive_node_h root = handle.get() == nullptr ? 0 : hivex_root(handle.get());
  if (root == 0) {
    *problem = std::string("it cannot be read: ") + std::strerror(errno);
    return std::nullopt;
  }
  Reader reader(handle.get(), bytes.size(), wanted);
  reader.ReadKey(root, "", 0, &hive.root);
  if (reader.lost_keys() + reader.lost_values() > 0) {
    hive.remarks.push_back(std::to_string(reader.lost_keys()) + " keys and " +
                           std::to_string(reader.lost_values()) +
                           " values of it could not be read");
  }
  return hive;
}

}  // namespace quorvale::host
