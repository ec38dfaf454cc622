// The keyboard's way over the pages: with Tab the eye follows, and no access key names two things.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <vector>

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmMinimize.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmAbout.h"
#include "core/main/frmSettings.h"
#include "core/main/frmStartUp.h"
#include "core/pages/frmAccount.h"
#include "discovery/pages/FrmTwo.h"
#include "logs/pages/frmLogs.h"
#include "restore/pages/frmRFinish.h"
#include "restore/pages/frmROne.h"
#include "restore/pages/frmRTwo.h"
#include "restore/pages/frmRfour.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

using ui::ControlKind;

std::vector<const ui::Form*> AllPages(Application& app) {
  return {&app.Get<FrmWelcome>(), &app.Get<frmOne>(),         &app.Get<FrmTwo>(),
          &app.Get<frmThree>(),   &app.Get<FrmBackupMedia>(), &app.Get<frmfour>(),
          &app.Get<frmFinish>(),  &app.Get<frmROne>(),        &app.Get<frmRTwo>(),
          &app.Get<frmRfour>(),   &app.Get<frmRFinish>(),     &app.Get<frmSettings>(),
          &app.Get<frmStartUp>(), &app.Get<frmLogs>(),        &app.Get<frmAbout>(),
          &app.Get<frmAccount>(), &app.Get<FrmMinimize>()};
}

// The keyboard can be in it, as in a window of its kind.
bool TakesFocus(const ui::Control& control) {
  switch (control.kind()) {
    case ControlKind::kPictureBox:
    case ControlKind::kFrame:
    case ControlKind::kProgressBar:
    case ControlKind::kTimer:
      return false;
    case ControlKind::kLabel:
      return static_cast<const ui::Label&>(control).is_link;
    default:
      return control.bounds->width > 0;
  }
}

// Where a control stands on its form.
ui::Bounds OnForm(const ui::Control& control) {
  ui::Bounds place = control.bounds;
  for (const ui::Control* each = control.container; each != nullptr; each = each->container) {
    place.left += each->bounds->left;
    place.top += each->bounds->top;
  }
  return place;
}

// In the order in which Tab visits them; those without a number come last, as they are declared.
std::vector<const ui::Control*> TabOrder(const ui::Form& form) {
  std::vector<const ui::Control*> order;
  for (const ui::Control* control : form.controls()) {
    if (TakesFocus(*control) && control->IsShown()) order.push_back(control);
  }
  std::stable_sort(order.begin(), order.end(), [](const ui::Control* a, const ui::Control* b) {
    return static_cast<unsigned>(a->tab_index) < static_cast<unsigned>(b->tab_index);
  });
  return order;
}

char AccessKey(const std::string& caption) {
  for (size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    if (caption[i + 1] != '&') return static_cast<char>(std::toupper(caption[i + 1]));
    ++i;
  }
  return 0;
}

std::string Caption(const ui::Control& control) {
  switch (control.kind()) {
    case ControlKind::kLabel:
      return static_cast<const ui::Label&>(control).caption;
    case ControlKind::kCheckBox:
      return static_cast<const ui::CheckBox&>(control).caption;
    case ControlKind::kOptionButton:
      return static_cast<const ui::OptionButton&>(control).caption;
    case ControlKind::kCommandButton:
      return static_cast<const ui::CommandButton&>(control).caption;
    case ControlKind::kImageButton:
      return static_cast<const ui::ImageButton&>(control).caption;
    default:
      return "";
  }
}

TEST(TabOrder, EachNextControlOfAPageStandsBelowOrToTheRight) {
  TestMachine machine;
  for (const ui::Form* page : AllPages(machine.app())) {
    if (page->host_panel == nullptr) continue;
    const std::vector<const ui::Control*> order = TabOrder(*page);
    EXPECT_FALSE(order.empty()) << page->name();
    for (size_t i = 1; i < order.size(); ++i) {
      const ui::Bounds before = OnForm(*order[i - 1]);
      const ui::Bounds next = OnForm(*order[i]);
      EXPECT_TRUE(next.top >= before.top + before.height || next.left >= before.left + before.width)
          << page->name() << ": " << order[i]->name() << " behind " << order[i - 1]->name();
    }
  }
}

