// Progress bars and the picker of a time of day.
#include "base/text.h"
#include "platform/windows/control_window.h"
#include "platform/windows/form_view.h"

namespace quorvale::windows {
namespace {

class ProgressWindow : public ControlWindow {
 public:
  ProgressWindow(FormView& view, ui::ProgressBar& bar) : ControlWindow(view, bar), bar_(bar) {
    MakeSystem(PROGRESS_CLASSA, 0, BaseStyle() | PBS_SMOOTH, ParentWindow(), Place(), "");
    Prepare();
    ShowValue();
  }

  bool TakesFocus() const override { return false; }

  void Update(ui::Property property) override {
    if (property == ui::Property::kValue || property == ui::Property::kLook) return ShowValue();
    ControlWindow::Update(property);
  }

 private:
  void ShowValue() {
    Send(handle(), PBM_SETRANGE32, 0, bar_.maximum);
    Send(handle(), PBM_SETPOS, static_cast<WPARAM>(bar_.value.get()));
  }
  ui::ProgressBar& bar_;
};

class DateWindow : public ControlWindow {
 public:
  DateWindow(FormView& view, ui::DatePicker& picker)
      : ControlWindow(view, picker), picker_(picker) {
    MakeSystem(DATETIMEPICK_CLASSA, 0, BaseStyle() | DTS_TIMEFORMAT | DTS_UPDOWN, ParentWindow(),
               Place(), "");
    Prepare();
    const std::string format = ReplaceAll(picker.format, "AM/PM", "tt");
    Send(handle(), DTM_SETFORMATA, 0, reinterpret_cast<LPARAM>(format.c_str()));
    ShowValue();
  }

  void Update(ui::Property property) override {
    if (property == ui::Property::kValue) return ShowValue();
    ControlWindow::Update(property);
  }

  LRESULT OnNotify(NMHDR* header) override {
    if (header->code != static_cast<UINT>(DTN_DATETIMECHANGE)) return 0;
    const SYSTEMTIME& time = reinterpret_cast<const NMDATETIMECHANGE*>(header)->st;
    picker_.value.year = time.wYear;
    picker_.value.month = time.wMonth;
    picker_.value.day = time.wDay;
    picker_.value.hour = time.wHour;
    picker_.value.minute = time.wMinute;
    picker_.value.second = time.wSecond;
    picker_.value.weekday = time.wDayOfWeek + 1;
    return 0;
  }

 private:
  void ShowValue() {
    SYSTEMTIME time = {};
    time.wYear = static_cast<WORD>(picker_.value.year);
    time.wMonth = static_cast<WORD>(picker_.value.month);
    time.wDay = static_cast<WORD>(picker_.value.day);
    time.wHour = static_cast<WORD>(picker_.value.hour);
    time.wMinute = static_cast<WORD>(picker_.value.minute);
    time.wSecond = static_cast<WORD>(picker_.value.second);
    Send(handle(), DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&time));
  }
  ui::DatePicker& picker_;
};

}  // namespace

std::unique_ptr<ControlWindow> MakeValueWindow(FormView& view, ui::Control& control) {
  if (control.kind() == ui::ControlKind::kProgressBar) {
    return std::make_unique<ProgressWindow>(view, static_cast<ui::ProgressBar&>(control));
  }
  return std::make_unique<DateWindow>(view, static_cast<ui::DatePicker&>(control));
}

}  // namespace quorvale::windows
