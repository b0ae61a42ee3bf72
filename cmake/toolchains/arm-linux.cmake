# 32-bit ARM Linux, run under qemu-arm (qemu-user). TRIPLET tells which.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi) # what changed with GCC 7 concerns nobody who builds all of it with one compiler
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L /usr/${TRIPLET})
