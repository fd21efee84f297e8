# Cross build for 64-bit Windows with mingw-w64 and its POSIX threads.
set(KARTIX_WINDOWS_ARCH x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
