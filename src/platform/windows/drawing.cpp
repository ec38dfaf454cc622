#include "platform/windows/drawing.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr int kStraightDpi = 96;

// A premultiplied pixel over another one.
std::uint32_t Blend(std::uint32_t below, std::uint32_t pixel, std::uint32_t opacity) {
  std::uint32_t red_blue = pixel & 0xFF00FF;
  std::uint32_t alpha_green = pixel >> 8 & 0xFF00FF;
  if (opacity != 255) {
    alpha_green = (((alpha_green & 0xFF) * opacity / 255) & 0xFF) |
                  (((alpha_green >> 16) * opacity / 255) << 16);
    red_blue =
        (((pixel & 0xFF) * opacity / 255) & 0xFF) | (((pixel >> 16 & 0xFF) * opacity / 255) << 16);
  }
  const std::uint32_t rest = 255 - (alpha_green >> 16);
  red_blue += (((below & 0xFF00FF) * rest + 0x800080) >> 8) & 0xFF00FF;
  const std::uint32_t green =
      (alpha_green & 0xFF) + ((((below >> 8 & 0xFF) * rest + 0x80) >> 8) & 0xFF);
  return red_blue | green << 8;
}

// A 32-bit bitmap resource; nothing else is used.
std::unique_ptr<Picture> LoadPicture(const std::string& name) {
  const HMODULE program = GetModuleHandleA(nullptr);
  const HRSRC found = FindResourceA(program, name.c_str(), RT_BITMAP);
  if (found == nullptr) return nullptr;
  const HGLOBAL loaded = LoadResource(program, found);
  const DWORD size = SizeofResource(program, found);
  const void* data = loaded == nullptr ? nullptr : LockResource(loaded);
  BITMAPINFOHEADER header;
  if (data == nullptr || size < sizeof(header)) return nullptr;
  std::memcpy(&header, data, sizeof(header));
  if (header.biBitCount != 32 || header.biWidth <= 0 || header.biHeight <= 0) return nullptr;
  auto picture = std::make_unique<Picture>();
  picture->width = header.biWidth;
  picture->height = header.biHeight;
  const size_t row = static_cast<size_t>(header.biWidth);
  const size_t count = row * static_cast<size_t>(header.biHeight);
  if (size < header.biSize + count * 4) return nullptr;
  picture->pixels.resize(count);
  const char* bits = static_cast<const char*>(data) + header.biSize;
  for (size_t y = 0; y < static_cast<size_t>(picture->height); ++y) {  // stored from the bottom
    const size_t source = static_cast<size_t>(picture->height) - 1 - y;
    std::memcpy(&picture->pixels[y * row], bits + source * row * 4, row * 4);
  }
  return picture;
}

}  // namespace

Drawing::Drawing() = default;

Drawing::~Drawing() {
  for (const auto& [look, font] : fonts_) DeleteObject(font);
  for (const auto& [color, brush] : brushes_) DeleteObject(brush);
}

const Picture* Drawing::Find(const std::string& name) {
  if (name.empty()) return nullptr;
  const auto found = pictures_.find(name);
  if (found != pictures_.end()) return found->second.get();
  std::unique_ptr<Picture> picture = LoadPicture(name);
  return pictures_.emplace(name, std::move(picture)).first->second.get();
}

HFONT Drawing::Font(int points, bool bold, bool underline) {
  const auto look = std::make_tuple(points, bold, underline);
  const auto found = fonts_.find(look);
  if (found != fonts_.end()) return found->second;
  const int height = -static_cast<int>(std::lround(points * kStraightDpi / 72.0));
  const HFONT font =
      CreateFontA(height, 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, underline ? TRUE : FALSE,
                  FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                  VARIABLE_PITCH | FF_SWISS, "Tahoma");
  fonts_.emplace(look, font);
  return font;
}

HFONT Drawing::FontOf(const ui::Control& control) {
  return Font(control.font_size, control.bold, control.underline);
}

HBRUSH Drawing::Brush(COLORREF color) {
  HBRUSH& brush = brushes_[color];
  if (brush == nullptr) brush = CreateSolidBrush(color);
  return brush;
}

COLORREF ToColorRef(ui::Color color, ui::Color fallback) {
  const ui::Color chosen = color == ui::kDefaultColor ? fallback : color;
  return RGB(chosen >> 16 & 0xFF, chosen >> 8 & 0xFF, chosen & 0xFF);
}

Canvas::Canvas(int width, int height) : width_(std::max(width, 1)), height_(std::max(height, 1)) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width_;
  info.bmiHeader.biHeight = -height_;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  context_ = CreateCompatibleDC(nullptr);
  void* bits = nullptr;
  bitmap_ = CreateDIBSection(context_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  pixels_ = static_cast<std::uint32_t*>(bits);
  if (bitmap_ != nullptr) before_ = SelectObject(context_, bitmap_);
  SetBkMode(context_, TRANSPARENT);
}

Canvas::~Canvas() {
  if (before_ != nullptr) SelectObject(context_, before_);
  if (bitmap_ != nullptr) DeleteObject(bitmap_);
  DeleteDC(context_);
}

