// Labels, pictures, picture buttons and frames: windows that paint themselves.
#include "platform/windows/control_window.h"
#include "platform/windows/form_view.h"
#include "platform/windows/text_calls.h"
#include "platform/windows/ui.h"

namespace quorvale::windows {
namespace {

constexpr ui::Color kBlack = ui::Rgb(0, 0, 0);
constexpr ui::Color kGrey = ui::Rgb(140, 140, 140);
constexpr ui::Color kLink = ui::Rgb(9, 82, 172);
constexpr COLORREF kFrameBorder = RGB(209, 221, 246);
constexpr COLORREF kWhite = RGB(255, 255, 255);

class DrawnWindow : public ControlWindow {
 public:
  DrawnWindow(FormView& view, ui::Control& control) : ControlWindow(view, control) {}

 protected:
  void Make(DWORD style, const std::string& text) {
    MakeOwn(0, BaseStyle() | style, ParentWindow(), Place(), text);
    Prepare();
  }
  RECT AreaAt(Origin origin) const {
    const ui::Bounds bounds = control().bounds;
    return {origin.x, origin.y, origin.x + bounds.width, origin.y + bounds.height};
  }
  bool Clickable() const { return control().on_click != nullptr; }

  std::optional<LRESULT> OnMessage(UINT message, WPARAM, LPARAM l) override {
    switch (message) {
      case WM_ERASEBKGND:
        return 1;
      case WM_PAINT:
        PaintWindow();
        return 0;
      case WM_LBUTTONDOWN: {
        if (OwnClicks()) return std::nullopt;
        POINT point = {static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l))};
        if (view().DragFrom(handle(), point.x, point.y)) return 0;
        return std::nullopt;
      }
      case WM_SETCURSOR:
        if (view().ui().pointer() == ui::Pointer::kDefault && ShowsHand()) {
          SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32649)));  // the hand, or none: arrow
          if (GetCursor() == nullptr) SetCursor(LoadCursorA(nullptr, IDC_ARROW));
          return TRUE;
        }
        return std::nullopt;
      default:
        return std::nullopt;
    }
  }
  virtual bool ShowsHand() const { return false; }
};

class LabelWindow : public DrawnWindow {
 public:
  LabelWindow(FormView& view, ui::Label& label) : DrawnWindow(view, label), label_(label) {
    Make(0, label.caption);
  }

  bool TakesFocus() const override { return label_.is_link; }
  std::string AccessText() const override { return label_.caption; }

  void Update(ui::Property property) override {
    if (property == ui::Property::kText) SetText(handle(), label_.caption);
    DrawnWindow::Update(property);
  }

  void PaintContent(Canvas& canvas, Origin origin) override {
    RECT area = AreaAt(origin);
    if (label_.back_color != ui::kDefaultColor) {
      canvas.Fill(area, ToColorRef(label_.back_color, kBlack));
    }
    // A link without a look of its own is told from plain text by colour and line.
    const bool plain_link = label_.is_link && label_.fore_color == ui::kDefaultColor;
    const COLORREF color = label_.enabled
                               ? ToColorRef(label_.fore_color, plain_link ? kLink : kBlack)
                               : ToColorRef(kGrey, kGrey);
    const HFONT font =
        plain_link ? drawing().Font(label_.font_size, label_.bold, true) : drawing().FontOf(label_);
    // One line stands in the middle of its height, as the text of a box beside it does.
    const int line = label_.font_size * 2;
    const bool one_line = area.bottom - area.top < 2 * line;
    const UINT format = one_line ? DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS : DT_WORDBREAK;
    DrawBorder(canvas, area);
    canvas.Text(label_.caption, area, font, color, format | AlignmentFormat());
    if (GetFocus() == handle()) DrawFocusRect(canvas.context(), &area);
  }

 protected:
  bool OwnClicks() const override { return Clickable() || label_.is_link; }
  bool ShowsHand() const override { return label_.shows_hand && (label_.is_link || Clickable()); }
  std::optional<LRESULT> OnMessage(UINT message, WPARAM w, LPARAM l) override {
    if (message == WM_KILLFOCUS || message == WM_SETFOCUS) Invalidate();
    return DrawnWindow::OnMessage(message, w, l);
  }

 private:
  void DrawBorder(Canvas& canvas, RECT& area) {
    if (label_.border == ui::Border::kFlat) {
      DrawEdge(canvas.context(), &area, BDR_SUNKENOUTER, BF_RECT | BF_FLAT | BF_ADJUST);
    } else if (label_.border == ui::Border::kSunken) {
      DrawEdge(canvas.context(), &area, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    }
  }
  UINT AlignmentFormat() const {
    if (label_.alignment == ui::Alignment::kRight) return DT_RIGHT;
    return label_.alignment == ui::Alignment::kCenter ? DT_CENTER : DT_LEFT;
  }

  ui::Label& label_;
};

class PictureWindow : public DrawnWindow {
 public:
  PictureWindow(FormView& view, ui::PictureBox& box) : DrawnWindow(view, box), box_(box) {
    Make(WS_CLIPCHILDREN, "");
  }

  bool TakesFocus() const override { return false; }

