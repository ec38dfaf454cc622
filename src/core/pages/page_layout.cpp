#include "core/pages/page_layout.h"

#include "core/pages/page_procedures.h"
#include "core/program/ModGlobal.h"

namespace quorvale::page_layout {
namespace {

void PlaceButton(ui::CommandButton* button, int left, int tab, const char* caption) {
  if (button == nullptr) return;
  button->bounds = {left, kButtonTop, kButtonWidth, kButtonHeight};
  button->tab_index = tab;
  if (button->caption->empty()) button->caption = caption;
}

}  // namespace

ui::Bounds ContentRow(int row, int left, int width, int height) {
  return {left, kContentTop + row * kRowHeight, width, height};
}

ui::Bounds ButtonInRow(int row, int left, int width) {
  return {left, kContentTop + row * kRowHeight - 1, width, kLineHeight + 2};
}

void HostPage(Application& app, ui::Form& page) {
  page.host_panel = &app.page_host().panel();
  page.borderless = true;
  page.back_color = ui::Rgb(255, 255, 255);
  page.SetCaption("Quorvale - Backup Data");
  page.SetSize(kPageWidth, kPageHeight);
  RoundPage(app, page);
}

void PlaceButtons(ui::CommandButton* back, ui::CommandButton* next, ui::CommandButton* cancel) {
  PlaceButton(back, kBackLeft, kBackTab, "< &Back");
  PlaceButton(next, kNextLeft, kNextTab, "&Next >");
  PlaceButton(cancel, kCancelLeft, kCancelTab, "&Cancel");
  if (next != nullptr) next->is_default = true;
  if (cancel != nullptr) cancel->is_cancel = true;
}

void SetTabOrder(std::initializer_list<ui::Control*> controls, int first) {
  for (ui::Control* control : controls) control->tab_index = first++;
}

void PlaceSubheading(ui::Label* subheading) {
  subheading->bounds = ContentRow(0);
  subheading->bold = true;
  subheading->fore_color = kHeadingColor;
}

void PlaceHeader(ui::PictureBox* picture, ui::Label* heading) {
  if (picture != nullptr) picture->bounds = {kHeaderLeft, 0, kHeaderWidth, kHeaderHeight};
  if (heading == nullptr) return;
  heading->container = picture;
  const int left = picture == nullptr ? kContentLeft : kContentLeft - kHeaderLeft;
  heading->bounds = {left, 18, kContentWidth - kHeaderPictureWidth, 22};
  heading->fore_color = kHeaderColor;
  heading->font_size = 11;
  heading->bold = true;
}

}  // namespace quorvale::page_layout