void Canvas::Fill(const RECT& area, COLORREF color) {
  const HBRUSH brush = CreateSolidBrush(color);
  FillRect(context_, &area, brush);
  DeleteObject(brush);
}

void Canvas::Draw(const Picture& picture, int left, int top, const RECT& clip, int opacity) {
  if (pixels_ == nullptr) return;
  GdiFlush();
  const int first_x = std::max({0, static_cast<int>(clip.left), left});
  const int last_x = std::min({width_, static_cast<int>(clip.right), left + picture.width});
  const int first_y = std::max({0, static_cast<int>(clip.top), top});
  const int last_y = std::min({height_, static_cast<int>(clip.bottom), top + picture.height});
  for (int y = first_y; y < last_y; ++y) {
    const std::uint32_t* source = &picture.pixels[static_cast<size_t>((y - top) * picture.width)];
    std::uint32_t* target = pixels_ + static_cast<std::ptrdiff_t>(y) * width_;
    for (int x = first_x; x < last_x; ++x) {
      target[x] = Blend(target[x], source[x - left], static_cast<std::uint32_t>(opacity));
    }
  }
}

void Canvas::RoundRect(const RECT& area, COLORREF border, COLORREF fill, SIZE corner) {
  const HPEN pen = CreatePen(PS_SOLID, 1, border);
  const HBRUSH brush = CreateSolidBrush(fill);
  const HGDIOBJ pen_before = SelectObject(context_, pen);
  const HGDIOBJ brush_before = SelectObject(context_, brush);
  ::RoundRect(context_, area.left, area.top, area.right, area.bottom, corner.cx, corner.cy);
  SelectObject(context_, pen_before);
  SelectObject(context_, brush_before);
  DeleteObject(pen);
  DeleteObject(brush);
}

void Canvas::Text(const std::string& text, RECT area, HFONT font, COLORREF color, UINT format) {
  const HGDIOBJ before = SelectObject(context_, font);
  SetTextColor(context_, color);
  if (HasUnicode()) {
    const std::wstring wide = Wide(text);
    DrawTextW(context_, wide.c_str(), static_cast<int>(wide.size()), &area, format);
  } else {
    const std::string ansi = Ansi(text);
    DrawTextA(context_, ansi.c_str(), static_cast<int>(ansi.size()), &area, format);
  }
  SelectObject(context_, before);
}

void Canvas::Measure(const std::string& text, RECT* area, HFONT font) {
  const HGDIOBJ before = SelectObject(context_, font);
  if (HasUnicode()) {
    const std::wstring wide = Wide(text);
    DrawTextW(context_, wide.c_str(), static_cast<int>(wide.size()), area,
              DT_CALCRECT | DT_SINGLELINE);
  } else {
    const std::string ansi = Ansi(text);
    DrawTextA(context_, ansi.c_str(), static_cast<int>(ansi.size()), area,
              DT_CALCRECT | DT_SINGLELINE);
  }
  SelectObject(context_, before);
}

void Canvas::ShowOn(HDC target) const {
  BitBlt(target, 0, 0, width_, height_, context_, 0, 0, SRCCOPY);
}

PictureList::PictureList(Drawing& drawing, int size)
    : drawing_(drawing),
      size_(size),
      list_(ImageList_Create(size, size, ILC_COLOR24 | ILC_MASK, 40, 10)) {}

PictureList::~PictureList() { ImageList_Destroy(list_); }

int PictureList::Place(const std::string& name) {
  const auto found = places_.find(name);
  if (found != places_.end()) return found->second;
  int place = -1;
  if (const Picture* picture = drawing_.Find(name)) {
    // Blended on white, the ground of a tree; what stays empty is left out of the mask.
    constexpr COLORREF kEmpty = RGB(255, 0, 255);
    const HDC screen = GetDC(nullptr);
    const HDC context = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, size_, size_);
    const HGDIOBJ before = SelectObject(context, bitmap);
    Canvas canvas(size_, size_);
    canvas.Fill({0, 0, size_, size_}, RGB(255, 255, 255));
    const int left = (size_ - picture->width) / 2;
    const int top = (size_ - picture->height) / 2;
    canvas.Draw(*picture, left, top, {0, 0, size_, size_});
    canvas.ShowOn(context);
    for (int y = 0; y < size_; ++y) {
      for (int x = 0; x < size_; ++x) {
        const int from_x = x - left, from_y = y - top;
        const bool inside =
            from_x >= 0 && from_x < picture->width && from_y >= 0 && from_y < picture->height;
        const bool empty =
            !inside ||
            picture->pixels[static_cast<size_t>(from_y * picture->width + from_x)] >> 24 < 16;
        if (empty) SetPixel(context, x, y, kEmpty);
      }
    }
    SelectObject(context, before);
    place = ImageList_AddMasked(list_, bitmap, kEmpty);
    DeleteObject(bitmap);
    DeleteDC(context);
    ReleaseDC(nullptr, screen);
  }
  places_.emplace(name, place);
  return place;
}

}  // namespace quorvale::windows
