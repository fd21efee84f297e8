# What both Windows toolchains share. The libraries that everything is linked against statically come from
# scripts/windows-libraries, which says on its output where they are.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${KARTIX_WINDOWS_ARCH})
set(KARTIX_WINDOWS_TOOLS ${KARTIX_WINDOWS_ARCH}-w64-mingw32)

set(CMAKE_C_COMPILER ${KARTIX_WINDOWS_TOOLS}-gcc-posix)
set(CMAKE_CXX_COMPILER ${KARTIX_WINDOWS_TOOLS}-g++-posix)
set(CMAKE_RC_COMPILER ${KARTIX_WINDOWS_TOOLS}-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KARTIX_WINDOWS_ARCH KARTIX_WINDOWS_LIBRARIES)
set(CMAKE_FIND_ROOT_PATH /usr/${KARTIX_WINDOWS_TOOLS} ${KARTIX_WINDOWS_LIBRARIES})
list(APPEND CMAKE_PREFIX_PATH ${KARTIX_WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Libraries of headers alone are the same for every system.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# What is delivered needs nothing but the system's own libraries.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)
