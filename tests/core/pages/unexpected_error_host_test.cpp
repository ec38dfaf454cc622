// What becomes of an error that nothing else has caught.
#include "core/pages/unexpected_error.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "base/text.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

constexpr char kDeveloper[] = "HKEY_CURRENT_USER\\Software\\Tarnwick\\Quorvale\\Developer";

class UnexpectedErrorTest : public testing::Test {
 protected:
  UnexpectedErrorTest() { machine_.computer().SetClock({2026, 3, 5, 9, 7, 1, 5}); }

  HuntERR& Errors() {
    if (!errors_) {
      errors_ = std::make_unique<HuntERR>(machine_.platform().system, kApplicationTitle, "1.2.3");
      SetUpReports(machine_.app(), errors_.get());
    }
    return *errors_;
  }
  std::string File() { return machine_.AppData() + "\\Tarnwick\\Quorvale\\Errors.txt"; }
  std::string Sentence(const std::string& description) {
    return "Quorvale has met an error that it did not expect: " + description +
           "\r\n\r\nA report of it is in " + File();
  }

  TestMachine machine_;
  std::unique_ptr<HuntERR> errors_;
};

TEST_F(UnexpectedErrorTest, WorkThatGoesWellLeavesNothingBehind) {
  int runs = 0;
  EXPECT_TRUE(RunReporting(machine_.app(), &Errors(), "WinMain", [&] { ++runs; }));
  EXPECT_EQ(runs, 1);
  EXPECT_FALSE(machine_.Exists(File()));
}

TEST_F(UnexpectedErrorTest, AnExceptionIsKeptWholeAndToldInOneSentence) {
  machine_.computer().SetCommandLine("auto");
  machine_.Expect(ui::Answer::kOk, Sentence("the tree is gone"));
  EXPECT_FALSE(RunReporting(machine_.app(), &Errors(), "WinMain",
                            [] { throw std::runtime_error("the tree is gone"); }));
  EXPECT_EQ(machine_.ui().boxes.back().request.icon, ui::Icon::kCritical);
  EXPECT_EQ(machine_.ReadFile(File()),
            "the tree is gone \r\n"
            "  Time='03/05/26 09:07:01' App='Quorvale:1.2.3' ADO-version='' Computer='" +
                machine_.platform().system.ComputerName() +
                "' \r\n"
                "  Method: WinMain \r\n"
                "  Number: -2147216306 = &H8004144E = vbObjectError + 5198 = ERRMAP_APP_FIRST + 0 "
                "= ERR_GENERAL\r\n"
                "  Source: Quorvale \r\n"
                "  Description: the tree is gone\r\n"
                "  Call Stack: " +
                std::string(86, '-') +
                "\r\n"
                "- WinMain('auto')\r\n\r\n");
}

TEST_F(UnexpectedErrorTest, ReportsFollowEachOther) {
  for (const char* text : {"first", "second"}) {
    machine_.Expect(ui::Answer::kOk, Sentence(text));
    RunReporting(machine_.app(), &Errors(), "WinMain", [&] { throw std::runtime_error(text); });
  }
  const std::string reports = machine_.ReadFile(File());
  EXPECT_LT(reports.find("Description: first"), reports.find("Description: second"));
  EXPECT_NE(reports.find("Description: second"), std::string::npos);
}

TEST_F(UnexpectedErrorTest, AFileThatHasGrownLongIsBegunAnew) {
  machine_.WriteFile(File(), std::string((1u << 20) + 1, 'x'));
  machine_.Expect(ui::Answer::kOk, Sentence("late"));
  RunReporting(machine_.app(), &Errors(), "WinMain", [] { throw std::runtime_error("late"); });
  EXPECT_TRUE(machine_.ReadFile(File()).starts_with("late \r\n"));
}

TEST_F(UnexpectedErrorTest, AReportThatCannotBeKeptIsNotPromised) {
  machine_.MakeFolder(File());
  machine_.Expect(ui::Answer::kOk, "Quorvale has met an error that it did not expect: oh");
  RunReporting(machine_.app(), &Errors(), "WinMain", [] { throw std::runtime_error("oh"); });
}

TEST_F(UnexpectedErrorTest, WithoutTheDevelopersSwitchNothingIsAsked) {
  EXPECT_FALSE(Errors().developer.ask);
  EXPECT_FALSE(Errors().developer.reports_crashes);
  EXPECT_EQ(Errors().developer.report_database, "");
}

TEST_F(UnexpectedErrorTest, TheDevelopersSwitchesAreRead) {
  machine_.SetString(kDeveloper, "StepMode", "1");
  machine_.SetString(kDeveloper, "ReportCrashes", "1");
  machine_.SetString(kDeveloper, "ReportDatabase", "Provider=X");
  EXPECT_TRUE(Errors().developer.ask);
  EXPECT_TRUE(Errors().developer.reports_crashes);
  EXPECT_EQ(Errors().developer.report_database, "Provider=X");
}

TEST_F(UnexpectedErrorTest, StepModeRunsTheWorkAgainOnYes) {
  machine_.SetString(kDeveloper, "StepMode", "1");
  machine_.Expect(ui::Answer::kYes,
                  "Stopped on error: busy\r\n\r\nDo you want to retry the operation in step "
                  "mode?\r\nClick YES to retry, NO to move to the caller, CANCEL for no more "
                  "stops");
  int runs = 0;
  EXPECT_TRUE(RunReporting(machine_.app(), &Errors(), "WinMain", [&] {
    if (++runs == 1) throw std::runtime_error("busy");
  }));
  EXPECT_EQ(runs, 2);
  EXPECT_EQ(machine_.ui().boxes.back().request.buttons, ui::Buttons::kYesNoCancel);
}

TEST_F(UnexpectedErrorTest, StepModeGoesToTheCallerOnNoAndStopsNoMoreOnCancel) {
  machine_.SetString(kDeveloper, "StepMode", "1");
  const auto fail = [&] {
    machine_.Expect(ui::Answer::kOk, "");
    EXPECT_FALSE(RunReporting(machine_.app(), &Errors(), "WinMain",
                              [] { throw std::runtime_error("busy"); }));
  };
  machine_.Expect(ui::Answer::kNo, "");
  fail();
  machine_.Expect(ui::Answer::kCancel, "");
  fail();
  fail();
  EXPECT_EQ(machine_.ui().boxes.size(), 5u);
}

}  // namespace
}  // namespace quorvale
