#include "platform/windows/window_calls.h"

#include "base/run_time_error.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr char kOwnClass[] = "QuorvaleWindow";
constexpr char kObjectProperty[] = "QuorvaleObject";

template <class Class, class Text>
ATOM RegisterWith(ATOM(WINAPI* call)(const Class*), const Text& name, WNDPROC procedure) {
  const HINSTANCE program = GetModuleHandleA(nullptr);
  Class kind = {};
  kind.style = CS_DBLCLKS;
  kind.lpfnWndProc = procedure;
  kind.hInstance = program;
  kind.hIcon = LoadIconA(program, "PROGRAM");
  kind.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  kind.lpszClassName = name.c_str();
  return call(&kind);
}

// A window of the class; `parameter` reaches its first messages.
HWND Create(const char* class_name, DWORD extended_style, DWORD style, HWND parent,
            const RECT& place, const std::string& text, void* parameter) {
  const auto with = [&](auto call, const auto& name, const auto& title) {
    return call(extended_style, name.c_str(), title.c_str(), style, place.left, place.top,
                place.right - place.left, place.bottom - place.top, parent, nullptr,
                GetModuleHandleA(nullptr), parameter);
  };
  return HasUnicode() ? with(CreateWindowExW, Wide(class_name), Wide(text))
                      : with(CreateWindowExA, std::string(class_name), Ansi(text));
}

// Gives a window another procedure; returns the one it had.
WNDPROC ExchangeProcedure(HWND window, WNDPROC procedure) {
  const LONG_PTR next = reinterpret_cast<LONG_PTR>(procedure);
  return reinterpret_cast<WNDPROC>(HasUnicode() ? SetWindowLongPtrW(window, GWLP_WNDPROC, next)
                                                : SetWindowLongPtrA(window, GWLP_WNDPROC, next));
}

}  // namespace

LRESULT Send(HWND window, UINT message, WPARAM w, LPARAM l) {
  return HasUnicode() ? SendMessageW(window, message, w, l) : SendMessageA(window, message, w, l);
}

LRESULT SendText(HWND window, UINT message, WPARAM w, const std::string& text) {
  if (HasUnicode()) {
    return SendMessageW(window, message, w, reinterpret_cast<LPARAM>(Wide(text).c_str()));
  }
  return SendMessageA(window, message, w, reinterpret_cast<LPARAM>(Ansi(text).c_str()));
}

void SetText(HWND window, const std::string& text) {
  if (HasUnicode()) {
    SetWindowTextW(window, Wide(text).c_str());
  } else {
    SetWindowTextA(window, Ansi(text).c_str());
  }
}

std::string TextOf(HWND window) {
  if (HasUnicode()) {
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return FromWide(text.substr(0, static_cast<size_t>(length)));
  }
  std::string text(static_cast<size_t>(GetWindowTextLengthA(window)) + 1, '\0');
  const int length = GetWindowTextA(window, text.data(), static_cast<int>(text.size()));
  return FromAnsi(text.substr(0, static_cast<size_t>(length)));
}

Window::~Window() { Destroy(); }

Window* Window::Of(HWND window) {
  return window == nullptr ? nullptr : static_cast<Window*>(GetPropA(window, kObjectProperty));
}

LRESULT Window::Handle(UINT message, WPARAM w, LPARAM l) { return Default(message, w, l); }

LRESULT Window::Default(UINT message, WPARAM w, LPARAM l) {
  if (HasUnicode()) {
    return previous_ != nullptr ? CallWindowProcW(previous_, handle_, message, w, l)
                                : DefWindowProcW(handle_, message, w, l);
  }
  return previous_ != nullptr ? CallWindowProcA(previous_, handle_, message, w, l)
                              : DefWindowProcA(handle_, message, w, l);
}

LRESULT CALLBACK Window::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_NCCREATE && Of(window) == nullptr) {
    auto* object = static_cast<Window*>(reinterpret_cast<const CREATESTRUCTA*>(l)->lpCreateParams);
    object->handle_ = window;
    SetPropA(window, kObjectProperty, object);
  }
  Window* object = Of(window);
  if (object != nullptr) return object->Handle(message, w, l);
  return HasUnicode() ? DefWindowProcW(window, message, w, l)
                      : DefWindowProcA(window, message, w, l);
}

void Window::RegisterOwnClass() {
  static const ATOM registered =
      HasUnicode() ? RegisterWith(RegisterClassW, Wide(kOwnClass), Procedure)
                   : RegisterWith(RegisterClassA, std::string(kOwnClass), Procedure);
  if (registered != 0) return;
  RunTimeError error;
  error.number = kFirstObjectError;
  error.source = "Window";
  error.description = "The class of the program's windows cannot be registered";
  error.last_dll_error = static_cast<std::int32_t>(GetLastError());
  throw RaisedError(error);
}

void Window::MakeOwn(DWORD extended_style, DWORD style, HWND parent, const RECT& place,
                     const std::string& text) {
  RegisterOwnClass();
  handle_ = Create(kOwnClass, extended_style, style, parent, place, text, this);
}

void Window::MakeSystem(const char* class_name, DWORD extended_style, DWORD style, HWND parent,
                        const RECT& place, const std::string& text) {
  handle_ = Create(class_name, extended_style, style, parent, place, text, nullptr);
  if (handle_ == nullptr) return;
  SetPropA(handle_, kObjectProperty, this);
  previous_ = ExchangeProcedure(handle_, &Window::Procedure);
}

void Window::Destroy() {
  if (handle_ == nullptr) return;
  RemovePropA(handle_, kObjectProperty);
  if (previous_ != nullptr) ExchangeProcedure(handle_, previous_);
  DestroyWindow(handle_);
  handle_ = nullptr;
  previous_ = nullptr;
}

}  // namespace quorvale::windows
