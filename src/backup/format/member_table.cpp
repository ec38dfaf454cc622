#include "backup/format/member_table.h"

#include <charconv>
#include <cstdio>
#include <utility>

#include "base/escaped_text.h"
#include "base/paths.h"
#include "base/text.h"

namespace quorvale {
namespace {

constexpr char kHead[] = "Quorvale members";
constexpr char kVersion[] = "1";
constexpr char kLeaf[] = "Members.txt";
constexpr char kLineEnd[] = "\r\n";
constexpr size_t kWrittenAtOnce = 64 * 1024;
// More has no line: an entry's name has 65,535 bytes at most.
constexpr size_t kLongestLine = 1024 * 1024;

template <typename Number>
bool ReadNumber(std::string_view text, Number* number, int base = 10) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, *number, base);
  return error == std::errc() && stop == end;
}

std::string Hex(std::uint32_t value) {
  char text[9];
  std::snprintf(text, sizeof text, "%08x", static_cast<unsigned>(value));
  return text;
}

bool ReadKind(const std::string& text, TableMember::Kind* kind) {
  if (text.size() != 1) return false;
  *kind = static_cast<TableMember::Kind>(text[0]);
  return *kind == TableMember::Kind::kFile || *kind == TableMember::Kind::kFolder ||
         *kind == TableMember::Kind::kRegistry;
}

}  // namespace

std::string TableEntryName(const std::string& stem) { return stem + "\\" + kLeaf; }

std::string StemOfTableEntry(const std::string& entry_name) {
  const std::string stem = ParentFolder(entry_name);
  const bool is_table = EqualsNoCase(FileNameOf(entry_name), kLeaf) && !Contains(stem, "\\");
  return is_table ? stem : "";
}

FileStatus MemberTableWriter::Line(std::string_view word, const std::vector<std::string>& fields) {
  waiting_ += word;
  waiting_ += "\t" + TabbedLine(fields);
  waiting_ += kLineEnd;
  ++lines_;
  return waiting_.size() < kWrittenAtOnce ? FileStatus::kOk : Flush();
}

FileStatus MemberTableWriter::Flush() {
  const std::string text = std::exchange(waiting_, "");
  return file_.Write(text.data(), text.size());
}

FileStatus MemberTableWriter::Begin(const std::string& stem) {
  const FileStatus status = Line(kHead, {kVersion});
  return status == FileStatus::kOk ? Line("stem", {stem}) : status;
}

FileStatus MemberTableWriter::Item(const SettingsItem& item) {
  return Line("item", {item.path, item.key});
}

FileStatus MemberTableWriter::Member(const TableMember& member) {
  return Line("member",
              {std::string(1, static_cast<char>(member.kind)), std::to_string(member.item + 1),
               std::to_string(member.size), Hex(member.crc), member.entry, member.inner});
}

FileStatus MemberTableWriter::Gap(const TableGap& gap) {
  return Line("gap", {std::to_string(gap.item + 1), gap.reason, gap.inner});
}

FileStatus MemberTableWriter::End() {
  const FileStatus status = Line("end", {std::to_string(lines_)});
  return status == FileStatus::kOk ? Flush() : status;
}

bool MemberTableReader::Feed(std::string_view piece) {
  while (good_ && !piece.empty()) {
    const size_t end = piece.find('\n');
    rest_ += piece.substr(0, end);
    if (rest_.size() > kLongestLine) good_ = false;
    if (end == std::string_view::npos) break;
    piece.remove_prefix(end + 1);
    if (rest_.ends_with('\r')) rest_.pop_back();
    good_ = good_ && TakeLine(rest_);
    rest_.clear();
  }
  return good_;
}

bool MemberTableReader::TakeLine(std::string_view line) {
  if (ended_) return false;
  std::vector<std::string> fields;
  if (!ReadTabbedLine(line, &fields)) return false;
  const std::string word = fields.front();
  fields.erase(fields.begin());
  if (!TakeFields(word, fields)) return false;
  ++lines_;
  return true;
}

bool MemberTableReader::TakeFields(const std::string& word,
                                   const std::vector<std::string>& fields) {
  if (lines_ == 0) return word == kHead && !fields.empty() && fields[0] == kVersion;
  if (word == "stem") {
    if (fields.size() != 1 || !table_->stem.empty()) return false;
    table_->stem = fields[0];
    return !table_->stem.empty();
  }
  if (word == "item") {
    if (fields.size() != 2) return false;
    table_->items.push_back({fields[0], fields[1]});
    return true;
  }
  if (word == "member") return TakeMember(fields);
  if (word == "gap") {
    TableGap gap;
    if (fields.size() != 3 || !ReadNumber(fields[0], &gap.item)) return false;
    if (gap.item == 0 || gap.item-- > table_->items.size()) return false;
    gap.reason = fields[1];
    gap.inner = fields[2];
    table_->gaps.push_back(std::move(gap));
    return true;
  }
  if (word == "end") {
    std::uint64_t count = 0;
    ended_ = fields.size() == 1 && ReadNumber(fields[0], &count) && count == lines_;
    return ended_;
  }
  return true;
}

bool MemberTableReader::TakeMember(const std::vector<std::string>& fields) {
  TableMember member;
  if (fields.size() != 6 || !ReadKind(fields[0], &member.kind) ||
      !ReadNumber(fields[1], &member.item) || !ReadNumber(fields[2], &member.size) ||
      !ReadNumber(fields[3], &member.crc, 16)) {
    return false;
  }
  if (member.item == 0 || member.item-- > table_->items.size()) return false;
  member.entry = fields[4];
  member.inner = fields[5];
  if (member.entry.empty()) return false;
  table_->members.push_back(std::move(member));
  return true;
}

std::shared_ptr<const MemberTable> MemberTableReader::Finish() {
  if (!good_ || !ended_ || !rest_.empty() || table_->stem.empty()) return nullptr;
  return table_;
}

}  // namespace quorvale