  void PaintContent(Canvas& canvas, Origin origin) override {
    const RECT area = AreaAt(origin);
    if (box_.border_color != ui::kDefaultColor) {
      const SIZE corner = {(area.right - area.left) * box_.corner_percent / 100,
                           (area.bottom - area.top) * box_.corner_percent / 100};
      canvas.RoundRect(area, ToColorRef(box_.border_color, kBlack), GroundColor(), corner);
    } else if (box_.back_color != ui::kDefaultColor) {
      canvas.Fill(area, ToColorRef(box_.back_color, kBlack));
    }
    const HRGN clip = CreateRectRgn(area.left, area.top, area.right, area.bottom);
    SelectClipRgn(canvas.context(), clip);
    DrawPicture(canvas, box_.picture, area, 0, 0);
    for (const ui::PictureBox::Overlay& overlay : box_.overlays) {
      DrawPicture(canvas, overlay.picture, area, overlay.left, overlay.top);
    }
    SelectClipRgn(canvas.context(), nullptr);
    DeleteObject(clip);
  }

 protected:
  bool OwnClicks() const override { return Clickable(); }

 private:
  // A picture does not reach beyond its box.
  void DrawPicture(Canvas& canvas, const std::string& name, const RECT& area, int left, int top) {
    if (const Picture* picture = drawing().Find(name)) {
      canvas.Draw(*picture, area.left + left, area.top + top, area);
    }
  }

  ui::PictureBox& box_;
};

class FrameWindow : public DrawnWindow {
 public:
  FrameWindow(FormView& view, ui::Frame& frame) : DrawnWindow(view, frame), frame_(frame) {
    Make(WS_CLIPCHILDREN, frame.caption);
  }

  bool TakesFocus() const override { return false; }

  void Update(ui::Property property) override {
    if (property == ui::Property::kText) SetText(handle(), frame_.caption);
    DrawnWindow::Update(property);
  }

  void PaintContent(Canvas& canvas, Origin origin) override {
    RECT area = AreaAt(origin);
    const std::string& caption = frame_.caption;
    const HFONT font = drawing().Font(frame_.font_size, true, false);
    const int text_height = frame_.font_size * 2;
    RECT border = area;
    if (!caption.empty()) border.top += text_height / 2;
    const COLORREF ground = GroundColor();
    canvas.RoundRect(border, kFrameBorder, ground, {kCorner, kCorner});
    if (caption.empty()) return;
    RECT text = {area.left + kTextLeft, area.top, area.right - kTextLeft, area.top + text_height};
    RECT measured = {0, 0, 0, 0};
    canvas.Measure(caption, &measured, font);
    const RECT behind = {text.left - 4, text.top, text.left + measured.right + 4, text.bottom};
    canvas.Fill(behind, ground);
    canvas.Text(caption, text, font, ToColorRef(frame_.fore_color, ui::Rgb(9, 82, 172)),
                DT_SINGLELINE | DT_VCENTER);
  }

 private:
  static constexpr int kCorner = 6;
  static constexpr int kTextLeft = 10;
  ui::Frame& frame_;
};

class ImageButtonWindow : public DrawnWindow {
 public:
  ImageButtonWindow(FormView& view, ui::ImageButton& button)
      : DrawnWindow(view, button), button_(button) {
    Make(0, button.caption);
  }

  std::string AccessText() const override { return button_.caption; }

  void Update(ui::Property property) override {
    if (property == ui::Property::kText) SetText(handle(), button_.caption);
    DrawnWindow::Update(property);
  }

  void PaintContent(Canvas& canvas, Origin origin) override {
    const RECT area = AreaAt(origin);
    const bool focused = GetFocus() == handle();
    const std::string* name = &button_.normal_picture;
    if (button_.enabled && MousePressed() && MouseInside()) {
      name = &button_.pressed_picture;
    } else if (button_.enabled && (MouseInside() || focused)) {
      name = &button_.hover_picture;
    }
    const Picture* picture = drawing().Find(*name);
    if (picture == nullptr) picture = drawing().Find(button_.normal_picture);
    if (picture != nullptr) {
      canvas.Draw(*picture, area.left, area.top, area, button_.enabled ? 255 : kDisabledOpacity);
    } else {
      RECT text = area;
      DrawFrameControl(canvas.context(), &text, DFC_BUTTON, DFCS_BUTTONPUSH);
      canvas.Text(button_.caption, text, drawing().FontOf(button_), kTextColor,
                  DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    }
    if (focused) {
      RECT inner = area;
      InflateRect(&inner, -2, -2);
      DrawFocusRect(canvas.context(), &inner);
    }
  }

 protected:
  bool OwnClicks() const override { return true; }
  std::optional<LRESULT> OnMessage(UINT message, WPARAM w, LPARAM l) override {
    switch (message) {
      case WM_SETFOCUS:
      case WM_KILLFOCUS:
        Invalidate();
        break;
      case WM_KEYDOWN:
        if (w == VK_SPACE) {
          OnClick();
          return 0;
        }
        break;
      case BM_CLICK:
        OnClick();
        return 0;
      default:
        break;
    }
    return DrawnWindow::OnMessage(message, w, l);
  }

 private:
  static constexpr int kDisabledOpacity = 110;
  static constexpr COLORREF kTextColor = RGB(0, 0, 0);
  ui::ImageButton& button_;
};

}  // namespace

std::unique_ptr<ControlWindow> MakeDrawnWindow(FormView& view, ui::Control& control) {
  switch (control.kind()) {
    case ui::ControlKind::kLabel:
      return std::make_unique<LabelWindow>(view, static_cast<ui::Label&>(control));
    case ui::ControlKind::kPictureBox:
      return std::make_unique<PictureWindow>(view, static_cast<ui::PictureBox&>(control));
    case ui::ControlKind::kFrame:
      return std::make_unique<FrameWindow>(view, static_cast<ui::Frame&>(control));
    default:
      return std::make_unique<ImageButtonWindow>(view, static_cast<ui::ImageButton&>(control));
  }
}

}  // namespace quorvale::windows
