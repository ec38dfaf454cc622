# What both Windows toolchain files share; QUORVALE_TRIPLE is set before. The program is one file,
# cross-compiled with mingw-w64's Win32-thread compiler.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${QUORVALE_TRIPLE}-gcc-win32)
set(CMAKE_CXX_COMPILER ${QUORVALE_TRIPLE}-g++-win32)
set(CMAKE_RC_COMPILER ${QUORVALE_TRIPLE}-windres)

# What tools/setup.sh built for Windows, beside what the distribution has.
get_filename_component(QUORVALE_WINDOWS_LIBRARIES
                       "${CMAKE_CURRENT_LIST_DIR}/../build/cache/${QUORVALE_TRIPLE}" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH /usr/${QUORVALE_TRIPLE} ${QUORVALE_WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Found otherwise as the import library of a DLL.
set(ZLIB_LIBRARY /usr/${QUORVALE_TRIPLE}/lib/libz.a CACHE FILEPATH "")

# The headers show what Windows XP has: declarations alone import nothing, and a test checks the
# imports.
set(quorvale_versions "-D_WIN32_WINNT=0x0501 -DWINVER=0x0501 -D_WIN32_IE=0x0500")
set(CMAKE_C_FLAGS_INIT "${QUORVALE_MACHINE} ${quorvale_versions}")
set(CMAKE_CXX_FLAGS_INIT "${QUORVALE_MACHINE} ${quorvale_versions}")
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG" CACHE STRING "")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG" CACHE STRING "")
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-static -static-libgcc -static-libstdc++ ${QUORVALE_SUBSYSTEM_VERSION}")
