# Compiler flags for everything (talvek_warnings) and for code that also runs on the device (talvek_library_code).

add_library(talvek_warnings INTERFACE)
target_compile_features(talvek_warnings INTERFACE cxx_std_17)
target_compile_options(talvek_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wno-sign-conversion -Wundef
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual>)

set(TALVEK_SANITIZE "" CACHE STRING "Comma-separated sanitizers, for example address,undefined or thread")
if(TALVEK_SANITIZE)
  add_compile_options(-fsanitize=${TALVEK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  add_link_options(-fsanitize=${TALVEK_SANITIZE})
  if(TALVEK_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize=vptr)   # needs run-time type information, which the library does without
    add_link_options(-fno-sanitize=vptr)
  endif()
endif()

# Every symbol of a shared library is found when it is linked. Clang leaves the sanitizers' own to the program; Windows links
# in no other way.
if(WIN32 OR (TALVEK_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
  set(TALVEK_STRICT_LINK "")
else()
  set(TALVEK_STRICT_LINK -Wl,-z,defs)
endif()

# No exceptions, no run-time types, no thread-safe statics, nothing visible that is not exported on purpose.
add_library(talvek_library_code INTERFACE)
target_link_libraries(talvek_library_code INTERFACE talvek_warnings)
target_include_directories(talvek_library_code INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
target_compile_options(talvek_library_code INTERFACE
  -fvisibility=hidden -ffunction-sections -fdata-sections
  $<$<CONFIG:Release>:-O2>   # smaller than CMake's own -O3, and no slower where it is measured
  $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics -fvisibility-inlines-hidden>)

if(NOT WIN32)
  # Where the system has both: files of any size, whatever numbers their file system gives them, and dates after 2038.
  add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()

if(WIN32)
  # No run-time library of the compiler has to be shipped.
  add_link_options(-static)
  set(CMAKE_SHARED_LIBRARY_PREFIX "")
endif()
