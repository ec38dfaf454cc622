#include "platform/ui/controls.h"

#include <gtest/gtest.h>

#include "platform/ui/form.h"
#include "platform/ui/headless/headless_ui.h"

namespace quorvale::ui {
namespace {

class ControlsTest : public testing::Test {
 protected:
  HeadlessUi ui_;
  Form form_{ui_, "frmTest"};
};

TEST_F(ControlsTest, ACheckBoxRunsItsHandlerOnEachChangeOfItsValue) {
  CheckBox box(form_, "chkLog", "Save Log");
  int clicks = 0;
  box.on_click = [&] { ++clicks; };
  box.value = 1;
  box.value = 1;
  EXPECT_EQ(clicks, 1) << "the second assignment changes nothing";
  box.Click();
  EXPECT_EQ(box.value, 0);
  EXPECT_EQ(clicks, 2);
}

TEST_F(ControlsTest, OneOptionOfAGroupIsSet) {
  Frame frame(form_, "Frame1");
  OptionButton first(form_, "OptCustBackup", "", true);
  OptionButton second(form_, "OptQuick");
  OptionButton elsewhere(form_, "optOther", "", true);
  elsewhere.container = &frame;
  second.Click();
  EXPECT_TRUE(second.value);
  EXPECT_FALSE(first.value);
  EXPECT_TRUE(elsewhere.value) << "another container is another group";
}

TEST_F(ControlsTest, ADisabledControlOrFormTakesNoClick) {
  CommandButton button(form_, "cmdNext");
  int clicks = 0;
  button.on_click = [&] { ++clicks; };
  button.enabled = false;
  button.Click();
  button.enabled = true;
  form_.SetEnabled(false);
  button.Click();
  EXPECT_EQ(clicks, 0);
  form_.SetEnabled(true);
  button.Click();
  EXPECT_EQ(clicks, 1);
}

TEST_F(ControlsTest, APageTakesNoClickWhileItsHostIsDisabled) {
  PictureBox panel(form_, "PicMainBackupBase");
  Form page(ui_, "frmPage");
  page.host_panel = &panel;
  CommandButton button(page, "cmdNext");
  int clicks = 0;
  button.on_click = [&] { ++clicks; };
  form_.SetEnabled(false);
  button.Click();
  EXPECT_EQ(clicks, 0);
}

TEST_F(ControlsTest, AComboBoxSelectsByTextAndKeepsItsNumbers) {
  ComboBox combo(form_, "cmbCompLevel");
  combo.AddItem("Maximum", 9);
  combo.AddItem("Normal", 6);
  EXPECT_EQ(combo.SelectedText(), "");
  EXPECT_TRUE(combo.SelectText("Normal"));
  EXPECT_EQ(combo.ItemData(combo.list_index), 6);
  EXPECT_FALSE(combo.SelectText("normal"));
  combo.Clear();
  EXPECT_EQ(combo.list_index, -1);
}

TEST_F(ControlsTest, FocusMovesWithItsEvents) {
  TextBox first(form_, "txtpwd");
  TextBox second(form_, "txtpwd2");
  std::string events;
  first.on_got_focus = [&] { events += "+first"; };
  first.on_lost_focus = [&] { events += "-first"; };
  second.on_got_focus = [&] { events += "+second"; };
  first.SetFocus();
  second.SetFocus();
  second.SetFocus();
  EXPECT_EQ(events, "+first-first+second");
  EXPECT_EQ(form_.focused, &second);
}

TEST_F(ControlsTest, AControlIsFoundByNameWithoutRegardToCase) {
  Label label(form_, "lblQuicklinks(0)", "Take Quick Backup");
  EXPECT_EQ(form_.FindControl("LBLQUICKLINKS(0)"), &label);
  EXPECT_EQ(form_.FindControl("none"), nullptr);
}

}  // namespace
}  // namespace quorvale::ui