TEST(TabOrder, HomePageGoesFromTheLargeButtonsOverTheLinksToTheFrame) {
  TestMachine machine;
  std::vector<std::string> names;
  for (const ui::Control* control : TabOrder(machine.app().Get<FrmWelcome>())) {
    names.push_back(control->name());
  }
  EXPECT_EQ(names,
            (std::vector<std::string>{
                "cmdWC_TakeBackup", "cmdWC_Restore", "lblQuicklinks(0)", "lblQuicklinks(1)",
                "lblQuicklinks(2)", "CmdWC_Home", "CmdWC_ViewLog", "CmdWC_Help", "CmdWC_Minimize",
                "CmdWC_Close", "CmdSupport", "CmdWebsite", "CmdOther", "CmdAbout"}));
}

TEST(TabOrder, EachControlOfAPageHasAPlaceOfItsOwnInIt) {
  TestMachine machine;
  for (const ui::Form* page : AllPages(machine.app())) {
    std::map<int, std::string> taken;
    for (const ui::Control* control : TabOrder(*page)) {
      EXPECT_GE(control->tab_index, 0) << page->name() << "." << control->name();
      const auto [other, is_new] = taken.emplace(control->tab_index, control->name());
      EXPECT_TRUE(is_new) << page->name() << "." << control->name() << " and " << other->second;
    }
  }
}

TEST(TabOrder, NoAccessKeyNamesTwoControlsOfAPage) {
  TestMachine machine;
  for (const ui::Form* page : AllPages(machine.app())) {
    std::map<char, std::string> taken;
    for (const ui::Control* control : page->controls()) {
      const char key = AccessKey(Caption(*control));
      if (key == 0 || control->bounds->width == 0) continue;
      const auto [other, is_new] = taken.emplace(key, control->name());
      EXPECT_TRUE(is_new) << page->name() << ": Alt+" << key << " for " << control->name()
                          << " and " << other->second;
    }
  }
}

// The control that a plain label names, by the rule of the windows: the next in the tab order, or
// for a label without a place there the one that is declared next.
const ui::Control* NamedBy(const ui::Form& form, const ui::Control& label) {
  const ui::Control* named = nullptr;
  bool behind = false;
  for (const ui::Control* control : form.controls()) {
    if (control == &label) behind = true;
    if (control == &label || !TakesFocus(*control)) continue;
    if (label.tab_index < 0) {
      if (behind) return control;
    } else if (control->tab_index > label.tab_index &&
               (named == nullptr || control->tab_index < named->tab_index)) {
      named = control;
    }
  }
  return named;
}

TEST(TabOrder, AnAccessKeyOfALabelLeadsToTheBoxBesideOrBelowIt) {
  TestMachine machine;
  int labels = 0;
  for (const ui::Form* page : AllPages(machine.app())) {
    for (const ui::Control* label : page->controls()) {
      const bool is_label = label->kind() == ControlKind::kLabel && !TakesFocus(*label);
      if (!is_label || AccessKey(Caption(*label)) == 0) continue;
      ++labels;
      const ui::Control* named = NamedBy(*page, *label);
      ASSERT_NE(named, nullptr) << page->name() << "." << label->name();
      const ui::Bounds from = OnForm(*label), to = OnForm(*named);
      const bool beside = to.top < from.top + from.height && from.top < to.top + to.height;
      const bool below = to.top >= from.top + from.height && to.top <= from.top + 30;
      EXPECT_TRUE(beside || below)
          << page->name() << ": " << label->name() << " leads to " << named->name();
    }
  }
  EXPECT_GT(labels, 5);
}

TEST(TabOrder, EveryWizardPageHasAButtonForEnterAndOneForEsc) {
  TestMachine machine;
  for (const ui::Form* page : AllPages(machine.app())) {
    if (page->host_panel == nullptr) continue;
    int defaults = 0, cancels = 0;
    for (const ui::Control* control : page->controls()) {
      if (control->kind() != ControlKind::kCommandButton) continue;
      const auto& button = static_cast<const ui::CommandButton&>(*control);
      defaults += button.is_default ? 1 : 0;
      cancels += button.is_cancel ? 1 : 0;
    }
    EXPECT_LE(defaults, 1) << page->name();
    EXPECT_EQ(cancels, 1) << page->name();
  }
}

}  // namespace
}  // namespace quorvale
