// Plays every file of tests/scenarios: one test each, named after the file.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/scenario_player.h"
#include "app/scratch_folder.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> ScenarioNames() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(fs::path(QUORVALE_TESTS_FOLDER) / "scenarios")) {
    if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class Scenarios : public testing::TestWithParam<std::string> {};

TEST_P(Scenarios, GoesAsItSays) {
  std::ifstream file(fs::path(QUORVALE_TESTS_FOLDER) / "scenarios" / (GetParam() + ".txt"),
                     std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const Scenario scenario = ReadScenario(text);
  ASSERT_FALSE(scenario.acts.empty());
  const ScratchFolder scratch;
  ScenarioPlayer player(scratch.path(), nullptr);
  for (const ScenarioError& failure : player.Play(scenario)) {
    ADD_FAILURE() << GetParam() << ".txt:" << failure.line << ": " << failure.message;
  }
}

std::string NameOf(const testing::TestParamInfo<std::string>& test) { return test.param; }

INSTANTIATE_TEST_SUITE_P(All, Scenarios, testing::ValuesIn(ScenarioNames()), NameOf);

}  // namespace
}  // namespace quorvale
