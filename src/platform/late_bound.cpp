#include "platform/late_bound.h"

#include "base/text.h"

namespace quorvale {

std::string TextOf(const LateValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<int>(&value)) return std::to_string(*number);
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "True" : "False";
  return "";
}

int NumberOf(const LateValue& value) {
  if (const auto* number = std::get_if<int>(&value)) return *number;
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? -1 : 0;
  if (const auto* text = std::get_if<std::string>(&value)) return static_cast<int>(Val(*text));
  return 0;
}

LateObject ObjectOf(const LateValue& value) {
  const auto* object = std::get_if<LateObject>(&value);
  return object != nullptr ? *object : nullptr;
}

}  // namespace quorvale
