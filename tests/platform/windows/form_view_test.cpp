// The windows that forms get.
#include "platform/windows/form_view.h"

#include <gtest/gtest.h>

#include "platform/ui/hyper_link.h"
#include "platform/windows/keyboard.h"
#include "platform/windows/text_calls.h"
#include "platform/windows/ui.h"

namespace quorvale::windows {
namespace {

class Page : public ui::Form {
 public:
  explicit Page(ui::Ui& ui) : ui::Form(ui, "Page") {
    SetSize(400, 300);
    borderless = true;
    name.bounds = {10, 10, 200, 21};
    name.tab_index = 2;
    tick.bounds = {10, 40, 200, 20};
    tick.tab_index = 1;
    first.bounds = {10, 70, 100, 20};
    first.tab_index = 3;
    second.bounds = {120, 70, 100, 20};
    second.tab_index = 4;
    go.bounds = {10, 100, 80, 26};
    go.is_default = true;
    go.tab_index = 5;
    tree.bounds = {10, 130, 200, 100};
    tree.tab_index = 6;
    bar.bounds = {10, 240, 200, 16};
    combo.bounds = {220, 10, 150, 21};
    combo.tab_index = 7;
    go.on_click = [this] { ++clicks; };
  }
  ui::TextBox name{*this, "name", "start"};
  ui::CheckBox tick{*this, "tick", "&Tick"};
  ui::OptionButton first{*this, "first", "First", true};
  ui::OptionButton second{*this, "second", "Second"};
  ui::CommandButton go{*this, "go", "&Go"};
  ui::TreeView tree{*this, "tree"};
  ui::ProgressBar bar{*this, "bar"};
  ui::ComboBox combo{*this, "combo"};
  ui::Timer timer{*this, "timer", 1};
  int clicks = 0;
};

class FormViewTest : public testing::Test {
 protected:
  HWND WindowOf(ui::Control& control) {
    return static_cast<FormView*>(page_.view.get())->WindowOf(control)->handle();
  }
  void PumpFor(int milliseconds) {
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < static_cast<DWORD>(milliseconds)) {
      ui_.Pump();
      Sleep(1);
    }
  }
  void Press(WPARAM key) {
    PostMessageA(GetFocus(), WM_KEYDOWN, key, 0);
    ui_.Pump();
  }

  WindowsUi ui_;
  Page page_{ui_};
};

TEST_F(FormViewTest, TextGoesBothWays) {
  page_.Show();
  EXPECT_EQ(TextOf(WindowOf(page_.name)), "start");
  page_.name.text = "\xD0\x9F \xCE\xA9";
  EXPECT_EQ(TextOf(WindowOf(page_.name)), "\xD0\x9F \xCE\xA9");
  SendText(WindowOf(page_.name), WM_SETTEXT, 0, "typed");
  EXPECT_EQ(page_.name.text.get(), "typed");
}

TEST_F(FormViewTest, ClicksReachTheModel) {
  page_.Show();
  Send(WindowOf(page_.tick), BM_CLICK);
  EXPECT_EQ(page_.tick.value.get(), 1);
  EXPECT_EQ(Send(WindowOf(page_.tick), BM_GETCHECK), BST_CHECKED);
  Send(WindowOf(page_.second), BM_CLICK);
  EXPECT_TRUE(page_.second.value);
  EXPECT_FALSE(page_.first.value);
  EXPECT_EQ(Send(WindowOf(page_.first), BM_GETCHECK), BST_UNCHECKED);
  Send(WindowOf(page_.go), BM_CLICK);
  EXPECT_EQ(page_.clicks, 1);
}

TEST_F(FormViewTest, DisabledAndHiddenControlsAreSo) {
  page_.Show();
  page_.go.enabled = false;
  EXPECT_FALSE(IsWindowEnabled(WindowOf(page_.go)));
  page_.go.visible = false;
  EXPECT_FALSE(IsWindowVisible(WindowOf(page_.go)));
  Send(WindowOf(page_.go), BM_CLICK);
  EXPECT_EQ(page_.clicks, 0);
}

TEST_F(FormViewTest, TabOrderFollowsTheNumbersAndOneOptionOfAGroup) {
  page_.Show();
  const auto order = TabOrder(*static_cast<FormView*>(page_.view.get()));
  std::vector<std::string> names;
  for (const ControlWindow* window : order) names.push_back(window->control().name());
  EXPECT_EQ(names, (std::vector<std::string>{"tick", "name", "first", "go", "tree", "combo"}));
}

TEST_F(FormViewTest, AccessKeyIsBehindTheSingleAmpersand) {
  EXPECT_EQ(AccessKey("&Next >"), 'N');
  EXPECT_EQ(AccessKey("Settings && Con&figurations"), 'F');
  EXPECT_EQ(AccessKey("Plain"), 0);
}

TEST_F(FormViewTest, KeysWorkThePage) {
  page_.Show();
  page_.name.SetFocus();
  ASSERT_EQ(GetFocus(), WindowOf(page_.name));
  Press(VK_TAB);
  EXPECT_EQ(page_.focused, &page_.first);
  Press(VK_DOWN);
  EXPECT_EQ(page_.focused, &page_.second);
  EXPECT_TRUE(page_.second.value);
  Press(VK_RETURN);
  EXPECT_EQ(page_.clicks, 1);
}

TEST_F(FormViewTest, TreeFollowsTheModel) {
  ui::TreeNode* root = page_.tree.Add(nullptr, "r", "Root", "");
  for (int i = 0; i < 500; ++i) page_.tree.Add(root, "", "Child " + std::to_string(i), "");
  page_.Show();
  root->SetExpanded(true);
  root->SetChecked(true);
  PumpFor(100);
  const HWND tree = WindowOf(page_.tree);
  EXPECT_EQ(Send(tree, TVM_GETCOUNT), 501);
  TVITEMA item = {};
  item.mask = TVIF_HANDLE | TVIF_STATE;
  item.hItem = reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, TVGN_ROOT));
  item.stateMask = TVIS_STATEIMAGEMASK;
  Send(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
  EXPECT_EQ(item.state & TVIS_STATEIMAGEMASK, static_cast<UINT>(INDEXTOSTATEIMAGEMASK(2)));
  page_.tree.Clear();
  PumpFor(100);
  EXPECT_EQ(Send(tree, TVM_GETCOUNT), 0);
}

