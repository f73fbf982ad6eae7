# What both toolchain files for Windows share; `mingw` is the prefix of the compiler's programs.
set(CMAKE_C_COMPILER ${mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${mingw}-windres)

# Packages come from the stage and scripts/qt_for_windows alone: what Debian keeps below /usr/include is for Linux.
# Qt compares these paths with its own, letter by letter.
cmake_path(SET build NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build)
set(CMAKE_FIND_ROOT_PATH /usr/${mingw} ${build}/windows-stage/${mingw} ${build}/qt-for-windows/current)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# One file to copy: neither the compiler's libraries nor winpthread stand beside the program.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)

# g++ 12 takes copies within std::string for overlapping ones.
set(CMAKE_CXX_FLAGS_INIT "-Wno-restrict")
