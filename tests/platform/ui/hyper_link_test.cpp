#include "platform/ui/hyper_link.h"

#include <gtest/gtest.h>

#include "platform/ui/form.h"
#include "platform/ui/headless/headless_ui.h"

namespace quorvale::ui {
namespace {

class LinkForm : public Form {
 public:
  explicit LinkForm(Ui& ui) : Form(ui, "LinkForm") {}
  HyperLink link{*this, "link", "Home page"};
};

class HyperLinkTest : public testing::Test {
 protected:
  HyperLinkTest() {
    ui_.loaded_forms = [this] { return std::vector<Form*>{&form_}; };
    link_.address = "https://quorvale.example/";
    link_.fore_color = Rgb(1, 2, 3);
    link_.HoverColor = Rgb(4, 5, 6);
    link_.open = [this](const std::string& address) {
      opened_.push_back(address);
      pointer_while_opening_ = ui_.pointer();
    };
  }
  void Enter() {
    ui_.mouse_over = &link_;
    link_.on_mouse_enter();
  }
  void Leave() {
    ui_.mouse_over = nullptr;
    ui_.RunUntilIdle(1000);
  }

  HeadlessUi ui_;
  LinkForm form_{ui_};
  HyperLink& link_ = form_.link;
  std::vector<std::string> opened_;
  Pointer pointer_while_opening_ = Pointer::kDefault;
};

TEST_F(HyperLinkTest, DefaultsOfANewOne) {
  LinkForm other(ui_);
  EXPECT_EQ(other.link.address.get(), "");
  EXPECT_EQ(other.link.SoundID, 101);
  EXPECT_FALSE(other.link.SoundOn);
  EXPECT_FALSE(other.link.AutoSize);
  EXPECT_EQ(other.link.alignment.get(), Alignment::kLeft);
  EXPECT_EQ(other.link.border.get(), Border::kNone);
  EXPECT_TRUE(other.link.enabled);
  EXPECT_FALSE(other.link.myTimer.enabled);
}

TEST_F(HyperLinkTest, HoverChangesTheLookUntilTheMouseHasLeft) {
  Enter();
  EXPECT_EQ(link_.fore_color.get(), Rgb(4, 5, 6));
  EXPECT_TRUE(link_.underline);
  EXPECT_TRUE(link_.shows_hand);
  EXPECT_EQ(link_.tooltip.get(), "https://quorvale.example/");
  EXPECT_TRUE(link_.myTimer.enabled);
  ui_.RunUntilIdle(1000);  // the mouse stays
  EXPECT_TRUE(link_.underline);
  EXPECT_TRUE(link_.myTimer.enabled);
  Leave();
  EXPECT_EQ(link_.fore_color.get(), Rgb(1, 2, 3));
  EXPECT_FALSE(link_.underline);
  EXPECT_FALSE(link_.myTimer.enabled);
}

TEST_F(HyperLinkTest, AColorThatIsRememberedIsTheNormalOne) {
  Enter();
  link_.on_mouse_enter();  // once more while it is hovered
  Leave();
  EXPECT_EQ(link_.fore_color.get(), Rgb(1, 2, 3));
}

TEST_F(HyperLinkTest, EachPartOfTheHoverLookCanBeSwitchedOff) {
  link_.MOUnderline = false;
  link_.MOPointer = false;
  link_.AutoToolTip = false;
  link_.tooltip = "mine";
  Enter();
  EXPECT_FALSE(link_.underline);
  EXPECT_FALSE(link_.shows_hand);
  EXPECT_EQ(link_.tooltip.get(), "mine");
  EXPECT_EQ(link_.fore_color.get(), Rgb(4, 5, 6));
}

TEST_F(HyperLinkTest, AClickOpensTheAddressUnderTheWaitPointerAndRaisesClick) {
  int clicks = 0;
  link_.on_click = [&] { ++clicks; };
  link_.Click();
  EXPECT_EQ(opened_, std::vector<std::string>{"https://quorvale.example/"});
  EXPECT_EQ(pointer_while_opening_, Pointer::kHourglass);
  EXPECT_EQ(ui_.pointer(), Pointer::kDefault);
  EXPECT_EQ(clicks, 1);
}

TEST_F(HyperLinkTest, ThePointerThatWasThereComesBack) {
  ui_.SetPointer(Pointer::kHourglass);
  link_.Click();
  EXPECT_EQ(ui_.pointer(), Pointer::kHourglass);
}

TEST_F(HyperLinkTest, WithoutAnAddressAClickIsStillRaised) {
  int clicks = 0;
  link_.on_click = [&] { ++clicks; };
  link_.address = "";
  link_.Click();
  EXPECT_TRUE(opened_.empty());
  EXPECT_EQ(clicks, 1);
}

TEST_F(HyperLinkTest, ADisabledOneOpensNothing) {
  link_.enabled = false;
  link_.Click();
  EXPECT_TRUE(opened_.empty());
}

TEST_F(HyperLinkTest, ItsSizeFollowsTheCaptionWhenAsked) {
  link_.bounds = {10, 20, 300, 40};
  link_.caption = "A";
  EXPECT_EQ(link_.bounds->width, 300);
  link_.AutoSize = true;
  const Bounds one = link_.bounds;
  EXPECT_EQ(one.left, 10);
  EXPECT_EQ(one.top, 20);
  EXPECT_LT(one.width, 300);
  EXPECT_LT(one.height, 40);
  link_.caption = "A caption of more letters";
  EXPECT_GT(link_.bounds->width, one.width);
  link_.font_size = 16;
  EXPECT_GT(link_.bounds->height, one.height);
}

TEST_F(HyperLinkTest, AboutShowsABox) {
  ui_.ExpectBox(Answer::kOk, "");
  link_.About();
  ASSERT_EQ(ui_.boxes.size(), 1u);
  EXPECT_EQ(ui_.boxes[0].request.title, "Hyperlink AX II");
}

}  // namespace
}  // namespace quorvale::ui
