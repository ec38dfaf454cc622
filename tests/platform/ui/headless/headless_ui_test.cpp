#include "platform/ui/headless/headless_ui.h"

#include <gtest/gtest.h>

#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace quorvale::ui {
namespace {

class Page : public Form {
 public:
  explicit Page(Ui& ui) : Form(ui, "Page") {}
  Timer first{*this, "first", 10};
  Timer second{*this, "second", 20};
  Label label{*this, "label"};
};

class HeadlessUiTest : public testing::Test {
 protected:
  HeadlessUiTest() {
    ui_.ticks = [this] { return now_; };
    ui_.loaded_forms = [this] { return std::vector<Form*>{&page_}; };
  }
  static MessageBoxRequest Box(const std::string& text, Buttons buttons = Buttons::kOk) {
    MessageBoxRequest request;
    request.text = text;
    request.buttons = buttons;
    return request;
  }
  HeadlessUi ui_;
  Page page_{ui_};
  std::uint64_t now_ = 1000;
};

TEST_F(HeadlessUiTest, AnExpectedBoxGetsItsAnswer) {
  ui_.ExpectBox(Answer::kYes, "Go on?");
  EXPECT_EQ(ui_.MessageBox(Box("Go on?", Buttons::kYesNo)), Answer::kYes);
  EXPECT_TRUE(ui_.failures.empty());
  EXPECT_TRUE(ui_.ExpectedBoxes().empty());
  ASSERT_EQ(ui_.boxes.size(), 1u);
  EXPECT_EQ(ui_.boxes[0].answer, Answer::kYes);
}

TEST_F(HeadlessUiTest, LineEndsCountAsBlanks) {
  ui_.ExpectBox(Answer::kOk, "one two");
  EXPECT_EQ(ui_.MessageBox(Box("one\r\ntwo \r\n")), Answer::kOk);
  EXPECT_TRUE(ui_.failures.empty());
}

TEST_F(HeadlessUiTest, AnUnexpectedBoxIsAFailureAndTakesTheSafeAnswer) {
  EXPECT_EQ(ui_.MessageBox(Box("Delete all?", Buttons::kYesNo)), Answer::kNo);
  EXPECT_EQ(ui_.MessageBox(Box("Told")), Answer::kOk);
  EXPECT_EQ(ui_.failures.size(), 2u);
}

TEST_F(HeadlessUiTest, ABoxWithAnotherTextIsAFailureAndTheExpectationStays) {
  ui_.ExpectBox(Answer::kOk, "one");
  ui_.MessageBox(Box("two"));
  EXPECT_EQ(ui_.failures.size(), 1u);
  EXPECT_EQ(ui_.ExpectedBoxes(), std::vector<std::string>{"one"});
}

TEST_F(HeadlessUiTest, AnAnswerThatHasNoButtonIsAFailure) {
  ui_.ExpectBox(Answer::kYes, "Told");
  EXPECT_EQ(ui_.MessageBox(Box("Told")), Answer::kOk);
  EXPECT_EQ(ui_.failures.size(), 1u);
}

TEST_F(HeadlessUiTest, DialogsAnswerFromTheirQueues) {
  ui_.ExpectFolder("C:\\A");
  ui_.ExpectFile("C:\\a.obk");
  EXPECT_EQ(ui_.BrowseForFolder("t", ""), "C:\\A");
  EXPECT_EQ(ui_.OpenFileDialog("f|*", ""), "C:\\a.obk");
  EXPECT_TRUE(ui_.failures.empty());
  EXPECT_EQ(ui_.BrowseForFolder("t", ""), "");
  EXPECT_EQ(ui_.failures.size(), 1u);
}

TEST_F(HeadlessUiTest, ATimerFiresInAPumpOnceItIsDue) {
  int fired = 0;
  page_.first.on_timer = [&] { ++fired; };
  page_.first.enabled = true;
  ui_.Pump();
  EXPECT_EQ(fired, 0);
  now_ += 10;
  ui_.Pump();
  EXPECT_EQ(fired, 1);
  ui_.Pump();
  EXPECT_EQ(fired, 1);
  now_ += 10;
  ui_.Pump();
  EXPECT_EQ(fired, 2);
  page_.first.enabled = false;
  now_ += 10;
  ui_.Pump();
  EXPECT_EQ(fired, 2);
}

TEST_F(HeadlessUiTest, TheIdleLoopSkipsWaits) {
  std::string order;
  page_.first.on_timer = [&] {
    order += "1";
    page_.first.enabled = false;
  };
  page_.second.on_timer = [&] {
    order += "2";
    page_.second.enabled = false;
  };
  page_.second.enabled = true;
  page_.first.enabled = true;
  ui_.RunUntilIdle();
  EXPECT_EQ(order, "12");
}

TEST_F(HeadlessUiTest, TheIdleLoopEndsAlsoWithATimerThatNeverStops) {
  int fired = 0;
  page_.first.on_timer = [&] { ++fired; };
  page_.first.enabled = true;
  ui_.RunUntilIdle(100);
  EXPECT_EQ(fired, 10);
}

TEST_F(HeadlessUiTest, ATimerNeverEntersItsOwnHandlerButAnotherMayFireInside) {
  int depth = 0;
  int deepest = 0;
  int seconds = 0;
  page_.first.on_timer = [&] {
    deepest = std::max(deepest, ++depth);
    for (int i = 0; i < 5; ++i) {
      now_ += 20;
      ui_.Pump();
    }
    page_.first.enabled = false;
    --depth;
  };
  page_.second.on_timer = [&] { ++seconds; };
  page_.first.enabled = true;
  page_.second.enabled = true;
  ui_.RunUntilIdle(0);
  now_ += 10;
  ui_.Pump();
  EXPECT_EQ(deepest, 1);
  EXPECT_GE(seconds, 4);
}

TEST_F(HeadlessUiTest, AnActRunsOnceFromInsideAPumpWhenItsConditionHolds) {
  int acts = 0;
  ui_.When([&] { return page_.label.caption.get() == "now"; }, [&] { ++acts; });
  ui_.Pump();
  EXPECT_EQ(acts, 0);
  page_.label.caption = "now";
  ui_.Pump();
  ui_.Pump();
  EXPECT_EQ(acts, 1);
  EXPECT_EQ(ui_.WaitingActs(), 0u);
}

TEST_F(HeadlessUiTest, AModalFormIsWorkedUntilItIsHidden) {
  int turns = 0;
  ui_.modal_handler = [&](Form& form) {
    if (++turns == 3) form.Hide();
    return true;
  };
  page_.ShowModal();
  EXPECT_EQ(turns, 3);
  EXPECT_FALSE(page_.Visible());
  EXPECT_TRUE(ui_.failures.empty());
}

TEST_F(HeadlessUiTest, AModalFormThatNobodyClosesIsAFailureNotAHang) {
  page_.ShowModal();
  EXPECT_FALSE(page_.Visible());
  EXPECT_EQ(ui_.failures.size(), 1u);
}

TEST_F(HeadlessUiTest, TheOutermostStepTidiesUp) {
  int tidied = 0;
  ui_.after_step = [&] { ++tidied; };
  ui_.Step([&] {
    ui_.Pump();
    ui_.RunUntilIdle();
    EXPECT_EQ(tidied, 0);
  });
  EXPECT_EQ(tidied, 1);
}

TEST_F(HeadlessUiTest, NothingFiresAfterQuit) {
  int fired = 0;
  page_.first.on_timer = [&] { ++fired; };
  page_.first.enabled = true;
  ui_.Quit();
  ui_.RunUntilIdle();
  EXPECT_EQ(fired, 0);
  EXPECT_FALSE(ui_.Running());
}

}  // namespace
}  // namespace quorvale::ui
