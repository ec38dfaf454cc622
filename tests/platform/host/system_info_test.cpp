#include "platform/host/system_info.h"

#include <gtest/gtest.h>

#include "discovery/products/watched_programs.h"
#include "machine_fixture.h"
#include "platform/GetInfomation.h"

namespace quorvale::host {
namespace {

class HostSystemTest : public MachineTest {
 protected:
  HostSystemInfo& system() { return platform_->system(); }
};

TEST_F(HostSystemTest, FactsOfTheMachineFolder) {
  EXPECT_EQ(5, system().Version().major);
  EXPECT_TRUE(system().Version().known);
  EXPECT_EQ("Anna", system().UserName());
  EXPECT_EQ("OFFICE", system().ComputerName());
  EXPECT_EQ("C:\\Users\\Anna\\Application Data", system().Environment("AppData"));
  EXPECT_EQ("", system().Environment("PATH"));
  EXPECT_EQ("C:\\Program Files\\Quorvale", system().ProgramFolder());
  EXPECT_EQ("", system().CommandLine());
  EXPECT_FALSE(system().PreviousInstanceRuns());
  EXPECT_TRUE(system().HoldInstanceMutex("x"));
}

TEST_F(HostSystemTest, TheRegionIsTheUnitedStates) {
  const GetInfomation info(system());
  EXPECT_EQ("Monday", info.GetLongNameDay1());
  EXPECT_EQ("Sun", info.GetShortNameDay7());
  EXPECT_EQ("January", info.GetLongMonthName1());
  EXPECT_EQ("Dec", info.GetShortMonthName12());
  EXPECT_EQ("$", info.GetCurrencySymbol());
  EXPECT_EQ(".", info.GetDecimalSeparator());
  EXPECT_EQ(",", info.GetThousandSeparator());
  EXPECT_EQ("h:mm:ss tt", info.GetTimeFormat());
  EXPECT_EQ("", system().LocaleText(9999));
  EXPECT_EQ("Sunday", system().WeekdayName(1));
  EXPECT_EQ("Saturday", system().WeekdayName(7));
  EXPECT_EQ("", system().WeekdayName(8));
  system().SetEnvironment("windir", "C:\\Windows");
  EXPECT_EQ("C:\\Windows\\system32", info.SystemDir());
  system().SetVersion({1, 4, 10, true});
  EXPECT_EQ("C:\\Windows\\system", info.SystemDir());
  EXPECT_NE("", system().ErrorText(2));
}

TEST_F(HostSystemTest, FactsCanBeSet) {
  system().SetVersion({2, 6, 0, true});
  system().SetEnvironment("APPDATA", "D:\\");
  system().SetCommandLine("auto");
  EXPECT_EQ(6, system().Version().major);
  EXPECT_EQ("D:\\", system().Environment("appdata"));
  EXPECT_EQ("auto", system().CommandLine());
}

TEST_F(HostSystemTest, SetClockMovesBySleepAlone) {
  const std::uint64_t before = system().Ticks();
  EXPECT_EQ(9, system().Now().second);
  system().Sleep(51000);
  EXPECT_EQ(6, system().Now().minute);
  EXPECT_EQ(0, system().Now().second);
  EXPECT_GE(system().Ticks() - before, 51000u);
  system().SetNow(ParseLocalTime("2026-12-31 23:59:59"));
  system().Sleep(1000);
  EXPECT_EQ(2027, system().Now().year);
  EXPECT_EQ(6, system().Now().weekday);
  system().Sleep(-1);
  EXPECT_EQ(0, system().Now().second);
}

TEST_F(HostSystemTest, RandomBytesAreAsManyAsAskedForAndNeverTheSame) {
  for (const std::size_t count : {0u, 1u, 33u, 5000u}) {
    EXPECT_EQ(platform_->system().RandomBytes(count).size(), count);
  }
  EXPECT_NE(platform_->system().RandomBytes(16), platform_->system().RandomBytes(16));
}

TEST_F(HostSystemTest, HostsClock) {
  system().SetNow(std::nullopt);
  system().SetSleepless(true);
  EXPECT_GE(system().Now().year, 2024);
  const std::uint64_t before = system().Ticks();
  system().Sleep(3600000);
  EXPECT_GE(system().Ticks() - before, 3600000u);
  system().SetSleepless(false);
  const std::uint64_t start = system().Ticks();
  system().Sleep(15);
  EXPECT_GE(system().Ticks() - start, 15u);
}

TEST_F(HostSystemTest, TimesOfFilesAreLocal) {
  const LocalTime time = system().ToLocal(116444736000000000);
  // 1970-01-01 in London, give or take a time zone.
  EXPECT_TRUE(time.year == 1970 || time.year == 1969);
  EXPECT_EQ(0, time.second);
}

TEST_F(HostSystemTest, TextsOfTimesAndDays) {
  LocalTime time;
  time.hour = 22;
  time.minute = 5;
  time.second = 9;
  EXPECT_EQ("10:05:09 PM", system().TimeText(time));
  time.hour = 0;
  EXPECT_EQ("12:05:09 AM", system().TimeText(time));
  time.hour = 12;
  EXPECT_EQ("12:05:09 PM", system().TimeText(time));
  EXPECT_EQ("Sunday", system().WeekdayName(1));
  EXPECT_EQ("Saturday", system().WeekdayName(7));
  EXPECT_EQ("", system().WeekdayName(0));
  EXPECT_EQ("", system().WeekdayName(8));
}

TEST_F(HostSystemTest, CodePage) {
  EXPECT_EQ("M\xFCller ?", system().ToAnsi("M\u00FCller \u65E5"));
  EXPECT_EQ("M\u00FCller", system().FromAnsi("M\xFCller"));
}

TEST_F(HostSystemTest, Processes) {
  HostProcesses& processes = platform_->processes();
  EXPECT_EQ(1200u, FindProcessId(processes.List(), "Explorer.exe"));
  processes.Start("OUTLOOK.EXE", 7);
  EXPECT_EQ(7u, FindProcessId(processes.List(), "OUTLOOK.exe"));
  processes.End("outlook.exe");
  EXPECT_EQ(0u, FindProcessId(processes.List(), "OUTLOOK.exe"));
  EXPECT_FALSE(processes.WindowExists("Quorvale"));
  processes.ActivatePreviousInstance();
  EXPECT_EQ(1, processes.activations());
}

TEST_F(HostSystemTest, Services) {
  HostServices& services = platform_->services();
  EXPECT_TRUE(ServiceIsRunning(services, "wsearch"));
  EXPECT_FALSE(ServiceIsRunning(services, "Schedule"));
  EXPECT_EQ("", services.State("None"));
  EXPECT_FALSE(ControlServiceByName(services, "WSearch", ServiceAction::kStart));  // runs already
  EXPECT_TRUE(ControlServiceByName(services, "WSearch", ServiceAction::kPause));
  EXPECT_EQ("Paused", services.State("WSearch"));
  EXPECT_TRUE(ControlServiceByName(services, "WSearch", ServiceAction::kContinue));
  EXPECT_TRUE(ControlServiceByName(services, "WSearch", ServiceAction::kStop));
  EXPECT_EQ("Stopped", services.State("WSearch"));
  EXPECT_FALSE(ControlServiceByName(services, "WSearch", ServiceAction::kStop));
  EXPECT_TRUE(ControlServiceByName(services, "WSearch", ServiceAction::kStart));
  EXPECT_FALSE(ControlServiceByName(services, "None", ServiceAction::kStart));
  EXPECT_TRUE(ServiceIsRunning(services, "WSearch"));
  ASSERT_EQ(7u, services.log().size());
  EXPECT_EQ("control 1 WSearch", services.log()[3]);
  EXPECT_EQ("start None", services.log()[6]);
}

TEST_F(HostSystemTest, NeitherServerNorDiscs) {
  EXPECT_FALSE(platform_->ftp().Connect("localhost", 21, "a", "b"));
  EXPECT_EQ(FtpState::kIdle, platform_->ftp().State());
  EXPECT_FALSE(platform_->ftp().ChangeFolder("/"));
  EXPECT_FALSE(platform_->discs().Initialise());
  EXPECT_TRUE(platform_->discs().Drives().empty());
  EXPECT_FALSE(platform_->discs().Open(0));
  EXPECT_FALSE(platform_->discs().MediumLoaded());
  EXPECT_EQ(0u, platform_->discs().FreeBytes());
}

}  // namespace
}  // namespace quorvale::host
