#include "platform/host/registry_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/text.h"
#include "machine_fixture.h"
#include "platform/registry.h"

namespace quorvale::host {
namespace {

using namespace std::string_literals;

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;
constexpr char kUserFile[] = "registry/HKEY_CURRENT_USER.reg";

class HostRegistryStoreTest : public MachineTest {
 protected:
  HostRegistryStore& store() { return platform_->registry(); }
  void Flush() {
    std::string error;
    ASSERT_TRUE(platform_->Flush(&error)) << error;
  }
  RegistryValue Value(const std::string& subkey, const std::string& name) {
    RegistryValue value;
    EXPECT_EQ(registry_status::kOk, store().QueryValue(kUser, subkey, name, &value)) << name;
    return value;
  }
  void Set(const std::string& subkey, const std::string& name, std::uint32_t type,
           const std::string& data) {
    ASSERT_EQ(registry_status::kOk, store().CreateKey(kUser, subkey));
    ASSERT_EQ(registry_status::kOk, store().SetValue(kUser, subkey, name, type, data));
  }
  std::vector<std::string> Subkeys(const std::string& subkey) {
    std::vector<std::string> names;
    EXPECT_EQ(registry_status::kOk, store().ListSubkeys(kUser, subkey, &names));
    return names;
  }
};

TEST_F(HostRegistryStoreTest, KeysAreMatchedWithoutRegardToCase) {
  EXPECT_EQ(registry_status::kOk, store().CreateKey(kUser, "Software\\M\u00DCLLER\\X"));
  EXPECT_TRUE(store().KeyExists(kUser, "software\\m\u00FCller\\x"));
  EXPECT_TRUE(store().KeyExists(kUser, "\\Software\\\\M\u00FCller\\X\\"));
  EXPECT_TRUE(store().KeyExists(kUser, ""));
  EXPECT_FALSE(store().KeyExists(kUser, "Software\\X"));
  EXPECT_FALSE(store().KeyExists(RegistryRoot::kLocalMachine, "Software"));
}

TEST_F(HostRegistryStoreTest, NamesKeepTheCaseTheyWereMadeWith) {
  store().CreateKey(kUser, "Software\\Two");
  store().CreateKey(kUser, "SOFTWARE\\TWO\\Three");
  EXPECT_EQ(std::vector<std::string>{"Software"}, Subkeys(""));
  Set("Software", "Name", registry_type::kString, "a\0"s);
  Set("Software", "NAME", registry_type::kString, "b\0"s);
  EXPECT_EQ("Name", Value("Software", "name").name);
  EXPECT_EQ("b\0"s, Value("Software", "name").data);
}

TEST_F(HostRegistryStoreTest, SubkeysAreSortedAndValuesInTheOrderOfTheirMaking) {
  for (const char* name : {"b", "_c", "A", "{1}"}) {
    store().CreateKey(kUser, "K\\" + std::string(name));
    Set("K", name, registry_type::kString, "\0"s);
  }
  EXPECT_EQ((std::vector<std::string>{"A", "b", "_c", "{1}"}), Subkeys("K"));
  std::vector<RegistryValue> values;
  EXPECT_EQ(registry_status::kOk, store().ListValues(kUser, "K", &values));
  ASSERT_EQ(4u, values.size());
  EXPECT_EQ("b", values[0].name);
  EXPECT_EQ("_c", values[1].name);
  EXPECT_EQ("{1}", values[3].name);
}

TEST_F(HostRegistryStoreTest, MissingKeysAndValuesAreNotFound) {
  RegistryValue value;
  std::vector<std::string> names{"untouched"};
  std::vector<RegistryValue> values;
  EXPECT_EQ(registry_status::kNotFound, store().QueryValue(kUser, "None", "", &value));
  EXPECT_EQ(registry_status::kNotFound, store().QueryValue(kUser, "", "none", &value));
  EXPECT_EQ(registry_status::kNotFound, store().SetValue(kUser, "None", "a", 1, ""));
  EXPECT_EQ(registry_status::kNotFound, store().DeleteValue(kUser, "", "none"));
  EXPECT_EQ(registry_status::kNotFound, store().ListSubkeys(kUser, "None", &names));
  EXPECT_EQ(registry_status::kNotFound, store().ListValues(kUser, "None", &values));
  EXPECT_EQ(registry_status::kNotFound, store().DeleteKey(kUser, "None"));
  EXPECT_EQ(registry_status::kNotFound, store().DeleteKey(kUser, ""));
  EXPECT_EQ(std::vector<std::string>{"untouched"}, names);
}

TEST_F(HostRegistryStoreTest, TextSpeaksTheCodePage) {
  Set("K", "a", registry_type::kString, "M\xFCller\0"s);
  Set("K", "m", registry_type::kMultiString, "\xFC\0b\0\0"s);
  Set("K", "b", registry_type::kBinary, "\xFC\0\xFF"s);
  EXPECT_EQ("M\xFCller\0"s, Value("K", "a").data);
  EXPECT_EQ("\xFC\0b\0\0"s, Value("K", "m").data);
  EXPECT_EQ("\xFC\0\xFF"s, Value("K", "b").data);
}

TEST_F(HostRegistryStoreTest, ForgottenNulIsAdded) {
  Set("K", "a", registry_type::kString, "abc");
  Set("K", "b", registry_type::kBinary, "abc");
  Set("K", "hollow", registry_type::kString, "");
  EXPECT_EQ("abc\0"s, Value("K", "a").data);
  EXPECT_EQ("abc", Value("K", "b").data);
  EXPECT_EQ("", Value("K", "hollow").data);
}

TEST_F(HostRegistryStoreTest, DeletedKeyTakesAllBelowWithIt) {
  store().CreateKey(kUser, "K\\A\\B");
  store().CreateKey(kUser, "K\\C");
  EXPECT_EQ(registry_status::kOk, store().DeleteKey(kUser, "k\\a"));
  EXPECT_FALSE(store().KeyExists(kUser, "K\\A\\B"));
  EXPECT_EQ(std::vector<std::string>{"C"}, Subkeys("K"));
}

TEST_F(HostRegistryStoreTest, NamesThatNoRegistryHoldsAreRefused) {
  EXPECT_EQ(registry_status::kDenied, store().CreateKey(kUser, "a\nb"));
  EXPECT_EQ(registry_status::kDenied, store().CreateKey(kUser, std::string(256, 'x')));
  EXPECT_EQ(registry_status::kOk, store().CreateKey(kUser, std::string(255, 'x')));
  std::string deep;
  for (int i = 0; i < 600; ++i) deep += "k\\";
  EXPECT_EQ(registry_status::kDenied, store().CreateKey(kUser, deep));
}

TEST_F(HostRegistryStoreTest, UnchangedRegistryIsNotWritten) {
  EXPECT_FALSE(store().HasChanges());
  Flush();
  EXPECT_FALSE(std::filesystem::exists(folder_ / "registry"));
  Set("K", "a", registry_type::kString, "x\0"s);
  Flush();
  Reopen();
  Set("K", "A", registry_type::kString, "x\0"s);  // what stands there already
  EXPECT_EQ(registry_status::kOk, store().CreateKey(kUser, "k"));
  EXPECT_FALSE(store().HasChanges());
}

TEST_F(HostRegistryStoreTest, OnlyTheChangedRootIsWritten) {
  Set("K", "a", registry_type::kString, "x\0"s);
  EXPECT_TRUE(store().HasChanges());
  Flush();
  EXPECT_FALSE(store().HasChanges());
  EXPECT_TRUE(std::filesystem::exists(folder_ / kUserFile));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "registry/HKEY_LOCAL_MACHINE.reg"));
}

