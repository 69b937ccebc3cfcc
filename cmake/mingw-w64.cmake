# Builds for 64-bit Windows on another system, with Debian's g++-mingw-w64-x86-64-posix:
#   cmake -S . -B build/windows -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
# The compiler whose threads are those of POSIX, since that is the one with std::mutex and std::thread.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(mingw x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${mingw}-windres)

# Programs are this system's, libraries and headers the other's.
set(CMAKE_FIND_ROOT_PATH /usr/${mingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# What is built runs without the compiler's own libraries beside it, here under Wine.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
find_program(wine NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(wine)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${wine})
endif()
