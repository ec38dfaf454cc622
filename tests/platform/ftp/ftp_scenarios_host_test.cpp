// Plays each scenario that needs a server; to be run by with_ftp_servers.py.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "play/pages_stage.h"
#include "play/scenario_player.h"
#include "play/scratch_folder.h"

namespace quorvale {
namespace {

std::vector<std::string> ScenarioFileNames() {
  std::vector<std::string> names;
  const std::filesystem::path folder = std::string(QUORVALE_TESTS_FOLDER) + "/ftp_scenarios";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class FtpScenarioFile : public testing::TestWithParam<std::string> {};

TEST_P(FtpScenarioFile, GoesAsItSays) {
  const std::string path =
      std::string(QUORVALE_TESTS_FOLDER) + "/ftp_scenarios/" + GetParam() + ".txt";
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  const Scenario scenario =
      ReadScenario(WithVariables(text.str(), [](const std::string& name) -> std::string {
        const char* value = std::getenv(name.c_str());
        return value == nullptr ? "" : value;
      }));
  ASSERT_FALSE(scenario.acts.empty());
  const ScratchFolder scratch;
  PagesStage stage(scratch.path(), nullptr);
  ScenarioPlayer player(stage);
  for (const ScenarioError& error : player.Play(scenario)) {
    ADD_FAILURE() << path << ":" << error.line << ": " << error.message;
  }
}

INSTANTIATE_TEST_SUITE_P(All, FtpScenarioFile, testing::ValuesIn(ScenarioFileNames()),
                         [](const auto& each) { return each.param; });

}  // namespace
}  // namespace quorvale
