# Windows, with Debian's MinGW-w64. CMAKE_SYSTEM_PROCESSOR tells which. Programs run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(TRIPLET ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(COMPILER_SUFFIX -posix) # the variant with the threads of C++, which the client and the tests use
set(CMAKE_RC_COMPILER ${TRIPLET}-windres)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR python3 ${CMAKE_CURRENT_LIST_DIR}/../../tools/run_in_wine.py)
