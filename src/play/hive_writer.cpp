#include "play/hive_writer.h"

#include <hivex.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <vector>

#include "base/text.h"

namespace quorvale {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::uint32_t kNowhere = 0xFFFFFFFF;
// Places in the one page behind the header.
constexpr std::size_t kRootKey = 32, kRootKeyBytes = 88, kRootName = 76;
constexpr std::size_t kSecurity = kRootKey + kRootKeyBytes, kSecurityBytes = 48;
constexpr std::size_t kFree = kSecurity + kSecurityBytes;

void Put(std::string* bytes, std::size_t at, std::uint32_t number, std::size_t count = 4) {
  for (std::size_t i = 0; i < count; ++i) {
    (*bytes)[at + i] = static_cast<char>(number >> (8 * i) & 0xFF);
  }
}

std::uint32_t NumberAt(const std::string& bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i > 0; --i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return number;
}

std::string Header() {
  std::string header(kPage, '\0');
  header.replace(0, 4, "regf");
  Put(&header, 4, 1);  // the two numbers of a hive that was closed are equal
  Put(&header, 8, 1);
  Put(&header, 16, 0x01C9A0F2);  // high half of the last write, in the spring of 2009
  Put(&header, 20, 1);           // version 1.3
  Put(&header, 24, 3);
  Put(&header, 32, 1);
  Put(&header, 36, kRootKey);
  Put(&header, 40, kPage);
  Put(&header, 44, 1);
  std::uint32_t checksum = 0;
  for (std::size_t at = 0; at < 508; at += 4) checksum ^= NumberAt(header, at);
  Put(&header, 508, checksum);
  return header;
}

// A block in use has its size below zero.
void PutSize(std::string* page, std::size_t at, std::size_t size) {
  Put(page, at, 0u - static_cast<std::uint32_t>(size));
}

std::string FirstPage() {
  std::string page(kPage, '\0');
  page.replace(0, 4, "hbin");
  Put(&page, 8, kPage);
  PutSize(&page, kRootKey, kRootKeyBytes);
  page.replace(kRootKey + 4, 2, "nk");
  Put(&page, kRootKey + 6, 0x2C, 2);  // the root, not to be deleted, its name in single bytes
  for (const std::size_t list : {20u, 32u, 36u, 44u, 52u}) Put(&page, kRootKey + list, kNowhere);
  Put(&page, kRootKey + 48, kSecurity);
  Put(&page, kRootKey + 76, 4, 2);
  page.replace(kRootKey + kRootName + 4, 4, "ROOT");
  PutSize(&page, kSecurity, kSecurityBytes);
  page.replace(kSecurity + 4, 2, "sk");
  Put(&page, kSecurity + 8, kSecurity);  // alone in the ring of its kind
  Put(&page, kSecurity + 12, kSecurity);
  Put(&page, kSecurity + 16, 1);
  Put(&page, kSecurity + 20, 20);
  Put(&page, kSecurity + 24, 0x80000001);  // a descriptor that names nobody
  Put(&page, kFree, static_cast<std::uint32_t>(kPage - kFree));
  return page;
}

bool AddValues(hive_h* hive, hive_node_h node, const host::HiveKey& key) {
  if (key.values.empty()) return true;
  std::vector<hive_set_value> values;
  std::vector<host::HiveValue> copies = key.values;  // the call takes no constant texts
  for (host::HiveValue& value : copies) {
    values.push_back({value.name.data(), static_cast<hive_type>(value.type), value.data.size(),
                      value.data.data()});
  }
  return hivex_node_set_values(hive, node, values.size(), values.data(), 0) == 0;
}

bool AddKeys(hive_h* hive, hive_node_h node, const host::HiveKey& key) {
  if (!AddValues(hive, node, key)) return false;
  for (const host::HiveKey& sub : key.subkeys) {
    const hive_node_h child = hivex_node_add_child(hive, node, sub.name.c_str());
    if (child == 0 || !AddKeys(hive, child, sub)) return false;
  }
  return true;
}

}  // namespace

std::string EmptyNtHive() { return Header() + FirstPage(); }

std::string WriteNtHive(const std::string& host_path, const host::HiveKey& root) {
  std::ofstream file(host_path, std::ios::binary);
  file << EmptyNtHive();
  file.close();
  if (!file.good()) return host_path + " cannot be written.";
  hive_h* hive = hivex_open(host_path.c_str(), HIVEX_OPEN_WRITE);
  if (hive == nullptr) return host_path + ": " + std::strerror(errno) + ".";
  const bool written = AddKeys(hive, hivex_root(hive), root) && hivex_commit(hive, nullptr, 0) == 0;
  const int reason = errno;
  hivex_close(hive);
  return written ? "" : host_path + ": " + std::strerror(reason) + ".";
}

}  // namespace quorvale
