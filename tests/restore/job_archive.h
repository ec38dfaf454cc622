// Archives made by hand, byte by byte, and the mail user of a computer: what the tests of the
// restore engine and of its pages share.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "support/test_machine.h"

namespace quorvale::restore_test {

inline constexpr char kIdentity[] = "{AAAAAAAA-0000-1111-2222-BBBBBBBBBBBB}";
inline constexpr char kOtherIdentity[] = "{CCCCCCCC-0000-1111-2222-DDDDDDDDDDDD}";

struct Item {
  std::string path;
  std::string key;
};

// A settings file as a backup writes it, in UTF-8.
inline std::string SettingsText(const std::vector<Item>& items, const std::string& log = "False",
                                const std::string& password = "") {
  std::string text =
      "<?xml version='1.0'?>\r\n<BackupSettings>\r\n<Main Process='Main Backup'>\r\n"
      "<ProcessDesc>Save</ProcessDesc>\r\n<DateTime>7_14_11_2026_22_5</DateTime>\r\n"
      "<BackupFolder>C:\\Backups</BackupFolder>\r\n<ItemsForBackup>\r\n";
  for (const Item& item : items) {
    text += "<OE Key='" + item.key + "' >" + item.path + "\r\n</OE>\r\n";
  }
  text += "</ItemsForBackup>\r\n<AdvancedSettings>\r\n<LogDetails>" + log +
          "</LogDetails>\r\n<UseCompression>True</UseCompression>\r\n"
          "<SelfExtractingBackup>6</SelfExtractingBackup>\r\n<VerifyArchive>" +
          password +
          "</VerifyArchive>\r\n<ProtectWithPassword>False</ProtectWithPassword>\r\n"
          "<BackupSettingsFiles>Job.obk</BackupSettingsFiles>\r\n</AdvancedSettings>\r\n"
          "</Main>\r\n</BackupSettings>\r\n";
  return text;
}

// An archive with stored members, as any tool could have made it. Format: the public description
// of the Zip format, sections 4.3.7, 4.3.12 and 4.3.16. Names are written as they stand.
class RawZip {
 public:
  RawZip& Add(const std::string& name, const std::string& bytes) {
    return AddClaiming(name, bytes, static_cast<std::uint32_t>(bytes.size()));
  }
  // A member whose directory says another size than it has.
  RawZip& AddClaiming(const std::string& name, const std::string& bytes, std::uint32_t size) {
    std::string fields = Number(20, 2) + Number(0x800, 2) + Number(0, 2) + Number(0x6000, 2) +
                         Number(0x3665, 2) + Number(Crc(bytes), 4) +
                         Number(static_cast<std::uint32_t>(bytes.size()), 4) + Number(size, 4) +
                         Number(static_cast<std::uint32_t>(name.size()), 2) + Number(0, 2);
    const std::uint32_t offset = static_cast<std::uint32_t>(body_.size());
    body_ += "PK\x03\x04" + fields + name + bytes;
    directory_ += "PK\x01\x02" + Number(20, 2) + fields + Number(0, 2) + Number(0, 2) +
                  Number(0, 2) + Number(0x20, 4) + Number(offset, 4) + name;
    ++count_;
    return *this;
  }
  std::string Bytes() const {
    return body_ + directory_ + "PK\x05\x06" + Number(0, 4) + Number(count_, 2) +
           Number(count_, 2) + Number(static_cast<std::uint32_t>(directory_.size()), 4) +
           Number(static_cast<std::uint32_t>(body_.size()), 4) + Number(0, 2);
  }

 private:
  static std::uint32_t Crc(const std::string& bytes) {
    return static_cast<std::uint32_t>(
        crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
  }
  static std::string Number(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
    return text;
  }
  std::string body_, directory_;
  std::uint32_t count_ = 0;
};

// The archive of a job named "Job", with "/" between the parts of a name.
class JobArchive {
 public:
  JobArchive& Item(const std::string& path, const std::string& key) {
    items_.push_back({path, key});
    return *this;
  }
  // A member below the job's own folder; `name` with backslashes.
  JobArchive& Member(const std::string& name, const std::string& bytes) {
    zip_.Add("Job/" + ReplaceAll(name, "\\", "/"), bytes);
    return *this;
  }
  // An item with the member that holds it.
  JobArchive& With(const std::string& path, const std::string& key, const std::string& member,
                   const std::string& bytes) {
    return Item(path, key).Member(member, bytes);
  }
  JobArchive& Log(const std::string& word) {
    log_ = word;
    return *this;
  }
  RawZip& zip() { return zip_; }
  const std::vector<restore_test::Item>& items() const { return items_; }
  // Writes it to a path of the computer; the settings file is encoded for it.
  std::string Write(TestMachine& machine, const std::string& path = "C:\\Backups\\Job.obk") const {
    RawZip zip = zip_;
    const std::string base = WithoutLastFour(FileNameOf(path));
    zip.Add(base + "/" + base + ".xml",
            machine.platform().system.ToAnsi(SettingsText(items_, log_)));
    machine.WriteFile(path, zip.Bytes());
    return path;
  }

 private:
  std::vector<restore_test::Item> items_;
  RawZip zip_;
  std::string log_ = "False";
};

// A registry editor's text with one key and one string.
inline std::string RegText(const std::string& key, const std::string& name,
                           const std::string& value) {
  return "REGEDIT4\r\n\r\n[" + key + "]\r\n\"" + name + "\"=\"" + value + "\"\r\n\r\n";
}

// The present mail user of a computer, with a store folder.
inline void SeedIdentity(TestMachine& machine, const std::string& identity,
                         const std::string& store = "") {
  machine.SetString("HKEY_CURRENT_USER\\Identities", "Default User ID", identity);
  const std::string key =
      "HKEY_CURRENT_USER\\Identities\\" + identity + "\\Software\\Microsoft\\Outlook Express\\5.0";
  machine.MakeKey(key);
  if (!store.empty()) machine.SetString(key, "Store Root", store);
}

inline std::string StoreOf(TestMachine& machine, const std::string& identity) {
  return machine.Profile() + "\\Local Settings\\Application Data\\Identities\\" + identity +
         "\\Microsoft\\Outlook Express";
}

}  // namespace quorvale::restore_test
