// Where things stand on a page.
//
// Every wizard page is 780 x 442 pixels at 96 dots per inch and lies over the host panel of the
// main window, at the panel's top left corner. The step list of the main window lies over the left
// 190 pixels of it, so a page puts nothing there:
//
//   0       190  206                                                     766 780
//   +--------+----------------------------------------------------------------+ 0
//   | steps  |  header band: picture and heading                              |
//   |        +----------------------------------------------------------------+ 56
//   |        |                                                                | 66
//   |        |    content: 560 x 322                                          |
//   |        |                                                                | 388
//   |        |                          [ Back ] [ Next ] [ Cancel ]          | 402
//   +--------+----------------------------------------------------------------+ 442
//
// All numbers are pixels at 96 dots per inch, relative to the page.
#pragma once

#include <initializer_list>

#include "core/pages/application.h"
#include "platform/ui/controls.h"
#include "platform/ui/form.h"

namespace quorvale::page_layout {

inline constexpr int kPageWidth = 780;
inline constexpr int kPageHeight = 442;

// The column that the step list covers.
inline constexpr int kStepsWidth = 190;

// The band with the header picture and the heading.
inline constexpr int kHeaderLeft = kStepsWidth;
inline constexpr int kHeaderWidth = kPageWidth - kStepsWidth;
inline constexpr int kHeaderHeight = 56;
inline constexpr int kHeaderPictureWidth = 56;  // what the picture shows, at the band's right end

// What a page has for its own controls.
inline constexpr int kContentLeft = 206;
inline constexpr int kContentTop = 66;
inline constexpr int kContentWidth = 560;
inline constexpr int kContentHeight = 322;
inline constexpr int kContentRight = kContentLeft + kContentWidth;
inline constexpr int kContentBottom = kContentTop + kContentHeight;

// One line of the content: a row of text boxes, labels or check boxes every kRowHeight pixels.
inline constexpr int kRowHeight = 26;
inline constexpr int kLineHeight = 21;

// The buttons at the bottom.
inline constexpr int kButtonTop = 402;
inline constexpr int kButtonWidth = 84;
inline constexpr int kButtonHeight = 26;
inline constexpr int kButtonGap = 8;
inline constexpr int kCancelLeft = kContentRight - kButtonWidth;
inline constexpr int kNextLeft = kCancelLeft - kButtonGap - kButtonWidth;
inline constexpr int kBackLeft = kNextLeft - kButtonGap - kButtonWidth;

// The tab orders of the buttons: behind all controls of the content.
inline constexpr int kBackTab = 900;
inline constexpr int kNextTab = 901;
inline constexpr int kCancelTab = 902;

inline constexpr ui::Color kHeaderColor = ui::Rgb(9, 81, 172);
inline constexpr ui::Color kHeadingColor = ui::Rgb(9, 82, 172);

// Row `row` (from 0) of the content area, over its whole width or from `left` on.
ui::Bounds ContentRow(int row, int left = kContentLeft, int width = kContentWidth,
                      int height = kLineHeight);

// A button beside a text box of that row: a pixel more above and below.
ui::Bounds ButtonInRow(int row, int left, int width);

// Makes a form a page: hosted in the main window's panel, without a frame, with the pages' caption,
// size and rounded corners. Call it at the start of the page's Load.
void HostPage(Application& app, ui::Form& page);

// The row of buttons, with "< &Back", "&Next >" and "&Cancel" where a caption is still empty. A
// null pointer leaves its place free. Next is the default button, Cancel the one for Esc.
void PlaceButtons(ui::CommandButton* back, ui::CommandButton* next, ui::CommandButton* cancel);

// The order in which Tab goes through controls: `first` and the numbers behind it.
void SetTabOrder(std::initializer_list<ui::Control*> controls, int first = 1);

// The header band: its picture, and the heading over it. Either may be null.
void PlaceHeader(ui::PictureBox* picture, ui::Label* heading);

// A line in the first row of the content that says what the page is for.
void PlaceSubheading(ui::Label* subheading);

}  // namespace quorvale::page_layout
