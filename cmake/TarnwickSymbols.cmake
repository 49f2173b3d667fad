# A release's programs bear no symbols: what a debugger wants lies beside each as PROGRAM.debug, which gdb finds by itself.
set(TARNWICK_SYMBOLS_APART OFF)
if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND TARNWICK_SPLIT_SYMBOLS AND CMAKE_BUILD_TYPE STREQUAL "Release")
  set(TARNWICK_SYMBOLS_APART ON)
  # For the folders whose objects are shipped: function names and lines, which is what a stack trace wants.
  set(TARNWICK_DEBUG_INFORMATION $<$<COMPILE_LANGUAGE:C,CXX>:-g1>)
endif()

function(tarnwick_split_symbols target)
  if(TARNWICK_SYMBOLS_APART)
    set(program $<TARGET_FILE:${target}>)
    # Without --preserve-dates it would write the present time into the program.
    add_custom_command(TARGET ${target} POST_BUILD VERBATIM
      COMMAND ${CMAKE_OBJCOPY} --preserve-dates --only-keep-debug ${program} ${program}.debug
      COMMAND ${CMAKE_OBJCOPY} --preserve-dates --strip-all --add-gnu-debuglink=${program}.debug ${program})
  endif()
endfunction()
