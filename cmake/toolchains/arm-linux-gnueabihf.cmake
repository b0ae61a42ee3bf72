# 32-bit ARM Linux, hard-float (g++-arm-linux-gnueabihf).
set(TRIPLET arm-linux-gnueabihf)
include(${CMAKE_CURRENT_LIST_DIR}/arm-linux.cmake)
