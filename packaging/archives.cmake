# Run by CPack, with the components staged: one archive for each. Its own archives would tell who packed them, and where.
find_program(python NAMES python3 python REQUIRED)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(suffix "")
  if(NOT component STREQUAL "package")
    set(suffix "-${component}")
  endif()
  set(archive ${CPACK_PACKAGE_DIRECTORY}/${CPACK_PACKAGE_FILE_NAME}${suffix}.zip)
  execute_process(COMMAND ${python} ${CMAKE_CURRENT_LIST_DIR}/zip_folder.py ${CPACK_TEMPORARY_DIRECTORY}/${component} ${archive}
                  COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND CPACK_EXTERNAL_BUILT_PACKAGES ${archive})
endforeach()