TEST_F(FormViewTest, ClosedBranchesOfALargeTreeAreNotMade) {
  ui::TreeNode* root = page_.tree.Add(nullptr, "r", "Root", "");
  for (int i = 0; i < 50000; ++i) page_.tree.Add(root, "", "Child", "");
  page_.Show();
  PumpFor(50);
  EXPECT_EQ(Send(WindowOf(page_.tree), TVM_GETCOUNT), 1);
}

TEST_F(FormViewTest, ListBarAndTimerWork) {
  page_.combo.AddItem("one");
  page_.combo.AddItem("two");
  page_.Show();
  page_.combo.list_index = 1;
  EXPECT_EQ(TextOf(WindowOf(page_.combo)), "two");
  page_.bar.value = 40;
  EXPECT_EQ(Send(WindowOf(page_.bar), PBM_GETPOS), 40);
  int fired = 0;
  page_.timer.on_timer = [&] {
    ++fired;
    page_.timer.enabled = false;
  };
  page_.timer.enabled = true;
  PumpFor(200);
  EXPECT_EQ(fired, 1);
}

class LinkPage : public ui::Form {
 public:
  explicit LinkPage(ui::Ui& screen) : ui::Form(screen, "LinkPage") {
    SetSize(300, 120);
    link.bounds = {20, 20, 200, 20};
    link.AutoSize = true;
    link.address = "https://quorvale.example/";
    link.fore_color = ui::Rgb(9, 82, 172);
  }
  ui::HyperLink link{*this, "link", "Our home page"};
};

TEST_F(FormViewTest, ALinkIsHoveredUntilTheMouseHasLeftIt) {
  LinkPage page(ui_);
  std::string opened;
  page.link.open = [&](const std::string& address) { opened = address; };
  page.Show();
  PumpFor(50);
  const HWND window = static_cast<FormView*>(page.view.get())->WindowOf(page.link)->handle();
  RECT place;
  GetWindowRect(window, &place);
  EXPECT_EQ(place.right - place.left, page.link.bounds->width);
  EXPECT_LT(page.link.bounds->width, 200);
  SetCursorPos(place.left + 5, place.top + 5);
  PumpFor(50);
  Send(window, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
  EXPECT_EQ(page.link.fore_color.get(), page.link.HoverColor);
  EXPECT_TRUE(ui_.MouseIsOver(page.link));
  PumpFor(300);
  EXPECT_EQ(page.link.fore_color.get(), page.link.HoverColor);
  SetCursorPos(place.right + 60, place.bottom + 40);
  PumpFor(400);
  EXPECT_EQ(page.link.fore_color.get(), ui::Rgb(9, 82, 172));
  Send(window, WM_LBUTTONDOWN, 0, MAKELPARAM(5, 5));
  Send(window, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  EXPECT_EQ(opened, "https://quorvale.example/");
}

TEST_F(FormViewTest, TheKeyboardGuardIsGoneWithTheUserInterface) {
  int asked = 0;
  {
    WindowsUi other;
    other.keyboard_filter = [&](int, std::uint32_t, std::uint32_t, bool) {
      ++asked;
      return false;
    };
    other.GuardKeyboard(true);
    other.GuardKeyboard(true);
    keybd_event('Q', 0, 0, 0);
    keybd_event('Q', 0, KEYEVENTF_KEYUP, 0);
    PumpFor(200);
    EXPECT_GT(asked, 0);
  }
  const int before = asked;
  keybd_event('Q', 0, 0, 0);
  keybd_event('Q', 0, KEYEVENTF_KEYUP, 0);
  PumpFor(200);
  EXPECT_EQ(asked, before);
}

TEST_F(FormViewTest, WindowGoesWithTheForm) {
  HWND window = nullptr;
  {
    Page other(ui_);
    other.Show();
    window = static_cast<FormView*>(other.view.get())->handle();
    EXPECT_TRUE(IsWindowVisible(window));
    other.Hide();
    EXPECT_FALSE(IsWindowVisible(window));
  }
  EXPECT_FALSE(IsWindow(window));
  ui_.Pump();
}

}  // namespace
}  // namespace quorvale::windows
