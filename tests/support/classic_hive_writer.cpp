#include "support/classic_hive_writer.h"

namespace quorvale::test {
namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr std::size_t kHeadBytes = 32;
constexpr std::size_t kPage = 4096;

void Put(std::string* bytes, std::uint32_t number, int count) {
  for (int i = 0; i < count; ++i) bytes->push_back(static_cast<char>(number >> (8 * i) & 0xFF));
}

void PutAt(std::string* bytes, std::size_t at, std::uint32_t number) {
  for (std::size_t i = 0; i < 4; ++i) {
    (*bytes)[at + i] = static_cast<char>(number >> (8 * i) & 0xFF);
  }
}

// The tree of keys ("RGKN") with their places, and the names and values ("RGDB").
class Writer {
 public:
  // Returns the place of the key in the tree.
  std::uint32_t Add(const ClassicKey& key, std::uint32_t parent) {
    const auto at = static_cast<std::uint32_t>(kHeadBytes + tree_.size());
    const std::size_t record = tree_.size();
    for (std::uint32_t number : {0u, 0u, kNone, parent, kNone, kNone}) Put(&tree_, number, 4);
    Put(&tree_, next_id_, 2);
    Put(&tree_, 0, 2);
    AddData(key);
    std::size_t link = record + 16;  // the parent's first child, then each one's next
    for (const ClassicKey& sub : key.subkeys) {
      const std::uint32_t child = Add(sub, at);
      PutAt(&tree_, link, child);
      link = child - kHeadBytes + 20;
    }
    return at;
  }

  std::string Bytes() const {
    std::string head = "CREG";
    // As the system does it, the tree is filled up; a reader may count on free space behind it.
    std::string tree = tree_;
    tree.resize((tree_.size() / kPage + 2) * kPage - 2 * kHeadBytes, '\0');
    const auto data_at = static_cast<std::uint32_t>(kHeadBytes * 2 + tree.size());
    for (std::uint32_t number : {0x00010000u, data_at, 0u}) Put(&head, number, 4);
    Put(&head, 1, 2);
    head.resize(kHeadBytes, '\0');
    std::string keys = "RGKN";
    const auto tree_end = static_cast<std::uint32_t>(kHeadBytes + tree.size());
    for (std::uint32_t number : {tree_end, std::uint32_t{kHeadBytes}, kNone}) Put(&keys, number, 4);
    keys.resize(kHeadBytes, '\0');
    std::string data = "RGDB";
    const auto data_end = static_cast<std::uint32_t>(kHeadBytes + data_.size());
    Put(&data, data_end, 4);
    Put(&data, 0, 4);
    Put(&data, 0, 4);
    Put(&data, data_end, 4);
    Put(&data, next_id_, 2);
    Put(&data, next_id_ == 0 ? 0u : next_id_ - 1u, 2);
    data.resize(kHeadBytes, '\0');
    return head + keys + tree + data + data_;
  }

 private:
  void AddData(const ClassicKey& key) {
    std::string body;
    Put(&body, static_cast<std::uint32_t>(key.name.size()), 2);
    Put(&body, static_cast<std::uint32_t>(key.values.size()), 2);
    Put(&body, 0, 4);
    body += key.name;
    for (const ClassicKey::Value& value : key.values) {
      Put(&body, value.type, 4);
      Put(&body, 0, 4);
      Put(&body, static_cast<std::uint32_t>(value.name.size()), 2);
      Put(&body, static_cast<std::uint32_t>(value.data.size()), 2);
      body += value.name + value.data;
    }
    const auto size = static_cast<std::uint32_t>(12 + body.size());
    Put(&data_, size, 4);
    Put(&data_, next_id_++, 2);
    Put(&data_, 0, 2);
    Put(&data_, size, 4);
    data_ += body;
  }

  std::string tree_, data_;
  std::uint16_t next_id_ = 0;
};

}  // namespace

std::string ClassicHiveBytes(const ClassicKey& root) {
  Writer writer;
  writer.Add(root, kNone);
  return writer.Bytes();
}

}  // namespace quorvale::test
