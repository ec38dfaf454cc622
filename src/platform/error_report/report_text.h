// The texts of an error report: what its templates are filled with, how a procedure's call is
// taken apart and listed, and how numbers and moments read there.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "base/local_time.h"
#include "platform/error_report/HuntERR.h"

namespace quorvale::report_text {

inline constexpr char kLineEnd[] = "\r\n";

using Fields = std::map<std::string, std::string>;
// Puts the fields into a template. What a field holds is not looked at again: a description may
// contain a per cent sign.
std::string Fill(const std::string& text, const Fields& fields);

// Upper case, without leading noughts.
std::string Hex(std::uint32_t number);
// "+ 5" or "- 5": the number, counted from a base.
std::string Relative(std::int32_t number, std::int32_t base);
// "11/14/26 22:05:09"
std::string TimeText(const LocalTime& time);
std::string WithoutLineBreaks(const std::string& text);
std::string FirstLine(const std::string& text);

// "Copier.Run(from, to)" is the procedure "Copier.Run" with the names "from" and "to".
struct Method {
  std::string name;
  std::vector<std::string> argument_names;
};
Method MethodOf(const std::string& text);
// The names in a list with commas, trimmed.
std::vector<std::string> Names(const std::string& list);
// The name at a place counted from 0; "Arg1" and so on where there is none.
std::string NameAt(const std::vector<std::string>& names, std::size_t place);
// What stands in a list of arguments; a long text leaves its lines in `below`.
std::string Listed(const std::string& name, const ErrArg& value, std::string* below);

// The system's words for the crashes that programs have most.
std::string CrashName(std::uint32_t code);

}  // namespace quorvale::report_text
