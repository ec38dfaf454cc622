# 32-bit Windows: the product. It runs from Windows 98 and NT 4 on, whose loader asks for
# subsystem version 4.0 and whose processors have no more than the plain i686.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(QUORVALE_TRIPLE i686-w64-mingw32)
set(QUORVALE_MACHINE "-march=i686")
set(QUORVALE_SUBSYSTEM_VERSION "-Wl,--major-subsystem-version=4,--minor-subsystem-version=0,--major-os-version=4,--minor-os-version=0")
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
