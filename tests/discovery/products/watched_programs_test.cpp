#include "discovery/products/watched_programs.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/faulty_platform.h"
#include "support/memory_platform.h"

namespace quorvale {
namespace {

TEST(WatchedPrograms, TableInItsOrderWithItsWords) {
  const std::vector<WatchedProgram> programs = WatchedPrograms();
  ASSERT_EQ(3u, programs.size());
  EXPECT_STREQ("Outlook Express", programs[0].root);
  EXPECT_STREQ("msimn.exe", programs[0].image);
  EXPECT_STREQ("Please close Outlook Express to continue.", programs[0].backup_message);
  EXPECT_STREQ("Please close Outlook Express to continue", programs[0].restore_message);
  EXPECT_STREQ("Microsoft Outlook", programs[1].root);
  EXPECT_STREQ("OUTLOOK.exe", programs[1].image);
  EXPECT_STREQ("Please close Microsoft Outlook to continue.", programs[1].backup_message);
  EXPECT_STREQ("Please close Microsoft Outlook to continue", programs[1].restore_message);
  EXPECT_STREQ("Windows Mail", programs[2].root);
  EXPECT_STREQ("WinMail.exe", programs[2].image);
  EXPECT_STREQ("Please close Windows Mail to continue.", programs[2].backup_message);
  EXPECT_STREQ("Please close Windows Mail to continue.", programs[2].restore_message);
}

TEST(WatchedPrograms, ImageIsFoundWithoutRegardToCase) {
  const std::vector<ProcessInfo> running = {
      {"explorer.exe", 100}, {"OUTLOOK.EXE", 200}, {"outlook.exe", 300}};
  EXPECT_EQ(200u, FindProcessId(running, "OUTLOOK.exe"));
  EXPECT_EQ(100u, FindProcessId(running, "Explorer.EXE"));
}

TEST(WatchedPrograms, OtherImagesAreNoMatch) {
  const std::vector<ProcessInfo> running = {{"msimn.exe.bak", 100}, {"xmsimn.exe", 200}};
  EXPECT_EQ(0u, FindProcessId(running, "msimn.exe"));
  EXPECT_EQ(0u, FindProcessId({}, "msimn.exe"));
}

TEST(WatchedPrograms, ServiceRunsByItsStateWord) {
  MemoryServices services;
  services.states = {{"WSearch", "Running"}, {"Schedule", "Stopped"}, {"Odd", "Start Pending"}};
  EXPECT_TRUE(ServiceIsRunning(services, "WSearch"));
  EXPECT_FALSE(ServiceIsRunning(services, "Schedule"));
  EXPECT_FALSE(ServiceIsRunning(services, "Odd"));
  EXPECT_FALSE(ServiceIsRunning(services, "NoSuchService"));
}

TEST(WatchedPrograms, ActionZeroStartsAndOthersAreControlCodes) {
  MemoryServices services;
  services.states = {{"WSearch", "Stopped"}};
  for (int action = 0; action <= 3; ++action) {
    EXPECT_TRUE(ControlServiceByName(services, "WSearch", static_cast<ServiceAction>(action)));
  }
  EXPECT_EQ((std::vector<std::string>{"start WSearch", "1 WSearch", "2 WSearch", "3 WSearch"}),
            services.told);
  CallCount calls;
  FaultyServices refusing(services, calls);
  refusing.Refuse("WSearch");
  EXPECT_FALSE(ControlServiceByName(refusing, "WSearch", ServiceAction::kStart));
  EXPECT_FALSE(ControlServiceByName(refusing, "WSearch", ServiceAction::kStop));
}

TEST(WatchedPrograms, OtherActionsAreAnError) {
  MemoryServices services;
  EXPECT_THROW(ControlServiceByName(services, "WSearch", static_cast<ServiceAction>(4)),
               std::invalid_argument);
  EXPECT_THROW(ControlServiceByName(services, "WSearch", static_cast<ServiceAction>(-1)),
               std::invalid_argument);
  EXPECT_TRUE(services.told.empty());
}

}  // namespace
}  // namespace quorvale
