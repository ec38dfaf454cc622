#include "platform/windows/registry_store.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/registry.h"
#include "platform/windows/system_info.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr char kKey[] = "Software\\QuorvaleTest\\Store";
constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

class RegistryStoreTest : public testing::Test {
 protected:
  void SetUp() override { Clean(); }
  void TearDown() override { Clean(); }
  // From the lowest key up: the oldest systems delete whole trees, the others empty keys only.
  static void Clean() {
    for (const char* key :
         {"Software\\QuorvaleTest\\Store\\One", "Software\\QuorvaleTest\\Store\\Two",
          "Software\\QuorvaleTest\\Store", "Software\\QuorvaleTest"}) {
      RegDeleteKeyA(HKEY_CURRENT_USER, key);
    }
  }
  WindowsRegistryStore store_;
};

TEST_F(RegistryStoreTest, MissingKeyIsToldAsNotFound) {
  EXPECT_FALSE(store_.KeyExists(kUser, kKey));
  RegistryValue value;
  EXPECT_EQ(store_.QueryValue(kUser, kKey, "x", &value), registry_status::kNotFound);
  std::vector<std::string> names = {"kept"};
  EXPECT_EQ(store_.ListSubkeys(kUser, kKey, &names), registry_status::kNotFound);
  EXPECT_EQ(names, std::vector<std::string>{"kept"});
}

TEST_F(RegistryStoreTest, CreatedKeyExistsWithItsParents) {
  EXPECT_EQ(store_.CreateKey(kUser, "\\Software\\\\QuorvaleTest\\Store\\"), registry_status::kOk);
  EXPECT_TRUE(store_.KeyExists(kUser, kKey));
  EXPECT_TRUE(store_.KeyExists(kUser, "SOFTWARE\\quorvaletest"));
  EXPECT_EQ(store_.CreateKey(kUser, kKey), registry_status::kOk);
}

TEST_F(RegistryStoreTest, ValuesKeepTypeAndBytes) {
  ASSERT_EQ(store_.CreateKey(kUser, kKey), registry_status::kOk);
  const std::string binary("\0\xFF\x01", 3);
  EXPECT_EQ(store_.SetValue(kUser, kKey, "bytes", registry_type::kBinary, binary),
            registry_status::kOk);
  EXPECT_EQ(store_.SetValue(kUser, kKey, "", registry_type::kString, std::string("text\0", 5)),
            registry_status::kOk);
  RegistryValue value;
  ASSERT_EQ(store_.QueryValue(kUser, kKey, "BYTES", &value), registry_status::kOk);
  EXPECT_EQ(value.type, registry_type::kBinary);
  EXPECT_EQ(value.data, binary);
  ASSERT_EQ(store_.QueryValue(kUser, kKey, "", &value), registry_status::kOk);
  EXPECT_EQ(value.data, std::string("text\0", 5));
}

// Keys, names and texts that no code page of the tests holds.
TEST_F(RegistryStoreTest, NamesAndTextsOutsideTheCodePageAreKeptWhereTheSystemHasUnicode) {
  if (!HasUnicode()) GTEST_SKIP() << "a system without Unicode";
  const std::string text = "D:\\写真\\Почта";
  const std::string key = std::string(kKey) + "\\One\\日本 Я";
  ASSERT_EQ(store_.CreateKey(kUser, key), registry_status::kOk);
  std::vector<std::string> names;
  ASSERT_EQ(store_.ListSubkeys(kUser, std::string(kKey) + "\\One", &names), registry_status::kOk);
  EXPECT_EQ(names, std::vector<std::string>{"日本 Я"});
  ASSERT_EQ(store_.SetText(kUser, key, "имя 名", registry_type::kString, text),
            registry_status::kOk);
  std::string read;
  ASSERT_EQ(store_.QueryText(kUser, key, "ИМЯ 名", &read), registry_status::kOk);
  EXPECT_EQ(read, text);
  RegistryValue value;
  ASSERT_EQ(store_.QueryValue(kUser, key, "имя 名", &value), registry_status::kOk);
  EXPECT_EQ(value.data, Ansi(text) + '\0');
  std::vector<RegistryValue> values;
  ASSERT_EQ(store_.ListValues(kUser, key, &values), registry_status::kOk);
  ASSERT_EQ(values.size(), 1u);
  EXPECT_EQ(values[0].name, "имя 名");
  EXPECT_EQ(values[0].data, Ansi(text) + '\0');
  EXPECT_EQ(store_.DeleteValue(kUser, key, "имя 名"), registry_status::kOk);
  EXPECT_EQ(store_.QueryText(kUser, key, "имя 名", &read), registry_status::kNotFound);
  RegDeleteKeyW(HKEY_CURRENT_USER, Wide(key).c_str());
}

