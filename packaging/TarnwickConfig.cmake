# find_package(Tarnwick CONFIG) gives the target Tarnwick::Tarnwick: the header, Tarnwick.dll, and the import library of the
# compiler's kind. Linking it makes a program that wants Tarnwick.dll beside it: $<TARGET_RUNTIME_DLLS:program> names it.
unset(Tarnwick_NOT_FOUND_MESSAGE)
if(NOT WIN32)
  set(Tarnwick_FOUND FALSE)
  set(Tarnwick_NOT_FOUND_MESSAGE "Tarnwick is a library for 64-bit Windows, and this is a build for ${CMAKE_SYSTEM_NAME}.")
  return()
endif()

# The folder that holds bin, include and lib. Package managers move this file from lib/cmake/Tarnwick to share/tarnwick.
get_filename_component(_tarnwick_root "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
if(NOT EXISTS "${_tarnwick_root}/include/tarnwick/tarnwick.h")
  get_filename_component(_tarnwick_root "${_tarnwick_root}/.." ABSOLUTE)
endif()

if(MINGW)
  set(_tarnwick_library "${_tarnwick_root}/lib/libTarnwick.dll.a")
else()
  set(_tarnwick_library "${_tarnwick_root}/lib/Tarnwick.lib")
endif()

foreach(_tarnwick_file "${_tarnwick_library}" "${_tarnwick_root}/bin/Tarnwick.dll")
  if(NOT EXISTS "${_tarnwick_file}")
    set(Tarnwick_FOUND FALSE)
    set(Tarnwick_NOT_FOUND_MESSAGE "This package of Tarnwick lacks ${_tarnwick_file}.")
  endif()
endforeach()

if(NOT TARGET Tarnwick::Tarnwick AND NOT DEFINED Tarnwick_NOT_FOUND_MESSAGE)
  add_library(Tarnwick::Tarnwick SHARED IMPORTED)
  set_target_properties(Tarnwick::Tarnwick PROPERTIES
    IMPORTED_LOCATION "${_tarnwick_root}/bin/Tarnwick.dll"
    IMPORTED_IMPLIB "${_tarnwick_library}"
    INTERFACE_INCLUDE_DIRECTORIES "${_tarnwick_root}/include")
endif()
unset(_tarnwick_file)
unset(_tarnwick_library)
unset(_tarnwick_root)
