#include "platform/ui/hyper_link.h"

#include "platform/ui/form.h"
#include "platform/ui/ui.h"

namespace quorvale::ui {
namespace {

constexpr char kDesignerTitle[] = "Hyperlink AX II";
constexpr int kPoll = 100;  // milliseconds

}  // namespace

HyperLink::HyperLink(Form& form, std::string name, std::string text)
    : Label(form, name, std::move(text)), myTimer(form, name + ".myTimer", kPoll) {
  is_link = true;
  on_mouse_enter = [this] { BeginHover(); };
  myTimer.on_timer = [this] {
    if (!this->form().ui().MouseIsOver(*this)) EndHover();
  };
  caption.on_change = [this] { FollowCaption(); };
  AutoSize.on_change = [this] { FollowCaption(); };
  bold.on_change = [this] { FollowCaption(); };
  font_size.on_change = [this] { FollowCaption(); };
}

void HyperLink::About() {
  form().ui().MessageBox(
      {.text = std::string(kDesignerTitle) + "\r\nA label that opens a website or email address.",
       .title = kDesignerTitle});
}

void HyperLink::BeginHover() {
  if (hovered_) return;
  hovered_ = true;
  normal_color_ = fore_color;
  normal_underline_ = underline;
  fore_color = HoverColor;
  if (MOUnderline) underline = true;
  shows_hand = MOPointer;
  if (AutoToolTip) tooltip = address;
  myTimer.enabled = true;
}

void HyperLink::EndHover() {
  myTimer.enabled = false;
  hovered_ = false;
  fore_color = normal_color_;
  underline = normal_underline_;
}

void HyperLink::FollowCaption() {
  if (!AutoSize) return;
  const TextSize size = form().ui().SizeOfText(*this, caption);
  Bounds place = bounds;
  place.width = size.width;
  place.height = size.height;
  bounds = place;
}

void HyperLink::ApplyClick() {
  if (!address->empty() && open) {
    Ui& screen = form().ui();
    const Pointer before = screen.CurrentPointer();
    screen.SetPointer(Pointer::kHourglass);
    open(address);
    screen.SetPointer(before);
  }
  Label::ApplyClick();
}

}  // namespace quorvale::ui
