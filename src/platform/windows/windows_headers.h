// The system's headers, without the macros that would rename our own functions. Everything in this
// folder includes them through this file.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef OEMRESOURCE
#define OEMRESOURCE
#endif
#include <windows.h>
// windows.h first
#include <commctrl.h>
#include <commdlg.h>
#include <mmsystem.h>
#include <mstask.h>
#include <objbase.h>
#include <oleauto.h>
#include <richedit.h>
#include <shellapi.h>
#include <shlobj.h>
#include <tlhelp32.h>

#undef CopyFile
#undef CreateWindow
#undef DeleteFile
#undef DrawText
#undef GetMessage
#undef GetTimeFormat
#undef LoadImage
#undef MessageBox
#undef MoveFile
#undef PlaySound
#undef RegGetValue
#undef RegSetValue
#undef SendMessage
#undef SetWindowText
