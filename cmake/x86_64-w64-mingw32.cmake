# 64-bit Windows, only for testing where 32-bit Wine cannot be had.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(QUORVALE_TRIPLE x86_64-w64-mingw32)
set(QUORVALE_MACHINE "")
set(QUORVALE_SUBSYSTEM_VERSION "")
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
