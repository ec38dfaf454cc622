#include "play/scenario.h"

#include <gtest/gtest.h>

#include <set>

namespace quorvale {
namespace {

TEST(Scenario, VariablesStandForTheirValues) {
  const auto value_of = [](const std::string& name) -> std::string {
    if (name == "PORT") return "2121";
    return name == "FTP_ROOT" ? "/tmp/a b" : "";
  };
  const auto with = [&](const std::string& text) { return WithVariables(text, value_of); };
  EXPECT_EQ(with("set a.b %PORT%"), "set a.b 2121");
  EXPECT_EQ(with("bring %FTP_ROOT%\\x.obk = C:\\%PORT%"), "bring Z:\\tmp\\a b\\x.obk = C:\\2121");
  EXPECT_EQ(with("%PORT%%PORT%"), "21212121");
  for (const char* text : {"100 % of %OTHER% and %port%", "%%", "%PORT", "%", ""}) {
    EXPECT_EQ(with(text), text);
  }
}

ScenarioAct OnlyAct(const std::string& line) {
  const Scenario scenario = ReadScenario(line);
  EXPECT_TRUE(scenario.errors.empty()) << line << ": " << scenario.errors.front().message;
  EXPECT_EQ(scenario.acts.size(), 1u) << line;
  return scenario.acts.empty() ? ScenarioAct() : scenario.acts.front();
}

std::string OnlyError(const std::string& line) {
  const Scenario scenario = ReadScenario(line);
  EXPECT_TRUE(scenario.acts.empty()) << line;
  return scenario.errors.empty() ? "" : scenario.errors.front().message;
}

TEST(ScenarioReader, ControlActsNameFormAndControl) {
  const ScenarioAct act = OnlyAct("set frmOne.txtBackupname My mail");
  EXPECT_STREQ(act.verb->name, "set");
  EXPECT_EQ(act.form, "frmOne");
  EXPECT_EQ(act.control, "txtBackupname");
  EXPECT_EQ(act.text, "My mail");
}

TEST(ScenarioReader, MembersOfControlArraysKeepTheirIndex) {
  EXPECT_EQ(OnlyAct("click FrmWelcome.lblQuicklinks(0)").control, "lblQuicklinks(0)");
}

TEST(ScenarioReader, TextsMayBeEmptyWhereAnEmptyTextMakesSense) {
  EXPECT_EQ(OnlyAct("expect frmROne.txtRestore").text, "");
  EXPECT_EQ(OnlyAct("start").text, "");
}

TEST(ScenarioReader, CommentsAndEmptyLinesAreNoActs) {
  const Scenario scenario = ReadScenario("# all of it\n\n   \nclick a.b   # behind an act\r\n");
  ASSERT_EQ(scenario.acts.size(), 1u);
  EXPECT_TRUE(scenario.errors.empty());
  EXPECT_EQ(scenario.acts[0].control, "b");
  EXPECT_EQ(scenario.acts[0].line, 4);
}

TEST(ScenarioReader, PathsMayHoldBlanksAndHaveATextBehindThem) {
  const ScenarioAct act = OnlyAct("seed C:\\My Documents\\a = b.txt = some text");
  EXPECT_EQ(act.path, "C:\\My Documents\\a");
  EXPECT_EQ(act.text, "b.txt = some text");
  EXPECT_FALSE(OnlyAct("expect-file C:\\a b.txt").has_text);
  const ScenarioAct empty = OnlyAct("expect-file C:\\a b.txt =");
  EXPECT_TRUE(empty.has_text);
  EXPECT_EQ(empty.path, "C:\\a b.txt");
}

TEST(ScenarioReader, ConditionsCarryOneAct) {
  const ScenarioAct act =
      OnlyAct("when frmFinish.lblCurrent contains Mail Items click frmFinish.Command2");
  EXPECT_EQ(act.form, "frmFinish");
  EXPECT_EQ(act.word, "contains");
  EXPECT_EQ(act.text, "Mail Items");
  ASSERT_EQ(act.then.size(), 1u);
  EXPECT_STREQ(act.then[0].verb->name, "click");
  EXPECT_EQ(act.then[0].control, "Command2");
}

TEST(ScenarioReader, AnswersHaveAWordAndAText) {
  const ScenarioAct act = OnlyAct("answer Yes Do you want to overwrite?");
  EXPECT_EQ(act.word, "Yes");
  EXPECT_EQ(act.text, "Do you want to overwrite?");
}

TEST(ScenarioReader, EachBrokenLineIsToldWithItsNumber) {
  const Scenario scenario = ReadScenario("click a.b\nclick\ndance a.b\n");
  ASSERT_EQ(scenario.errors.size(), 2u);
  EXPECT_EQ(scenario.errors[0].line, 2);
  EXPECT_EQ(scenario.errors[1].line, 3);
  EXPECT_EQ(scenario.errors[1].message, "there is no act \"dance\"");
}

TEST(ScenarioReader, PatternsHaveDigitsAndAnyText) {
  EXPECT_TRUE(IsLike("11/21/2026 9:07:00 AM", "##/##/#### 9:07:00 AM"));
  EXPECT_TRUE(IsLike("11/21/2026 9:07:00 AM", "##/##/#### *M"));
  EXPECT_TRUE(IsLike("", ""));
  EXPECT_TRUE(IsLike("", "*"));
  EXPECT_TRUE(IsLike("a*b", "a*b"));
  EXPECT_TRUE(IsLike("abcabc", "*abc"));
  EXPECT_FALSE(IsLike("abc", ""));
  EXPECT_FALSE(IsLike("", "#"));
  EXPECT_FALSE(IsLike("x", "#"));
  EXPECT_FALSE(IsLike("1/21/2026", "##/##/####"));
  EXPECT_FALSE(IsLike("abcd", "*abc"));
  EXPECT_FALSE(IsLike("abc", "abc#"));
}

TEST(ScenarioReader, BrokenActsAreRefused) {
  EXPECT_NE(OnlyError("click frmOne"), "");
  EXPECT_NE(OnlyError("click frmOne."), "");
  EXPECT_NE(OnlyError("click frmOne.cmdNext twice"), "");
  EXPECT_NE(OnlyError("wait long"), "");
  EXPECT_NE(OnlyError("rename C:\\a.obk"), "");
  EXPECT_NE(OnlyError("rename C:\\a.obk ="), "");
  EXPECT_NE(OnlyError("when a.b contains x"), "");
  EXPECT_NE(OnlyError("when a.b holds x click a.c"), "");
  EXPECT_NE(OnlyError("when a.b contains x when a.b contains y click a.c"), "");
  EXPECT_NE(OnlyError("folder"), "");
}

TEST(ScenarioVerbs, EachStandsOnceInTheTableAndIsPlayedBySomething) {
  std::set<std::string> names;
  for (const ScenarioVerb& verb : ScenarioVerbs()) {
    EXPECT_TRUE(names.insert(verb.name).second) << verb.name << " stands twice";
    EXPECT_NE(verb.play, nullptr) << verb.name;
    EXPECT_EQ(FindVerb(verb.name), &verb);
  }
  EXPECT_EQ(FindVerb("dance"), nullptr);
}

// What must not be so is expected of each moment, what must be so of one.
TEST(ScenarioVerbs, ExpectationsOfAbsenceAreToldFromOthers) {
  for (const char* name : {"expect-no-node", "expect-no-file", "expect-not-started"}) {
    EXPECT_EQ(FindVerb(name)->way, ActWay::kMustNotBe) << name;
  }
  for (const char* name : {"expect", "expect-node", "expect-started"}) {
    EXPECT_EQ(FindVerb(name)->way, ActWay::kMustBe) << name;
  }
}

}  // namespace
}  // namespace quorvale