TEST_F(HostRegistryStoreTest, NothingIsWrittenWithoutFlush) {
  Set("K", "a", registry_type::kString, "x\0"s);
  platform_.reset();
  EXPECT_FALSE(std::filesystem::exists(folder_ / "registry"));
}

TEST_F(HostRegistryStoreTest, EverythingComesBackAfterFlush) {
  std::string all_bytes;
  for (int i = 0; i < 256; ++i) all_bytes += static_cast<char>(i);
  Set("K", "", registry_type::kString, "d\xFC\"\\\0"s);
  Set("K", "lines\r\n", registry_type::kExpandString, "a\r\nb\0"s);
  Set("K", "multi", registry_type::kMultiString, "a\0b\0\0"s);
  Set("K", "number", registry_type::kDword, "\x02\x01\0\0"s);
  Set("K", "bytes", registry_type::kBinary, all_bytes);
  Set("K", "hollow", registry_type::kString, "");
  Set("K", "none", registry_type::kNone, all_bytes);
  Set("K\\Empty\\[x]", "q", 11, "12345678");
  Flush();
  std::vector<RegistryValue> before;
  store().ListValues(kUser, "K", &before);
  Reopen();
  std::vector<RegistryValue> after;
  store().ListValues(kUser, "K", &after);
  ASSERT_EQ(before.size(), after.size());
  for (size_t i = 0; i < before.size(); ++i) {
    EXPECT_EQ(before[i].name, after[i].name);
    EXPECT_EQ(before[i].type, after[i].type);
    EXPECT_EQ(before[i].data, after[i].data) << before[i].name;
  }
  EXPECT_EQ("12345678", Value("K\\Empty\\[x]", "q").data);
  EXPECT_FALSE(std::filesystem::exists(folder_ / (std::string(kUserFile) + ".new")));
}

