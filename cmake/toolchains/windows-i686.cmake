# Cross build for 32-bit Windows with mingw-w64 and its POSIX threads.
set(KARTIX_WINDOWS_ARCH i686)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
