# Takes the built package that lies beside this file: nothing is downloaded, and nothing is compiled.
vcpkg_check_linkage(ONLY_DYNAMIC_LIBRARY)
set(VCPKG_BUILD_TYPE release)
set(VCPKG_POLICY_ONLY_RELEASE_CRT enabled)

vcpkg_extract_source_archive(package ARCHIVE "${CMAKE_CURRENT_LIST_DIR}/tarnwick-${VERSION}-win-x64.zip" NO_REMOVE_ONE_LEVEL)

if(VCPKG_TARGET_IS_MINGW)
  set(library libTarnwick.dll.a)
else()
  set(library Tarnwick.lib)
endif()
file(INSTALL "${package}/include/tarnwick" DESTINATION "${CURRENT_PACKAGES_DIR}/include")
file(INSTALL "${package}/lib/${library}" DESTINATION "${CURRENT_PACKAGES_DIR}/lib")
file(INSTALL "${package}/bin/Tarnwick.dll" DESTINATION "${CURRENT_PACKAGES_DIR}/bin")
file(INSTALL "${package}/bin/" DESTINATION "${CURRENT_PACKAGES_DIR}/tools/${PORT}")
file(INSTALL "${package}/lib/cmake/Tarnwick/" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
file(INSTALL "${CMAKE_CURRENT_LIST_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
vcpkg_install_copyright(FILE_LIST "${package}/share/tarnwick/LICENSE")
