// Where controls stand: inside of what holds them, and not over each other.
#include "core/pages/page_layout.h"

#include <gtest/gtest.h>

#include <set>

#include "backup/pages/FrmBackupMedia.h"
#include "backup/pages/frmFinish.h"
#include "backup/pages/frmOne.h"
#include "backup/pages/frmThree.h"
#include "backup/pages/frmfour.h"
#include "core/main/FrmMinimize.h"
#include "core/main/FrmQuickSteps.h"
#include "core/main/FrmWelcome.h"
#include "core/main/frmAbout.h"
#include "core/main/frmSettings.h"
#include "core/main/frmStartUp.h"
#include "core/pages/frmAccount.h"
#include "logs/pages/frmLogs.h"
#include "support/test_machine.h"

namespace quorvale {
namespace {

bool Overlap(const ui::Bounds& a, const ui::Bounds& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

// The step lists, of which one shows, and the two views of the main window.
bool ShareAPlace(const ui::Control& a, const ui::Control& b) {
  const auto is_layer = [](const ui::Control& control) {
    for (const char* name :
         {"ImgBackupGradient", "ImgRestoreGradient", "ImgProgramSettings", "ImgScheduleOptions",
          "ImgLogGradient", "PicHomeBase", "PicMainBackupBase"}) {
      if (control.name() == name) return true;
    }
    return false;
  };
  return is_layer(a) && is_layer(b);
}

// Timers, and what is never shown and so has no place.
bool HasNoPlace(const ui::Control& control) {
  return control.kind() == ui::ControlKind::kTimer ||
         (!control.visible && control.bounds->width == 0);
}

void ExpectTidy(const ui::Form& form) {
  for (const ui::Control* control : form.controls()) {
    if (HasNoPlace(*control)) continue;
    const ui::Bounds& place = control->bounds.get();
    EXPECT_GT(place.width, 0) << form.name() << "." << control->name();
    EXPECT_GT(place.height, 0) << form.name() << "." << control->name();
    const int width = control->container ? control->container->bounds->width : form.Width();
    const int height = control->container ? control->container->bounds->height : form.Height();
    EXPECT_GE(place.left, 0) << form.name() << "." << control->name();
    EXPECT_GE(place.top, 0) << form.name() << "." << control->name();
    EXPECT_LE(place.left + place.width, width) << form.name() << "." << control->name();
    EXPECT_LE(place.top + place.height, height) << form.name() << "." << control->name();
    for (const ui::Control* other : form.controls()) {
      if (other == control || other->container != control->container) continue;
      if (HasNoPlace(*other) || ShareAPlace(*control, *other)) continue;
      EXPECT_FALSE(Overlap(place, other->bounds.get()))
          << form.name() << ": " << control->name() << " and " << other->name();
    }
  }
}

TEST(PageLayout, NoControlLiesOverAnother) {
  TestMachine machine;
  Application& app = machine.app();
  ExpectTidy(app.Get<FrmWelcome>());
  ExpectTidy(app.Get<frmSettings>());
  ExpectTidy(app.Get<frmStartUp>());
  ExpectTidy(app.Get<frmLogs>());
  ExpectTidy(app.Get<frmAbout>());
  ExpectTidy(app.Get<frmAccount>());
  ExpectTidy(app.Get<FrmQuickSteps>());
  ExpectTidy(app.Get<FrmMinimize>());
}

TEST(PageLayout, NoControlOfABackupPageLiesOverAnother) {
  TestMachine machine;
  Application& app = machine.app();
  ExpectTidy(app.Get<frmOne>());
  ExpectTidy(app.Get<frmThree>());
  ExpectTidy(app.Get<FrmBackupMedia>());
  ExpectTidy(app.Get<frmfour>());
  ExpectTidy(app.Get<frmFinish>());
}

TEST(PageLayout, PagesKeepOffTheStepListAndGiveEachControlATabPlaceOfItsOwn) {
  TestMachine machine;
  Application& app = machine.app();
  for (const ui::Form* page : std::initializer_list<const ui::Form*>{
           &app.Get<frmSettings>(), &app.Get<frmStartUp>(), &app.Get<frmLogs>(), &app.Get<frmOne>(),
           &app.Get<frmThree>(), &app.Get<FrmBackupMedia>(), &app.Get<frmfour>(),
           &app.Get<frmFinish>()}) {
    SCOPED_TRACE(page->name());
    std::set<int> tabs;
    for (const ui::Control* control : page->controls()) {
      if (control->container != nullptr || HasNoPlace(*control)) continue;
      EXPECT_GE(control->bounds->left, page_layout::kStepsWidth) << control->name();
      if (control->tab_index < 0) continue;
      EXPECT_TRUE(tabs.insert(control->tab_index).second) << control->name();
    }
  }
}

TEST(PageLayout, AHostedPageFillsTheHostPanel) {
  TestMachine machine;
  Application& app = machine.app();
  ui::Form page(app.ui(), "page");
  page_layout::HostPage(app, page);
  const ui::PictureBox& panel = app.Get<FrmWelcome>().PicMainBackupBase;
  EXPECT_EQ(page.host_panel, &panel);
  EXPECT_EQ(page.Width(), panel.bounds->width);
  EXPECT_EQ(page.Height(), panel.bounds->height);
  EXPECT_TRUE(page.borderless);
  EXPECT_EQ(page.Caption(), "Quorvale - Backup Data");
}

TEST(PageLayout, TheButtonsStandInARowWithTheirUsualCaptions) {
  TestMachine machine;
  ui::Form page(machine.app().ui(), "page");
  ui::CommandButton back(page, "cmdBack"), next(page, "cmdNext", "Begin"),
      cancel(page, "cmdCancel");
  page_layout::PlaceButtons(&back, &next, &cancel);
  EXPECT_EQ(back.caption.get(), "< &Back");
  EXPECT_EQ(next.caption.get(), "Begin");
  EXPECT_EQ(cancel.caption.get(), "&Cancel");
  EXPECT_LT(back.bounds->left + back.bounds->width, next.bounds->left + 1);
  EXPECT_LT(next.bounds->left + next.bounds->width, cancel.bounds->left + 1);
  EXPECT_TRUE(next.is_default);
  EXPECT_TRUE(cancel.is_cancel);
  page_layout::PlaceButtons(nullptr, nullptr, nullptr);
}

}  // namespace
}  // namespace quorvale
