# What a library needs on Windows beyond its sources: the list of the functions it exports, a version resource, and an import
# library for linkers in Microsoft's style.
#
# talvek_windows_library(TARGET DESCRIPTION DEF): the file's name is the target's; DEF lists the C functions without any
# decoration. The linker adds what is exported by declaration, which for the library itself is the class.
function(talvek_windows_library target description def)
  if(NOT WIN32)
    return()
  endif()
  get_target_property(name ${target} OUTPUT_NAME)
  if(NOT name)
    set(name ${target})
  endif()
  set(TALVEK_FILE_DESCRIPTION ${description})
  set(TALVEK_FILE_NAME ${name})
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource} ${def})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${def})

  set_target_properties(${target} PROPERTIES ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
  find_program(TALVEK_DLLTOOL NAMES ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-dlltool REQUIRED)
  add_custom_command(TARGET ${target} POST_BUILD VERBATIM
    COMMAND ${TALVEK_DLLTOOL} --input-def ${def} --dllname ${name}.dll
      --output-lib ${CMAKE_BINARY_DIR}/lib/${name}.lib)
endfunction()
