# The version stands in the project command. Hosts compile against a folder of headers that nothing generates, so the header
# has it as well, and is held to it.
set(version_header ${PROJECT_SOURCE_DIR}/include/tarnwick/version.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${version_header})
file(READ ${version_header} version_text)
foreach(line "_MAJOR ${PROJECT_VERSION_MAJOR}" "_MINOR ${PROJECT_VERSION_MINOR}" "_PATCH ${PROJECT_VERSION_PATCH}"
        " \"${PROJECT_VERSION}\"")
  string(FIND "${version_text}" "\n#define TARNWICK_VERSION${line}\n" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "include/tarnwick/version.h is not of version ${PROJECT_VERSION}: "
                        "scripts/check-version --write puts the project's version everywhere.")
  endif()
endforeach()