TEST_F(RegistryStoreTest, OnlyATextIsReadInFull) {
  ASSERT_EQ(store_.CreateKey(kUser, kKey), registry_status::kOk);
  ASSERT_EQ(store_.SetValue(kUser, kKey, "b", registry_type::kBinary, "text"),
            registry_status::kOk);
  std::string read;
  EXPECT_EQ(store_.QueryText(kUser, kKey, "b", &read), registry_status::kNotFound);
}

TEST_F(RegistryStoreTest, LongValueIsReadWhole) {
  ASSERT_EQ(store_.CreateKey(kUser, kKey), registry_status::kOk);
  const std::string data(20000, 'x');
  ASSERT_EQ(store_.SetValue(kUser, kKey, "long", registry_type::kBinary, data),
            registry_status::kOk);
  RegistryValue value;
  ASSERT_EQ(store_.QueryValue(kUser, kKey, "long", &value), registry_status::kOk);
  EXPECT_EQ(value.data, data);
  std::vector<RegistryValue> values;
  ASSERT_EQ(store_.ListValues(kUser, kKey, &values), registry_status::kOk);
  ASSERT_EQ(values.size(), 1u);
  EXPECT_EQ(values[0].data, data);
}

TEST_F(RegistryStoreTest, ListsSubkeysAndValues) {
  for (const char* name : {"One", "Two"}) {
    ASSERT_EQ(store_.CreateKey(kUser, std::string(kKey) + "\\" + name), registry_status::kOk);
  }
  std::vector<std::string> names;
  ASSERT_EQ(store_.ListSubkeys(kUser, kKey, &names), registry_status::kOk);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"One", "Two"}));

  ASSERT_EQ(store_.SetValue(kUser, kKey, "b", registry_type::kDword, std::string("\2\1\0\0", 4)),
            registry_status::kOk);
  std::vector<RegistryValue> values;
  ASSERT_EQ(store_.ListValues(kUser, kKey, &values), registry_status::kOk);
  ASSERT_EQ(values.size(), 1u);
  EXPECT_EQ(values[0].name, "b");
  EXPECT_EQ(values[0].type, registry_type::kDword);
}

TEST_F(RegistryStoreTest, DeletedValueIsGone) {
  ASSERT_EQ(store_.CreateKey(kUser, kKey), registry_status::kOk);
  ASSERT_EQ(store_.SetValue(kUser, kKey, "x", registry_type::kString, "1"), registry_status::kOk);
  EXPECT_EQ(store_.DeleteValue(kUser, kKey, "x"), registry_status::kOk);
  RegistryValue value;
  EXPECT_EQ(store_.QueryValue(kUser, kKey, "x", &value), registry_status::kNotFound);
}

TEST_F(RegistryStoreTest, ReaderOfTextsWorksOnTheRealRegistry) {
  ASSERT_EQ(store_.CreateKey(kUser, kKey), registry_status::kOk);
  ASSERT_EQ(
      store_.SetValue(kUser, kKey, "number", registry_type::kDword, std::string("\2\1\0\0", 4)),
      registry_status::kOk);
  WindowsSystemInfo system;
  Registry registry(store_, system);
  EXPECT_EQ(registry.RegGetValue(kUser, kKey, "number"), "18");
  EXPECT_TRUE(registry.RegSetValue(kUser, kKey, "text", "words"));
  EXPECT_EQ(registry.RegGetValue(kUser, kKey, "text"), "words");
}

}  // namespace
}  // namespace quorvale::windows
