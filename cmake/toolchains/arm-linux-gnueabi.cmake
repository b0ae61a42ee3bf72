# 32-bit ARM Linux, soft-float (g++-arm-linux-gnueabi).
set(TRIPLET arm-linux-gnueabi)
include(${CMAKE_CURRENT_LIST_DIR}/arm-linux.cmake)
