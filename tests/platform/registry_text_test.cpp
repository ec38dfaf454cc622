#include "platform/registry_text.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "support/memory_platform.h"

namespace quorvale {
namespace {

using namespace std::string_literals;
using Kind = RegistryStatement::Kind;

constexpr char kVersion5[] = "Windows Registry Editor Version 5.00\r\n\r\n";
constexpr char kVersion4[] = "REGEDIT4\r\n\r\n";

std::string Ansi(const std::string& utf8) { return MemorySystem().ToAnsi(utf8); }
std::string Utf8(const std::string& ansi) { return MemorySystem().FromAnsi(ansi); }
// A text as the registry stores it.
std::string Unicode(const std::string& utf8) { return Utf8ToUtf16Bytes(utf8) + "\0\0"s; }
// A text as a file of the newer variant.
std::string Utf16File(const std::string& utf8) { return "\xFF\xFE" + Utf8ToUtf16Bytes(utf8); }

struct Parsed {
  bool known = false;
  std::vector<RegistryStatement> statements;
  std::vector<RegistryTextError> errors;
};

Parsed Read(const std::string& bytes) {
  Parsed parsed;
  parsed.known = ReadRegistryText(bytes, Utf8, &parsed.statements, &parsed.errors);
  return parsed;
}

// The only value below the only key.
RegistryStatement OneValue(const std::string& header, const std::string& line) {
  const Parsed parsed = Read(header + "[HKEY_CURRENT_USER\\K]\r\n" + line + "\r\n");
  EXPECT_TRUE(parsed.errors.empty()) << parsed.errors[0].message;
  if (parsed.statements.size() != 2) {
    ADD_FAILURE() << parsed.statements.size() << " statements";
    return {};
  }
  EXPECT_EQ("HKEY_CURRENT_USER\\K", parsed.statements[1].key);
  return parsed.statements[1];
}

// The line of the only error; no value was taken.
int OnlyErrorLine(const std::string& lines) {
  const Parsed parsed = Read(kVersion5 + "[HKEY_CURRENT_USER\\K]\r\n"s + lines);
  EXPECT_EQ(1u, parsed.statements.size());
  return parsed.errors.size() == 1 ? parsed.errors[0].line : -1;
}

RegistryStatement Key(const std::string& key) {
  RegistryStatement statement;
  statement.key = key;
  return statement;
}

RegistryStatement Value(const std::string& name, std::uint32_t type, const std::string& data) {
  RegistryStatement statement;
  statement.kind = Kind::kValue;
  statement.key = "HKEY_CURRENT_USER\\K";
  statement.name = name;
  statement.type = type;
  statement.data = data;
  return statement;
}

TEST(RegistryTextRead, OtherFirstLinesAreRefused) {
  EXPECT_FALSE(Read("").known);
  EXPECT_FALSE(Read("REGEDIT\r\n").known);
  EXPECT_FALSE(Read("REGEDIT5\r\n").known);
  EXPECT_FALSE(Read("\r\nREGEDIT4\r\n").known);
  EXPECT_FALSE(Read("\xFF\xFE").known);
  EXPECT_FALSE(Read("PK\3\4").known);
  EXPECT_TRUE(Read("REGEDIT4").known);
  EXPECT_TRUE(Read("REGEDIT4 \r\n").known);
}

TEST(RegistryTextRead, OlderVariantIsInTheCodePage) {
  const RegistryStatement value = OneValue(kVersion4, "\"N\xE4me\"=\"M\xFCller\"");
  EXPECT_EQ("N\u00E4me", value.name);
  EXPECT_EQ(registry_type::kString, value.type);
  EXPECT_EQ(Unicode("M\u00FCller"), value.data);
}

TEST(RegistryTextRead, NewerVariantIsUtf16) {
  const Parsed parsed =
      Read(Utf16File(kVersion5 + "[HKEY_CURRENT_USER\\\u0416]\r\n\"\u65E5\"=\"\U0001F600\"\r\n"s));
  ASSERT_EQ(2u, parsed.statements.size());
  EXPECT_EQ("HKEY_CURRENT_USER\\\u0416", parsed.statements[0].key);
  EXPECT_EQ("\u65E5", parsed.statements[1].name);
  EXPECT_EQ(Unicode("\U0001F600"), parsed.statements[1].data);
}

TEST(RegistryTextRead, NewerVariantTypedByHandIsUtf8OrTheCodePage) {
  EXPECT_EQ(Unicode("\u65E5"), OneValue(kVersion5, "@=\"\u65E5\"").data);
  EXPECT_EQ(Unicode("\u65E5"), OneValue("\xEF\xBB\xBF"s + kVersion5, "@=\"\u65E5\"").data);
  EXPECT_EQ(Unicode("M\u00FCller"), OneValue(kVersion5, "@=\"M\xFCller\"").data);
}

TEST(RegistryTextRead, LineEndsMayBePlain) {
  const Parsed parsed = Read("REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\A]\n\"n\"=dword:1\n@=\"d\"");
  ASSERT_EQ(3u, parsed.statements.size());
  EXPECT_TRUE(parsed.errors.empty());
  EXPECT_EQ(3, parsed.statements[0].line);
  EXPECT_EQ(4, parsed.statements[1].line);
  EXPECT_EQ(5, parsed.statements[2].line);
}

TEST(RegistryTextRead, DefaultValue) {
  const RegistryStatement value = OneValue(kVersion5, "@=\"x\"");
  EXPECT_EQ("", value.name);
  EXPECT_EQ(Kind::kValue, value.kind);
}

TEST(RegistryTextRead, EscapesInNamesAndTexts) {
  const RegistryStatement value = OneValue(kVersion5, R"("a\\b \"c\" = d"="C:\\Mail\\\"x\"")");
  EXPECT_EQ("a\\b \"c\" = d", value.name);
  EXPECT_EQ(Unicode("C:\\Mail\\\"x\""), value.data);
  EXPECT_EQ(Unicode("a\r\nb"), OneValue(kVersion5, R"(@="a\r\nb")").data);
  EXPECT_EQ(Unicode("\\qx"), OneValue(kVersion5, R"(@="\qx")").data);
}

TEST(RegistryTextRead, TextOverSeveralLines) {
  const Parsed parsed =
      Read(kVersion5 + "[HKEY_CURRENT_USER\\K]\r\n@=\"one\r\n\r\ntwo\"\r\n\"n\"=dword:1\r\n"s);
  EXPECT_TRUE(parsed.errors.empty());
  ASSERT_EQ(3u, parsed.statements.size());
  EXPECT_EQ(Unicode("one\r\n\r\ntwo"), parsed.statements[1].data);
  EXPECT_EQ(6, parsed.statements[2].line - 1);
}

TEST(RegistryTextRead, UnclosedTextTakesNoOtherStatementWithIt) {
  const Parsed parsed = Read(kVersion5 +
                             "[HKEY_CURRENT_USER\\K]\r\n\"a\"=\"open\r\n\"b\"=\"good\"\r\n"
                             "\"c\"=\"open\r\n[HKEY_CURRENT_USER\\L]\r\n@=\"x\"\r\n"s);
  ASSERT_EQ(4u, parsed.statements.size());
  EXPECT_EQ("b", parsed.statements[1].name);
  EXPECT_EQ("HKEY_CURRENT_USER\\L", parsed.statements[2].key);
  ASSERT_EQ(2u, parsed.errors.size());
  EXPECT_EQ(4, parsed.errors[0].line);
  EXPECT_EQ(6, parsed.errors[1].line);
}

TEST(RegistryTextRead, Dword) {
  EXPECT_EQ("\x78\x56\x34\x12"s, OneValue(kVersion5, "@=dword:12345678").data);
  EXPECT_EQ("\x1F\0\0\0"s, OneValue(kVersion5, "@=DWORD:1F ; flags").data);
  EXPECT_EQ(registry_type::kDword, OneValue(kVersion5, "@=dword:0").type);
  EXPECT_EQ(4, OnlyErrorLine("@=dword:\r\n"));
  EXPECT_EQ(4, OnlyErrorLine("@=dword:123456789\r\n"));
  EXPECT_EQ(4, OnlyErrorLine("@=dword:12g\r\n"));
}

TEST(RegistryTextRead, BytesOfEveryType) {
  EXPECT_EQ("\x01\xFF\0"s, OneValue(kVersion5, "@=hex:01,ff,00").data);
  EXPECT_EQ(registry_type::kBinary, OneValue(kVersion5, "@=hex:01").type);
  EXPECT_EQ("", OneValue(kVersion5, "@=hex:").data);
  EXPECT_EQ(0u, OneValue(kVersion5, "@=hex(0):01").type);
  EXPECT_EQ(11u, OneValue(kVersion5, "@=hex(b):01,02,03,04,05,06,07,08").type);
  EXPECT_EQ(registry_type::kDword, OneValue(kVersion5, "@=hex(4):01,02").type);
  EXPECT_EQ("\x01\x02"s, OneValue(kVersion5, "@=hex(4):01,02").data);
  EXPECT_EQ(0xFFFFFFFFu, OneValue(kVersion5, "@=hex(ffffffff):01").type);
}

TEST(RegistryTextRead, TextTypesInBytesAreUtf16OrTheCodePage) {
  const RegistryStatement newer = OneValue(kVersion5, "@=hex(2):25,00,fc,00,00,00");
  EXPECT_EQ(registry_type::kExpandString, newer.type);
  EXPECT_EQ(Unicode("%\u00FC"), newer.data);
  EXPECT_EQ(Unicode("%\u00FC"), OneValue(kVersion4, "@=hex(2):25,fc,00").data);
  EXPECT_EQ(Utf8ToUtf16Bytes("a\0b\0\0"s), OneValue(kVersion4, "@=hex(7):61,00,62,00,00").data);
  EXPECT_EQ("\x61\0"s, OneValue(kVersion4, "@=hex:61,00").data);
}

TEST(RegistryTextRead, BytesGoOnOverLines) {
  const Parsed parsed = Read(kVersion5 +
                             "[HKEY_CURRENT_USER\\K]\r\n@=hex:01,\\\r\n  02,03,\\\r\n  04\r\n"
                             "\"n\"=dword:1\r\n"s);
  EXPECT_TRUE(parsed.errors.empty());
  ASSERT_EQ(3u, parsed.statements.size());
  EXPECT_EQ("\1\2\3\4", parsed.statements[1].data);
  EXPECT_EQ(4, parsed.statements[1].line);
  EXPECT_EQ(7, parsed.statements[2].line);
}

TEST(RegistryTextRead, BytesCutShortAreLeftOut) {
  EXPECT_EQ(4, OnlyErrorLine("@=hex:01,02,\\"));
  EXPECT_EQ(4, OnlyErrorLine("@=hex:01,02,\\\r\n\r\n"));
  EXPECT_EQ(4, OnlyErrorLine("@=hex:01,0203\r\n"));
  EXPECT_EQ(4, OnlyErrorLine("@=hex:01,xx\r\n"));
  EXPECT_EQ(4, OnlyErrorLine("@=hex(:01\r\n"));
  EXPECT_EQ(4, OnlyErrorLine("@=hex(zz):01\r\n"));
  EXPECT_EQ(4, OnlyErrorLine("@=hex01\r\n"));
  // The lines of a broken list are passed over with it.
  EXPECT_EQ(4, OnlyErrorLine("@=hex:zz,\\\r\n  01,\\\r\n  02\r\n"));
}

TEST(RegistryTextRead, Deletions) {
  const Parsed parsed = Read(kVersion5 +
                             "[-HKEY_CURRENT_USER\\Old]\r\n[HKEY_CURRENT_USER\\K]\r\n"
                             "\"a\"=-\r\n@=- ; gone\r\n"s);
  EXPECT_TRUE(parsed.errors.empty());
  ASSERT_EQ(4u, parsed.statements.size());
  EXPECT_EQ(Kind::kDeleteKey, parsed.statements[0].kind);
  EXPECT_EQ("HKEY_CURRENT_USER\\Old", parsed.statements[0].key);
  EXPECT_EQ(Kind::kDeleteValue, parsed.statements[2].kind);
  EXPECT_EQ("a", parsed.statements[2].name);
  EXPECT_EQ(Kind::kDeleteValue, parsed.statements[3].kind);
  EXPECT_EQ("", parsed.statements[3].name);
}

TEST(RegistryTextRead, CommentsAndBlanks) {
  const Parsed parsed = Read(kVersion5 +
                             "; first\r\n\r\n  [HKEY_CURRENT_USER\\K] ; key\r\n"
                             "\t\"a\" = \"; no comment\" ; comment\r\n  ; last"s);
  EXPECT_TRUE(parsed.errors.empty());
  ASSERT_EQ(2u, parsed.statements.size());
  EXPECT_EQ("HKEY_CURRENT_USER\\K", parsed.statements[0].key);
  EXPECT_EQ(Unicode("; no comment"), parsed.statements[1].data);
}

TEST(RegistryTextRead, KeyNamesMayHoldBrackets) {
  const Parsed parsed = Read(kVersion5 + "[HKEY_CURRENT_USER\\a]b[c]\r\n"s);
  ASSERT_EQ(1u, parsed.statements.size());
  EXPECT_EQ("HKEY_CURRENT_USER\\a]b[c", parsed.statements[0].key);
}

TEST(RegistryTextRead, RootsAreSpelledOut) {
  const Parsed parsed = Read(kVersion5 + "[hkcu\\A]\r\n[HKLM]\r\n[hkey_classes_root\\.x\\]\r\n"s);
  ASSERT_EQ(3u, parsed.statements.size());
  EXPECT_EQ("HKEY_CURRENT_USER\\A", parsed.statements[0].key);
  EXPECT_EQ("HKEY_LOCAL_MACHINE", parsed.statements[1].key);
  EXPECT_EQ("HKEY_CLASSES_ROOT\\.x", parsed.statements[2].key);
}

TEST(RegistryTextRead, ValuesOfABadKeyGoNowhere) {
  const Parsed parsed = Read(kVersion5 +
                             "@=\"no key\"\r\n[HKEY_CURRENT_USER\\K]\r\n[HKEY_NOWHERE\\A]\r\n"
                             "@=\"lost\"\r\n[HKEY_CURRENT_USER\\open\r\n@=\"lost\"\r\n"
                             "[-HKEY_CURRENT_USER\\Gone]\r\n@=\"lost\"\r\n"s);
  ASSERT_EQ(2u, parsed.statements.size());
  EXPECT_EQ(Kind::kKey, parsed.statements[0].kind);
  EXPECT_EQ(Kind::kDeleteKey, parsed.statements[1].kind);
  ASSERT_EQ(4u, parsed.errors.size());
  EXPECT_EQ(3, parsed.errors[0].line);
  EXPECT_EQ(5, parsed.errors[1].line);
  EXPECT_EQ(7, parsed.errors[2].line);
  EXPECT_EQ(10, parsed.errors[3].line);
}

TEST(RegistryTextRead, BrokenLinesAreToldAndTheRestIsTaken) {
  const Parsed parsed = Read(kVersion5 +
                             "[HKEY_CURRENT_USER\\K]\r\nrubbish\r\n\"a\r\n\"b\" \"x\"\r\n\"c\"=\r\n"
                             "\"d\"=word\r\n\"e\"=\"x\" y\r\n@\r\n\"z\"=\"good\"\r\n"s);
  ASSERT_EQ(2u, parsed.statements.size());
  EXPECT_EQ("z", parsed.statements[1].name);
  ASSERT_EQ(7u, parsed.errors.size());
  for (int i = 0; i < 7; ++i) EXPECT_EQ(4 + i, parsed.errors[static_cast<size_t>(i)].line);
}

TEST(RegistryTextRead, EveryTruncationIsSurvived) {
  const std::string text = kVersion5 +
                           "[HKEY_CURRENT_USER\\K]\r\n\"a\\\"b\"=\"C:\\\\x\\\"\"\r\n"
                           "@=hex(7):61,00,\\\r\n  62,00\r\n\"n\"=dword:0000001f\r\n"
                           "[-HKEY_CURRENT_USER\\L]\r\n\"m\"=-\r\n"s;
  const std::string wide = Utf16File(text);
  const size_t whole = Read(text).statements.size();
  for (size_t length = 0; length <= text.size(); ++length) {
    EXPECT_LE(Read(text.substr(0, length)).statements.size(), whole);
  }
  for (size_t length = 0; length <= wide.size(); ++length) {
    EXPECT_LE(Read(wide.substr(0, length)).statements.size(), whole);
  }
}

TEST(RegistryTextWrite, NewerVariantByteForByte) {
  const std::string text = WriteRegistryText(
      {Key("HKEY_CURRENT_USER\\K"), Value("", registry_type::kString, Unicode("d\u00FC")),
       Value("a\\b\"c", registry_type::kString, Unicode("C:\\x\"y\"")),
       Value("n", registry_type::kDword, "\x1F\0\0\0"s),
       Value("b", registry_type::kBinary, "\1\xFF"s),
       Value("e", registry_type::kExpandString, Unicode("%")), Value("q", 11, "\1"s),
       Key("HKEY_CURRENT_USER\\K\\Empty")},
      RegistryTextVersion::kVersion5, Ansi);
  EXPECT_EQ(Utf16File("Windows Registry Editor Version 5.00\r\n"
                      "\r\n"
                      "[HKEY_CURRENT_USER\\K]\r\n"
                      "@=\"d\u00FC\"\r\n"
                      "\"a\\\\b\\\"c\"=\"C:\\\\x\\\"y\\\"\"\r\n"
                      "\"n\"=dword:0000001f\r\n"
                      "\"b\"=hex:01,ff\r\n"
                      "\"e\"=hex(2):25,00,00,00\r\n"
                      "\"q\"=hex(b):01\r\n"
                      "\r\n"
                      "[HKEY_CURRENT_USER\\K\\Empty]\r\n"
                      "\r\n"),
            text);
}

TEST(RegistryTextWrite, OlderVariantByteForByte) {
  RegistryStatement gone = Value("gone", 0, "");
  gone.kind = Kind::kDeleteValue;
  RegistryStatement gone_key = Key("HKEY_CURRENT_USER\\Gone");
  gone_key.kind = Kind::kDeleteKey;
  const std::string text =
      WriteRegistryText({gone_key, Key("HKEY_CURRENT_USER\\K"),
                         Value("n\u00E4me", registry_type::kString, Unicode("d\u00FC")),
                         Value("e", registry_type::kExpandString, Unicode("%\u00FC")),
                         Value("m", registry_type::kMultiString, Utf8ToUtf16Bytes("a\0\0"s)), gone},
                        RegistryTextVersion::kRegedit4, Ansi);
  EXPECT_EQ(
      "REGEDIT4\r\n\r\n[-HKEY_CURRENT_USER\\Gone]\r\n\r\n[HKEY_CURRENT_USER\\K]\r\n"
      "\"n\xE4me\"=\"d\xFC\"\r\n\"e\"=hex(2):25,fc,00\r\n\"m\"=hex(7):61,00,00\r\n"
      "\"gone\"=-\r\n\r\n",
      text);
}

TEST(RegistryTextWrite, BytesAreCutIntoLinesOf80Characters) {
  const std::string text =
      WriteRegistryText({Value("Foo", registry_type::kBinary, std::string(60, '\x11'))},
                        RegistryTextVersion::kRegedit4, Ansi);
  std::vector<std::string> lines = Split(text, "\r\n");
  ASSERT_LE(4u, lines.size());
  EXPECT_EQ(80u, lines[1].size());
  EXPECT_TRUE(lines[1].ends_with("11,\\"));
  EXPECT_EQ("  11,", lines[2].substr(0, 5));
  EXPECT_EQ(78u, lines[2].size());
  EXPECT_TRUE(lines[3].ends_with(",11"));
}

void ExpectRoundTrip(const std::vector<RegistryStatement>& statements,
                     RegistryTextVersion version) {
  const Parsed parsed = Read(WriteRegistryText(statements, version, Ansi));
  ASSERT_TRUE(parsed.known);
  EXPECT_TRUE(parsed.errors.empty());
  ASSERT_EQ(statements.size(), parsed.statements.size());
  for (size_t i = 0; i < statements.size(); ++i) {
    EXPECT_EQ(statements[i].kind, parsed.statements[i].kind);
    EXPECT_EQ(statements[i].key, parsed.statements[i].key);
    EXPECT_EQ(statements[i].name, parsed.statements[i].name);
    EXPECT_EQ(statements[i].type, parsed.statements[i].type);
    EXPECT_EQ(statements[i].data, parsed.statements[i].data) << statements[i].name;
  }
}

TEST(RegistryTextWrite, EveryValueComesBack) {
  std::string all_bytes;
  for (int i = 0; i < 256; ++i) all_bytes += static_cast<char>(i);
  for (const auto version : {RegistryTextVersion::kRegedit4, RegistryTextVersion::kVersion5}) {
    ExpectRoundTrip(
        {Key("HKEY_CURRENT_USER\\K"), Value("", registry_type::kString, Unicode("\u00FC \\ \" ;")),
         Value("empty", registry_type::kString, Unicode("")),
         Value("hollow", registry_type::kString, ""),
         Value("line ends", registry_type::kString, Unicode("a\r\nb\tc")),
         Value("name\nof\r\\two\"lines", registry_type::kString, Unicode("x")),
         Value("two nuls", registry_type::kString, Unicode("a\0b"s)),
         Value("no nul", registry_type::kString, Utf8ToUtf16Bytes("abc")),
         Value("multi", registry_type::kMultiString, Unicode("a\0b\0"s)),
         Value("binary", registry_type::kBinary, all_bytes),
         Value(std::string(300, 'n'), registry_type::kBinary, all_bytes),
         Value("short dword", registry_type::kDword, "\1\2"s),
         Value("none", registry_type::kNone, all_bytes), Value("link", 6, all_bytes),
         Value("type 0x12345678", 0x12345678, "\0"s)},
        version);
  }
}

TEST(RegistryTextWrite, NewerVariantKeepsWhatIsOutsideTheCodePage) {
  ExpectRoundTrip({Key("HKEY_CURRENT_USER\\K"),
                   Value("\u65E5", registry_type::kString, Unicode("\U0001F600 \u0416")),
                   Value("lone half", registry_type::kString, "\x3D\xD8\0\0"s),
                   Value("odd", registry_type::kString, "a\0b"s),
                   Value("odd expand", registry_type::kExpandString, "a\0b"s)},
                  RegistryTextVersion::kVersion5);
}

TEST(RegistryPathTest, RootWordAndSubkey) {
  const auto path = ParseRegistryPath("hkey_current_user\\Software\\X\\");
  ASSERT_TRUE(path);
  EXPECT_EQ(RegistryRoot::kCurrentUser, path->root);
  EXPECT_EQ("Software\\X", path->subkey);
  EXPECT_EQ("", ParseRegistryPath("HKEY_LOCAL_MACHINE")->subkey);
  EXPECT_EQ(RegistryRoot::kClassesRoot, ParseRegistryPath("HKCR\\.obk")->root);
  EXPECT_FALSE(ParseRegistryPath(""));
  EXPECT_FALSE(ParseRegistryPath("HKEY_USERS\\X"));
  EXPECT_FALSE(ParseRegistryPath("Software\\X"));
  for (RegistryRoot root :
       {RegistryRoot::kClassesRoot, RegistryRoot::kCurrentUser, RegistryRoot::kLocalMachine}) {
    EXPECT_EQ(root, ParseRegistryPath(RegistryRootName(root))->root);
  }
}

}  // namespace
}  // namespace quorvale