TEST_F(HostRegistryStoreTest, WhatIsOutsideTheCodePageIsNotLost) {
  WriteHost(folder_ / kUserFile,
            "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\\u65E5]\n"
            "\"\u0416\"=\"\U0001F600\"\n");
  Reopen();
  EXPECT_EQ("??\0"s.substr(1), Value("\u65E5", "\u0416").data);
  Set("Other", "a", registry_type::kString, "x\0"s);
  Flush();
  const std::string file = ReadHost(folder_ / kUserFile);
  ASSERT_EQ("\xFF\xFE", file.substr(0, 2));
  const std::string text = Utf16BytesToUtf8(file.substr(2));
  EXPECT_TRUE(Contains(text, "[HKEY_CURRENT_USER\\\u65E5]\r\n\"\u0416\"=\"\U0001F600\"\r\n"));
}

TEST_F(HostRegistryStoreTest, HandWrittenTextsOfBothVariants) {
  WriteHost(folder_ / kUserFile,
            "REGEDIT4\n\n[HKEY_CURRENT_USER\\K]\n\"a\"=\"M\xFCller\"\n\"b\"=\"x\"\n\"b\"=-\n"
            "[HKEY_CURRENT_USER\\Gone\\Below]\n[-HKEY_CURRENT_USER\\Gone]\n");
  WriteHost(folder_ / "registry/HKEY_LOCAL_MACHINE.reg",
            "Windows Registry Editor Version 5.00\n[HKLM\\Software]\n@=dword:1\n");
  Reopen();
  EXPECT_EQ("M\xFCller\0"s, Value("K", "a").data);
  RegistryValue value;
  EXPECT_EQ(registry_status::kNotFound, store().QueryValue(kUser, "K", "b", &value));
  EXPECT_FALSE(store().KeyExists(kUser, "Gone"));
  EXPECT_EQ(registry_status::kOk,
            store().QueryValue(RegistryRoot::kLocalMachine, "software", "", &value));
  EXPECT_FALSE(store().HasChanges());
}

TEST_F(HostRegistryStoreTest, BrokenTextIsToldByFileAndLineAndLeftAlone) {
  const struct {
    const char* text;
    int line;
  } kBroken[] = {
      {"rubbish", 1},
      {"", 1},
      {"REGEDIT4\n\n[HKEY_CURRENT_USER\\K]\n\"a\"=\n", 4},
      {"REGEDIT4\n[HKEY_CURRENT_USER\\K]\nrubbish\n", 3},
      {"REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"a\"=\"b\"\n", 2},
      {"REGEDIT4\n[HKEY_CURRENT_USER\\K]\n@=hex:01,\\\n", 3},
  };
  for (const auto& broken : kBroken) {
    WriteHost(folder_ / kUserFile, broken.text);
    MachineError error;
    EXPECT_EQ(nullptr, HostPlatform::Open(folder_.path(), &error)) << broken.text;
    EXPECT_EQ(folder_ / kUserFile, error.file);
    EXPECT_EQ(broken.line, error.line) << broken.text;
    EXPECT_NE("", error.message);
    EXPECT_EQ(broken.text, ReadHost(folder_ / kUserFile));
  }
}

