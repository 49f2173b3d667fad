# Objects that clang made for Windows are linked by g++. Read behind the project command, which sets these rules.
foreach(rule LINK_EXECUTABLE CREATE_SHARED_LIBRARY CREATE_SHARED_MODULE)
  string(REPLACE "<CMAKE_C_COMPILER>" x86_64-w64-mingw32-gcc-posix CMAKE_C_${rule} "${CMAKE_C_${rule}}")
  string(REPLACE "<CMAKE_CXX_COMPILER>" x86_64-w64-mingw32-g++-posix CMAKE_CXX_${rule} "${CMAKE_CXX_${rule}}")
endforeach()
# g++ keeps thread-local variables, the standard library's own too, in a table of its runtime.
add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-femulated-tls>)
