// A text that works like a link of the web: it opens an address when it is clicked and looks
// different while the mouse is over it.
#pragma once

#include <functional>
#include <string>

#include "platform/ui/controls.h"

namespace quorvale::ui {

// What a form keeps of the control is set where the form is made: these properties, and the label's
// enabled, font, caption, alignment, border (style and appearance), fore_color and back_color.
class HyperLink : public Label {
 public:
  HyperLink(Form& form, std::string name, std::string text = "");

  // The website or mail address to open when clicked; "" opens nothing.
  Observed<std::string> address{*this, Property::kLook};
  // The color of the text while the mouse is over it.
  Color HoverColor = Rgb(76, 105, 241);
  bool AutoToolTip = true;                                 // the tooltip is the address
  bool MOUnderline = true;                                 // underlined while the mouse is over it
  bool MOPointer = true;                                   // the pointer is a hand over it
  Observed<bool> AutoSize{*this, Property::kLook, false};  // its size follows the caption
  // Kept with the control. Nothing plays the sound.
  bool SoundOn = false;
  int SoundID = 101;

  // Opens an address. Whether that worked is nobody's concern.
  std::function<void(const std::string& address)> open;

  // Polls the mouse while it is over the control.
  Timer myTimer;

  // Shows what this control is.
  void About();

 protected:
  void ApplyClick() override;

 private:
  void BeginHover();
  void EndHover();
  void FollowCaption();

  bool hovered_ = false;
  Color normal_color_ = kDefaultColor;
  bool normal_underline_ = false;
};

}  // namespace quorvale::ui