TEST_F(HostRegistryStoreTest, ATextOutsideTheCodePageIsKeptInFull) {
  const std::string text = "D:\\\u5199\u771F\\\u041F\u043E\u0447\u0442\u0430";
  store().CreateKey(kUser, "Software");
  ASSERT_EQ(registry_status::kOk,
            store().SetText(kUser, "Software", "Store", registry_type::kExpandString, text));
  std::string read;
  ASSERT_EQ(registry_status::kOk, store().QueryText(kUser, "Software", "store", &read));
  EXPECT_EQ(text, read);
  // Who asks for bytes gets what the code page holds.
  EXPECT_EQ("D:\\?\?\\?\?\?\?\?\0"s, Value("Software", "Store").data);
  Flush();
  ASSERT_EQ(registry_status::kOk, store().QueryText(kUser, "Software", "Store", &read));
  EXPECT_EQ(text, read);
  Registry registry(store(), platform_->system());
  EXPECT_EQ(text, registry.RegGetValue(kUser, "Software", "Store"));
  EXPECT_TRUE(registry.SaveRegText(kUser, "Software\\New", "Store", text));
  EXPECT_EQ(text, registry.RegGetTyped(kUser, "Software\\New", "Store"));
  // A string keeps what it can.
  EXPECT_TRUE(registry.SaveRegString(kUser, "Software", "Store", text));
  EXPECT_EQ("D:\\?\?\\?\?\?\?\?", registry.RegGetValue(kUser, "Software", "Store"));
}

TEST_F(HostRegistryStoreTest, OnlyATextIsReadInFull) {
  Set("Software", "b", registry_type::kBinary, "text");
  std::string read;
  EXPECT_EQ(registry_status::kNotFound, store().QueryText(kUser, "Software", "b", &read));
  EXPECT_EQ(registry_status::kNotFound, store().QueryText(kUser, "Software", "none", &read));
  EXPECT_EQ(registry_status::kNotFound,
            store().SetText(kUser, "None", "b", registry_type::kString, "text"));
}

TEST_F(HostRegistryStoreTest, FailedWriteLeavesTheOldFile) {
  Set("K", "a", registry_type::kString, "old\0"s);
  Flush();
  const std::string old = ReadHost(folder_ / kUserFile);
  Set("K", "a", registry_type::kString, "new\0"s);
  // A folder stands where the new text would be written.
  std::filesystem::create_directories(folder_ / (std::string(kUserFile) + ".new"));
  std::string error;
  EXPECT_FALSE(platform_->Flush(&error));
  EXPECT_TRUE(Contains(error, kUserFile));
  EXPECT_EQ(old, ReadHost(folder_ / kUserFile));
  EXPECT_TRUE(store().HasChanges());
}

TEST_F(HostRegistryStoreTest, ManyValuesInOneKeyAreQuick) {
  store().CreateKey(kUser, "K");
  for (int i = 0; i < 50000; ++i) {
    store().SetValue(kUser, "K", "value " + std::to_string(i), registry_type::kString, "x\0"s);
  }
  std::vector<RegistryValue> values;
  store().ListValues(kUser, "K", &values);
  ASSERT_EQ(50000u, values.size());
  EXPECT_EQ("value 49999", values.back().name);
}

TEST_F(HostRegistryStoreTest, TextSetWithoutNulReadsWholeByBothReaders) {
  Registry registry(store(), platform_->system());
  registry.RegMakeKey(kUser, "K");
  EXPECT_TRUE(registry.RegSetValue(kUser, "K", "path", "C:\\Back"));
  EXPECT_EQ("C:\\Back", registry.RegGetValue(kUser, "K", "path"));
  EXPECT_EQ("C:\\Back", registry.RegGetTyped(kUser, "K", "path"));
  EXPECT_TRUE(registry.RegSetValue(kUser, "K", "path", ""));
  EXPECT_EQ("", registry.RegGetValue(kUser, "K", "path"));
}

}  // namespace
}  // namespace quorvale::host
