// Calls on windows, in UTF-16 where the system has it and in the code page elsewhere.
#pragma once

#include <string>

#include "platform/windows/windows_headers.h"

namespace quorvale::windows {

LRESULT Send(HWND window, UINT message, WPARAM w = 0, LPARAM l = 0);
// The same with a text as the last argument.
LRESULT SendText(HWND window, UINT message, WPARAM w, const std::string& text);
void SetText(HWND window, const std::string& text);
std::string TextOf(HWND window);

// A window of ours: it is told of all its messages, whether its class is ours or the system's.
class Window {
 public:
  Window() = default;
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  HWND handle() const { return handle_; }
  // The object of a window; null if it is none of ours.
  static Window* Of(HWND window);

 protected:
  // Makes a window of the class that knows nothing but this object's Handle. A RaisedError if the
  // system does not take the class.
  void MakeOwn(DWORD extended_style, DWORD style, HWND parent, const RECT& place,
               const std::string& text);
  // Makes a window of one of the system's classes and takes over its messages.
  void MakeSystem(const char* class_name, DWORD extended_style, DWORD style, HWND parent,
                  const RECT& place, const std::string& text);
  // Ends the window; its object hears nothing of it.
  void Destroy();

  virtual LRESULT Handle(UINT message, WPARAM w, LPARAM l);
  // What the window does by itself.
  LRESULT Default(UINT message, WPARAM w, LPARAM l);

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
  // Once in the life of the program. Without its class it has no window at all: the error goes to
  // the outermost level, which reports it and tells the user.
  static void RegisterOwnClass();

  HWND handle_ = nullptr;
  WNDPROC previous_ = nullptr;
};

}  // namespace quorvale::windows
