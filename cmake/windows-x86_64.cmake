# Cross-compiles for 64-bit Windows with Debian's mingw-w64 (threads of POSIX); programs run under Wine.
# scripts/windows_stage makes the folder where the packages are found.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(mingw x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/lib/wine/wine64)
