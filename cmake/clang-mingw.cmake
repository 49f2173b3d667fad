# Cross build for 64-bit Windows with clang, on the headers and runtimes of g++'s posix flavour of mingw-w64. Clang knows
# __try, so that the guard written for MSVC runs under Wine, and it warns of other things than g++ does.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_FLAGS_INIT -fms-extensions)
# Clang's own way of linking finds neither these runtimes nor a linker that takes them: g++ links, see
# clang-mingw-link.cmake. Until that is read, nothing is linked.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_PROJECT_INCLUDE ${CMAKE_CURRENT_LIST_DIR}/clang-mingw-link.cmake)
