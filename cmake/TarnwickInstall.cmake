# What a host's developer takes away: `cmake --install`, and by CPack two archives, the second with the symbols.
# scripts/package makes both.
set(share share/tarnwick)

add_custom_target(tarnwick_package DEPENDS Tarnwick tarnwick_host)
install(TARGETS Tarnwick tarnwick_host RUNTIME DESTINATION bin COMPONENT package ARCHIVE DESTINATION lib COMPONENT package)
install(DIRECTORY include/tarnwick DESTINATION include COMPONENT package)
install(FILES LICENSE CHANGELOG.md DESTINATION ${share} COMPONENT package)
install(DIRECTORY docs/schemas DESTINATION ${share} COMPONENT package)

# For hosts and those who run the program; the other pages are about the library's inside.
foreach(page hosting outputs command-line fleet packaging launchers privacy what-is-read catalogue explain troubleshooting
        log-lines)
  if(EXISTS ${PROJECT_SOURCE_DIR}/docs/${page}.md)
    install(FILES docs/${page}.md DESTINATION ${share}/docs COMPONENT package)
  endif()
endforeach()
install(FILES docs/formats/catalogue.md DESTINATION ${share}/docs/formats COMPONENT package)
if(EXISTS ${PROJECT_SOURCE_DIR}/examples/c)
  install(DIRECTORY examples/c DESTINATION ${share}/examples COMPONENT package)
endif()

# The catalogue that a scan takes where it is named none.
if(TARGET tarnwick_starter_catalogue)
  add_dependencies(tarnwick_package tarnwick_starter_catalogue)
  install(FILES ${PROJECT_BINARY_DIR}/bin/MasterGameList.xml DESTINATION bin COMPONENT package)
endif()

# MSVC's linker reads another kind of import library than mingw's.
if(MINGW)
  find_program(TARNWICK_LLVM_DLLTOOL NAMES llvm-dlltool-19 llvm-dlltool)
  mark_as_advanced(TARNWICK_LLVM_DLLTOOL)
endif()
if(MINGW AND TARNWICK_LLVM_DLLTOOL)
  set(exports ${PROJECT_SOURCE_DIR}/src/core/Tarnwick.def)
  set(library ${PROJECT_BINARY_DIR}/src/Tarnwick.lib)
  add_custom_command(OUTPUT ${library} DEPENDS ${exports} VERBATIM
    COMMAND ${TARNWICK_LLVM_DLLTOOL} -m i386:x86-64 -d ${exports} -D $<TARGET_FILE_NAME:Tarnwick> -l ${library})
  add_custom_target(tarnwick_msvc_library ALL DEPENDS ${library})
  add_dependencies(tarnwick_package tarnwick_msvc_library)
  install(FILES ${library} DESTINATION lib COMPONENT package)
endif()

include(CMakePackageConfigHelpers)
# Before 1.0.0 a minor version may break what hosts stand on, after that a major one.
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(compatibility SameMinorVersion)
else()
  set(compatibility SameMajorVersion)
endif()
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TarnwickConfigVersion.cmake COMPATIBILITY ${compatibility})
install(FILES packaging/TarnwickConfig.cmake ${PROJECT_BINARY_DIR}/TarnwickConfigVersion.cmake
        DESTINATION lib/cmake/Tarnwick COMPONENT package)

set(CPACK_COMPONENTS_ALL package)
if(TARNWICK_SYMBOLS_APART)
  install(FILES $<TARGET_FILE:Tarnwick>.debug $<TARGET_FILE:tarnwick_host>.debug DESTINATION bin COMPONENT symbols)
  list(APPEND CPACK_COMPONENTS_ALL symbols)
endif()

set(CPACK_GENERATOR External)
set(CPACK_EXTERNAL_ENABLE_STAGING ON)
set(CPACK_EXTERNAL_PACKAGE_SCRIPT ${PROJECT_SOURCE_DIR}/packaging/archives.cmake)
set(CPACK_PACKAGE_FILE_NAME tarnwick-${PROJECT_VERSION}-win-x64)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
include(CPack)
