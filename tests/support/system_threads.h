// The threads of the system that the tests run on.
#pragma once

#ifdef _WIN32
#include "platform/windows/threads.h"
#else
#include "platform/host/threads.h"
#endif

namespace quorvale {

#ifdef _WIN32
using SystemThreads = windows::WindowsThreads;
#else
using SystemThreads = host::HostThreads;
#endif

}  // namespace quorvale
