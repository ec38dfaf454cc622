// Where the controls of the backup pages stand.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "backup/backup_run.h"
#include "core/pages/page_layout.h"

namespace quorvale {
namespace {

using backup_test::BackupRun;

bool Overlap(const ui::Bounds& a, const ui::Bounds& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

bool IsUnseen(const ui::Control& control) {
  return control.kind() == ui::ControlKind::kTimer ||
         (!control.visible && control.bounds->width == 0);
}

// Controls of the page itself that can be seen. A header picture has the heading over it.
std::vector<const ui::Control*> Seen(const ui::Form& page) {
  std::vector<const ui::Control*> seen;
  for (const ui::Control* control : page.controls()) {
    if (IsUnseen(*control) || control->container != nullptr) continue;
    if (control->name() != "PicHeader") seen.push_back(control);
  }
  return seen;
}

void ExpectTidy(const ui::Form& page) {
  SCOPED_TRACE(page.name());
  std::set<int> tabs;
  const std::vector<const ui::Control*> seen = Seen(page);
  EXPECT_GT(seen.size(), 3u);
  for (size_t i = 0; i < seen.size(); ++i) {
    const ui::Bounds& bounds = seen[i]->bounds;
    EXPECT_GT(bounds.width, 0) << seen[i]->name();
    EXPECT_GT(bounds.height, 0) << seen[i]->name();
    EXPECT_GE(bounds.left, page_layout::kStepsWidth) << seen[i]->name();
    EXPECT_LE(bounds.left + bounds.width, page_layout::kPageWidth) << seen[i]->name();
    EXPECT_LE(bounds.top + bounds.height, page_layout::kPageHeight) << seen[i]->name();
    for (size_t j = i + 1; j < seen.size(); ++j) {
      EXPECT_FALSE(Overlap(bounds, seen[j]->bounds))
          << seen[i]->name() << " and " << seen[j]->name();
    }
    if (seen[i]->tab_index >= 0) {
      EXPECT_TRUE(tabs.insert(seen[i]->tab_index).second) << seen[i]->name();
    }
  }
}

TEST(BackupPages, ControlsDoNotOverlap) {
  BackupRun run;
  run.app().Get<FrmWelcome>().Show();
  ExpectTidy(run.app().Get<frmOne>());
  ExpectTidy(run.app().Get<frmThree>());
  ExpectTidy(run.app().Get<FrmBackupMedia>());
  ExpectTidy(run.app().Get<frmfour>());
  ExpectTidy(run.app().Get<frmFinish>());
}

}  // namespace
}  // namespace quorvale
