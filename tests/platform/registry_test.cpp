#include "platform/registry.h"

#include <gtest/gtest.h>

#include "support/faulty_platform.h"
#include "support/memory_platform.h"

namespace quorvale {
namespace {

using namespace std::string_literals;

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;
constexpr char kKey[] = "Software\\Tarnwick";

class RegistryTest : public testing::Test {
 protected:
  RegistryTest() { store_.CreateKey(kUser, kKey); }
  void Store(const std::string& name, std::uint32_t type, const std::string& data) {
    ASSERT_EQ(registry_status::kOk, store_.SetValue(kUser, kKey, name, type, data));
  }
  RegistryValue Stored(const std::string& name) {
    RegistryValue value;
    EXPECT_EQ(registry_status::kOk, store_.QueryValue(kUser, kKey, name, &value));
    return value;
  }
  std::string Get(const std::string& name) { return registry_.RegGetValue(kUser, kKey, name); }
  std::string GetTyped(const std::string& name) { return registry_.RegGetTyped(kUser, kKey, name); }

  MemoryRegistry store_;
  MemorySystem system_;
  CallCount calls_;
  FaultyRegistry faulty_store_{store_, calls_};
  Registry registry_{faulty_store_, system_};
};

TEST_F(RegistryTest, StringLosesItsNul) {
  Store("a", registry_type::kString, "C:\\Mail\0"s);
  EXPECT_EQ("C:\\Mail", Get("a"));
  EXPECT_EQ("C:\\Mail", GetTyped("a"));
}

TEST_F(RegistryTest, StringIsReadFromTheCodePage) {
  Store("a", registry_type::kString, "M\xFCller\0"s);
  EXPECT_EQ("M\u00FCller", Get("a"));
  EXPECT_EQ("M\u00FCller", GetTyped("a"));
}

TEST_F(RegistryTest, EmptyStringReadsAsNothing) {
  Store("a", registry_type::kString, "\0"s);
  EXPECT_EQ("", Get("a"));
  EXPECT_EQ("", GetTyped("a"));
}

TEST_F(RegistryTest, MissingAndEmptyValuesLookTheSame) {
  Store("empty", registry_type::kString, "\0"s);
  EXPECT_EQ(Get("empty"), Get("missing"));
  EXPECT_EQ("", registry_.RegGetValue(kUser, "No\\Such\\Key", "a"));
}

TEST_F(RegistryTest, SmallNumbersReadTheSameBothWays) {
  Store("zero", registry_type::kDword, "\0\0\0\0"s);
  Store("one", registry_type::kDword, "\1\0\0\0"s);
  EXPECT_EQ("0", Get("zero"));
  EXPECT_EQ("1", Get("one"));
  EXPECT_EQ("0", GetTyped("zero"));
  EXPECT_EQ("1", GetTyped("one"));
}

TEST_F(RegistryTest, Number258ReadsAs18ByTheReaderOfSmallFlags) {
  Store("n", registry_type::kDword, "\2\1\0\0"s);
  EXPECT_EQ("18", Get("n"));
  EXPECT_EQ("258", GetTyped("n"));
}

TEST_F(RegistryTest, BytesFromSixteenOnTakeTwoDigits) {
  Store("n", registry_type::kDword, "\x78\x56\x34\x12"s);
  EXPECT_EQ("305419896", Get("n"));
  EXPECT_EQ("305419896", GetTyped("n"));
}

TEST_F(RegistryTest, TypedNumbersAreSigned) {
  Store("n", registry_type::kDword, "\xFF\xFF\xFF\xFF"s);
  EXPECT_EQ("-1", GetTyped("n"));
}

TEST_F(RegistryTest, BinaryComesAsItsBytesLessOneNul) {
  Store("b", registry_type::kBinary, "\1\xFF\0\2\0"s);
  EXPECT_EQ("\1\xFF\0\2"s, Get("b"));
  EXPECT_EQ("\1\xFF\0\2\0"s, GetTyped("b"));
}

TEST_F(RegistryTest, ExpandableTextIsReadByOneReaderOnly) {
  Store("e", registry_type::kExpandString, "%windir%\\x\0"s);
  EXPECT_EQ("%windir%\\x", Get("e"));
  EXPECT_EQ("", GetTyped("e"));
}

TEST_F(RegistryTest, OtherTypesReadAsNothing) {
  Store("m", registry_type::kMultiString, "a\0b\0\0"s);
  EXPECT_EQ("", Get("m"));
  EXPECT_EQ("", GetTyped("m"));
}

TEST_F(RegistryTest, TypedReadOfNothingTellsAnError) {
  Store("hollow", registry_type::kString, "");
  EXPECT_EQ("Error: Key or Value Not Found.", GetTyped("hollow"));
  EXPECT_EQ("Error: Key or Value Not Found.", GetTyped("missing"));
  EXPECT_EQ("Error: Key or Value Not Found.", registry_.RegGetTyped(kUser, "No\\Key", "a"));
}

TEST_F(RegistryTest, ValueOver1024BytesReadsAsNothing) {
  Store("fits", registry_type::kString, std::string(1023, 'x') + '\0');
  Store("long", registry_type::kString, std::string(1024, 'x') + '\0');
  EXPECT_EQ(std::string(1023, 'x'), Get("fits"));
  EXPECT_EQ("", Get("long"));
}

TEST_F(RegistryTest, WritingANumberTextKeepsTheNumberType) {
  Store("n", registry_type::kDword, "\1\0\0\0"s);
  EXPECT_TRUE(registry_.RegSetValue(kUser, kKey, "n", "258"));
  EXPECT_EQ(registry_type::kDword, Stored("n").type);
  EXPECT_EQ("\2\1\0\0"s, Stored("n").data);
  EXPECT_TRUE(registry_.RegSetValue(kUser, kKey, "n", "no number"));
  EXPECT_EQ("\0\0\0\0"s, Stored("n").data);
  EXPECT_TRUE(registry_.RegSetValue(kUser, kKey, "n", "1e300"));
  EXPECT_EQ("\0\0\0\0"s, Stored("n").data);
}

TEST_F(RegistryTest, WritingToAMissingValueMakesAString) {
  EXPECT_TRUE(registry_.RegSetValue(kUser, kKey, "n", "42"));
  EXPECT_EQ(registry_type::kString, Stored("n").type);
  EXPECT_EQ("42", Get("n"));
}

TEST_F(RegistryTest, WritingKeepsTheTypeOfTextAndBytes) {
  Store("e", registry_type::kExpandString, "x\0"s);
  Store("b", registry_type::kBinary, "\1"s);
  EXPECT_TRUE(registry_.RegSetValue(kUser, kKey, "e", "M\u00FCller"));
  EXPECT_TRUE(registry_.RegSetValue(kUser, kKey, "b", "\xFF\0\x80"s));
  EXPECT_EQ(registry_type::kExpandString, Stored("e").type);
  EXPECT_EQ("M\xFCller", Stored("e").data);
  EXPECT_EQ(registry_type::kBinary, Stored("b").type);
  EXPECT_EQ("\xFF\0\x80"s, Stored("b").data);
}

TEST_F(RegistryTest, WritingNeverMakesAKey) {
  EXPECT_FALSE(registry_.RegSetValue(kUser, "No\\Such\\Key", "n", "42"));
  EXPECT_FALSE(store_.KeyExists(kUser, "No\\Such\\Key"));
  registry_.RegMakeKey(kUser, "No\\Such\\Key");
  EXPECT_TRUE(registry_.RegSetValue(kUser, "No\\Such\\Key", "n", "42"));
}

TEST_F(RegistryTest, WritingOverAValueThatDoesNotFitFails) {
  Store("long", registry_type::kString, std::string(1025, 'x'));
  EXPECT_FALSE(registry_.RegSetValue(kUser, kKey, "long", "y"));
  EXPECT_EQ(1025u, Stored("long").data.size());
}

TEST_F(RegistryTest, RefusedStoreMakesNothing) {
  faulty_store_.SetRefusing(true);
  EXPECT_FALSE(registry_.RegSetValue(kUser, kKey, "n", "42"));
  EXPECT_FALSE(registry_.SaveRegString(kUser, "New", "n", "42"));
  EXPECT_EQ("", Get("n"));
}

TEST_F(RegistryTest, KilledValueIsGone) {
  Store("a", registry_type::kString, "x\0"s);
  registry_.RegKillValue(kUser, kKey, "A");
  EXPECT_EQ("", Get("a"));
  registry_.RegKillValue(kUser, "No\\Such\\Key", "a");
}

TEST_F(RegistryTest, SaveRegStringMakesTheKey) {
  EXPECT_TRUE(registry_.SaveRegString(kUser, "Software\\New\\", "n", "M\u00FCller"));
  EXPECT_EQ("M\u00FCller", registry_.RegGetValue(kUser, "Software\\New", "n"));
}

TEST_F(RegistryTest, ListTellsEachTypeInItsForm) {
  Store("", registry_type::kString, "default\0"s);
  Store("n", registry_type::kDword, "\2\1\0\0"s);
  Store("b", registry_type::kBinary, "\1\0\2"s);
  Store("m", registry_type::kMultiString, "a\0\0"s);
  const std::vector<NamedValue> rows = registry_.RegListValues(kUser, kKey);
  ASSERT_EQ(4u, rows.size());
  EXPECT_EQ("", rows[0].name);
  EXPECT_EQ("default", rows[0].value);
  EXPECT_EQ("n", rows[1].name);
  EXPECT_EQ("258", rows[1].value);
  EXPECT_EQ("\1\0\2"s, rows[2].value);
  EXPECT_EQ("a\0\0"s, rows[3].value);
}

TEST_F(RegistryTest, ListEndsAtTheFirstValueThatDoesNotFit) {
  Store("a", registry_type::kBinary, std::string(4096, 'x'));
  Store("b", registry_type::kBinary, std::string(4097, 'x'));
  Store("c", registry_type::kString, "y\0"s);
  const std::vector<NamedValue> rows = registry_.RegListValues(kUser, kKey);
  ASSERT_EQ(1u, rows.size());
  EXPECT_EQ("a", rows[0].name);
  EXPECT_TRUE(registry_.RegListValues(kUser, "No\\Such\\Key").empty());
}

TEST_F(RegistryTest, CountsDirectSubkeysOnly) {
  store_.CreateKey(kUser, "Profiles");
  EXPECT_EQ(0, registry_.RegCountSubkeys(kUser, "Profiles"));
  store_.CreateKey(kUser, "Profiles\\Outlook");
  store_.CreateKey(kUser, "Profiles\\Second");
  store_.CreateKey(kUser, "Profiles\\Second\\Below");
  EXPECT_EQ(2, registry_.RegCountSubkeys(kUser, "Profiles"));
  EXPECT_EQ(0, registry_.RegCountSubkeys(kUser, "No\\Such\\Key"));
}

}  // namespace
}  // namespace quorvale
