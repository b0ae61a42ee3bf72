# What an installation holds: headers, the three libraries side by side, the client, the simulated module in a folder of its
# own, its scenarios, and the files by which CMake and pkg-config find it. It may be moved: every path in it is relative.
include(CMakePackageConfigHelpers)

add_library(talvek::talvek ALIAS talvek)

install(DIRECTORY include/talvek DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(TARGETS ov_utility talvek LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(WIN32)
  install(FILES ${CMAKE_BINARY_DIR}/lib/TALVEK.lib DESTINATION ${CMAKE_INSTALL_LIBDIR})
else()
  install(TARGETS talvek_platform LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()

set(TALVEK_SIM_INSTALL_DIRECTORY ${CMAKE_INSTALL_LIBDIR}/talvek-sim)
install(TARGETS GobiApi
  LIBRARY DESTINATION ${TALVEK_SIM_INSTALL_DIRECTORY} RUNTIME DESTINATION ${TALVEK_SIM_INSTALL_DIRECTORY})
install(DIRECTORY examples/scenarios DESTINATION ${CMAKE_INSTALL_DATADIR}/talvek)

if(TALVEK_BUILD_CTL)
  install(TARGETS talvekctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/talvek)
if(WIN32)
  set(TALVEK_CONFIG cmake/talvekConfig-windows.cmake.in)
else()
  set(TALVEK_CONFIG cmake/talvekConfig.cmake.in)
endif()
configure_package_config_file(${TALVEK_CONFIG} ${CMAKE_BINARY_DIR}/talvekConfig.cmake
  INSTALL_DESTINATION ${package_directory} PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_BINDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/talvekConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/talvekConfig.cmake ${CMAKE_BINARY_DIR}/talvekConfigVersion.cmake
  DESTINATION ${package_directory})

file(RELATIVE_PATH from_pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" from_pc_to_prefix "${from_pc_to_prefix}")
if(WIN32)
  set(TALVEK_LINK_NAME TALVEK)
else()
  set(TALVEK_LINK_NAME talvek)
endif()
configure_file(cmake/talvek.pc.in ${CMAKE_BINARY_DIR}/talvek.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/talvek.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
