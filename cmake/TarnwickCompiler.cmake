# Warnings, hardening and definitions, as one interface target that all of our own code links.
add_library(tarnwick_options INTERFACE)
target_include_directories(tarnwick_options INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)

if(MSVC)
  target_compile_options(tarnwick_options INTERFACE /W4 /permissive- /utf-8 /EHsc $<$<BOOL:${TARNWICK_WARNINGS_AS_ERRORS}>:/WX>)
else()
  target_compile_options(tarnwick_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion
                         $<$<BOOL:${TARNWICK_WARNINGS_AS_ERRORS}>:-Werror>)
  # One commit gives the same bytes wherever it is built. Of two that fit, the later one counts.
  target_compile_options(tarnwick_options INTERFACE -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
                         -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 sees overlapping copies in the standard library's own "literal" + std::string when it optimises.
    target_compile_options(tarnwick_options INTERFACE -Wno-restrict)
  endif()
  if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Windows' headers read the thread's block through a segment register at offset 0, which g++ takes for a null pointer.
    target_compile_options(tarnwick_options INTERFACE --param=min-pagesize=0)
  endif()
  if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # g++ 12's std::stable_sort asks for its memory in a way that C++20 deprecates.
    target_compile_options(tarnwick_options INTERFACE -Wno-deprecated-declarations)
  endif()
endif()

if(WIN32)
  target_compile_definitions(tarnwick_options INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00 WINVER=0x0A00)
  if(MINGW)
    # Static runtimes: the library must import nothing but system DLLs.
    target_link_options(tarnwick_options INTERFACE -static -Wl,--dynamicbase,--high-entropy-va,--nxcompat
                        -Wl,--no-insert-timestamp)
  endif()
elseif(TARNWICK_SANITIZE)
  target_compile_options(tarnwick_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                         -fno-omit-frame-pointer)
  target_link_options(tarnwick_options INTERFACE -fsanitize=address,undefined)
elseif(TARNWICK_COVERAGE)
  target_compile_options(tarnwick_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(tarnwick_options INTERFACE -fprofile-instr-generate)
endif()
