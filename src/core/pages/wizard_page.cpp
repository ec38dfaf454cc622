#include "core/pages/wizard_page.h"

#include <algorithm>

namespace quorvale {
namespace {

const PageRow& RowOf(const Application& app, PageRole role) {
  const std::vector<PageRow>& rows = app.pages().rows;
  return *std::find_if(rows.begin(), rows.end(),
                       [role](const PageRow& row) { return row.role == role; });
}

}  // namespace

WizardPage::WizardPage(Application& app, const char* name, PageRole role)
    : ui::Form(app.ui(), name), app_(app), role_(role) {}

void WizardPage::AllowNext(bool allowed) {
  if (ui::Control* next = FindControl("cmdNext")) next->enabled = allowed;
}

WizardPage& WizardPage::PageOf(PageRole role) { return RowOf(app_, role).page(app_); }

void WizardPage::Replace(const PageRow& row) {
  row.page(app_).Show();
  Hide();
  app_.page_host().MarkStep(row.side, row.step);
}

void WizardPage::GoOnTo(PageRole role) {
  const PageRow& row = RowOf(app_, role);
  WizardPage& next = row.page(app_);
  if (!next.TakeOver()) return;
  Replace(row);
  next.Entered();
}

void WizardPage::SendBackTo(PageRole role) {
  Replace(RowOf(app_, role));
  PageOf(role).SentBack();
}

// Rows of one wizard stand one behind the other; a first page has no Back.
void WizardPage::Back() { Replace(*(&RowOf(app_, role_) - 1)); }

void WizardPage::TellPages(void (WizardPage::*what)()) {
  const StepSide side = RowOf(app_, role_).side;
  for (const PageRow& row : app_.pages().rows) {
    if (row.side != side) continue;
    if (WizardPage* page = row.loaded(app_)) (page->*what)();
  }
}

void WizardPage::Cancel() { app_.page_host().LeavePages(RowOf(app_, role_).side); }

}  // namespace quorvale
