# Libraries from outside, for tests, tools and benches only: the product links none of them.

# Header-only packages of the system's lie in /usr/include, which a cross build must never see whole. This gives a
# target a folder of the build tree that links to just the headers asked for.
set(TARNWICK_HEADER_OF_CLI CLI/CLI.hpp)
set(TARNWICK_HEADER_OF_nlohmann nlohmann/json.hpp)
set(TARNWICK_HEADER_OF_fmt fmt/format.h)

function(tarnwick_use_headers target)
  set(folder ${PROJECT_BINARY_DIR}/system-headers)
  file(MAKE_DIRECTORY ${folder})
  foreach(package ${ARGN})
    # A header of the package, not its folder: programs in /usr/bin bear some of the names too.
    find_path(TARNWICK_${package}_ROOT NAMES ${TARNWICK_HEADER_OF_${package}} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
    if(NOT TARNWICK_${package}_ROOT)
      message(FATAL_ERROR "The headers of '${package}' are not installed; see scripts/lib/packages.sh for the package.")
    endif()
    file(CREATE_LINK ${TARNWICK_${package}_ROOT}/${package} ${folder}/${package} SYMBOLIC)
  endforeach()
  target_include_directories(${target} SYSTEM PRIVATE ${folder})
endfunction()

# GoogleTest from Debian's sources, built for the target platform, or the toolchain's own package.
function(tarnwick_add_googletest)
  if(EXISTS /usr/src/googletest/CMakeLists.txt)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    foreach(library gtest gtest_main gmock gmock_main)
      if(TARGET ${library})
        # Its warnings are not ours to mend.
        target_compile_options(${library} PRIVATE -w $<$<BOOL:${TARNWICK_SANITIZE}>:-fsanitize=address,undefined>)
      endif()
    endforeach()
  else()
    find_package(GTest CONFIG REQUIRED)
    foreach(library gtest gtest_main gmock gmock_main)
      add_library(${library} INTERFACE IMPORTED)
      target_link_libraries(${library} INTERFACE GTest::${library})
    endforeach()
  endif()
endfunction()
