# Cross-compiles for 32-bit Windows, where only the component for hosts of that size is wanted.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(mingw i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)

# The same arithmetic as everywhere: doubles of 64 bits, no registers of 80. Hosts align the stack to 4 bytes only.
string(APPEND CMAKE_CXX_FLAGS_INIT " -msse2 -mfpmath=sse -mstackrealign")
