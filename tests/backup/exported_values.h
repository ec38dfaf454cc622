// What a registry export holds, so that a test can compare values and not bytes.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "base/text.h"
#include "platform/registry_text.h"
#include "support/test_machine.h"

namespace quorvale::backup_test {

// The text of every text value, by its key's full path, "\" and its name.
inline std::map<std::string, std::string> ExportedValues(TestMachine& machine,
                                                         const std::string& bytes) {
  std::vector<RegistryStatement> statements;
  std::vector<RegistryTextError> errors;
  const auto from_ansi = [&machine](const std::string& text) {
    return machine.platform().system.FromAnsi(text);
  };
  EXPECT_TRUE(ReadRegistryText(bytes, from_ansi, &statements, &errors));
  EXPECT_TRUE(errors.empty());
  std::map<std::string, std::string> values;
  for (const RegistryStatement& statement : statements) {
    if (statement.kind != RegistryStatement::Kind::kValue) continue;
    std::string text = Utf16BytesToUtf8(statement.data);
    if (text.ends_with('\0')) text.pop_back();
    values[statement.key + "\\" + statement.name] = text;
  }
  return values;
}

}  // namespace quorvale::backup_test
