# 64-bit Windows (g++-mingw-w64-x86-64-posix).
set(CMAKE_SYSTEM_PROCESSOR x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
