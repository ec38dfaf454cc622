// Pictures, fonts and a surface to draw on. Pictures have transparency, which the oldest systems
// cannot draw, so they are blended here.
//
// A pixel of the form model is a pixel of the screen however dense its dots are, and text is
// measured in pixels too: nothing is cut off where the system uses larger fonts.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "platform/ui/control.h"
#include "platform/windows/windows_headers.h"

namespace quorvale::windows {

// Rows from the top; each pixel blue, green, red, alpha (premultiplied), as a 32-bit bitmap has it.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
};

// Pictures and fonts by their names, made once.
class Drawing {
 public:
  Drawing();
  ~Drawing();
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;

  // The bitmap resource of a name; null if there is none.
  const Picture* Find(const std::string& name);
  HFONT Font(int points, bool bold, bool underline);
  HFONT FontOf(const ui::Control& control);
  HBRUSH Brush(COLORREF color);

 private:
  std::map<std::string, std::unique_ptr<Picture>> pictures_;
  std::map<std::tuple<int, bool, bool>, HFONT> fonts_;
  std::map<COLORREF, HBRUSH> brushes_;
};

COLORREF ToColorRef(ui::Color color, ui::Color fallback);

// A bitmap in memory that is drawn on and then shown at once.
class Canvas {
 public:
  Canvas(int width, int height);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC context() const { return context_; }
  int width() const { return width_; }
  int height() const { return height_; }

  void Fill(const RECT& area, COLORREF color);
  // With its upper left corner there, as far as it lies in `clip`; opacity 0 to 255.
  void Draw(const Picture& picture, int left, int top, const RECT& clip, int opacity = 255);
  // A filled rectangle with a border and round corners.
  void RoundRect(const RECT& area, COLORREF border, COLORREF fill, SIZE corner);
  void Text(const std::string& text, RECT area, HFONT font, COLORREF color, UINT format);
  // The room that a line of text takes.
  void Measure(const std::string& text, RECT* area, HFONT font);
  void ShowOn(HDC target) const;

 private:
  int width_, height_;
  HDC context_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  std::uint32_t* pixels_ = nullptr;
};

// A list of small pictures for a tree, and the place of each name in it.
class PictureList {
 public:
  PictureList(Drawing& drawing, int size);
  ~PictureList();
  PictureList(const PictureList&) = delete;
  PictureList& operator=(const PictureList&) = delete;

  HIMAGELIST handle() const { return list_; }
  // -1 if there is no picture of this name.
  int Place(const std::string& name);

 private:
  Drawing& drawing_;
  int size_;
  HIMAGELIST list_;
  std::map<std::string, int> places_;
};

}  // namespace quorvale::windows
