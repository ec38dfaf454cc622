// Plays every file of tests/scenarios and tests/round_trips: one test each, named after the file.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "play/pages_stage.h"
#include "play/round_trip.h"
#include "play/scenario_machine.h"
#include "play/scenario_player.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(fs::path(QUORVALE_TESTS_FOLDER) / folder)) {
    if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Scenario ReadFrom(const std::string& folder, const std::string& name) {
  std::ifstream file(fs::path(QUORVALE_TESTS_FOLDER) / folder / (name + ".txt"), std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  return ReadScenario(text);
}

void PlayAll(const Scenario& scenario, const std::string& name, const ScratchFolder& scratch) {
  ASSERT_FALSE(scenario.acts.empty());
  PagesStage stage(scratch.path(), nullptr);
  ScenarioPlayer player(stage);
  for (const ScenarioError& failure : player.Play(scenario)) {
    ADD_FAILURE() << name << ".txt:" << failure.line << ": " << failure.message;
  }
}

class Scenarios : public testing::TestWithParam<std::string> {};

TEST_P(Scenarios, GoesAsItSays) {
  PlayAll(ReadFrom("scenarios", GetParam()), GetParam(), ScratchFolder());
}

class RoundTripScenarios : public testing::TestWithParam<std::string> {};

// The computer that the scenario leaves behind has what one had that it never was played on.
TEST_P(RoundTripScenarios, BringAllBackThatWasLost) {
  const ScratchFolder scratch;
  const Scenario scenario = ReadFrom("round_trips", GetParam());
  PlayAll(scenario, GetParam(), scratch);
  const std::string like = scenario.acts.front().word;
  std::string problem;
  const auto before = MakeScenarioMachine(scratch.path() + "/before", like, "Anna", 1, &problem);
  ASSERT_TRUE(before) << problem;
  const auto after = RunningMachine::Open(scratch.path() + "/machine1", &problem);
  ASSERT_TRUE(after) << problem;
  const MachinePlan plan = ScenarioPlan(like, "Anna", 1);
  const RoundTripVerdict verdict = RoundTrip(*before, plan, *after, plan).Compare();
  for (const std::string& difference : verdict.differences) ADD_FAILURE() << difference;
  EXPECT_TRUE(verdict.AllWell());
  EXPECT_GT(verdict.files, 50);
  EXPECT_GT(verdict.keys, 10);
}

std::string NameOf(const testing::TestParamInfo<std::string>& test) { return test.param; }

INSTANTIATE_TEST_SUITE_P(All, Scenarios, testing::ValuesIn(NamesIn("scenarios")), NameOf);
INSTANTIATE_TEST_SUITE_P(All, RoundTripScenarios, testing::ValuesIn(NamesIn("round_trips")),
                         NameOf);

}  // namespace
}  // namespace quorvale
