# The eight subsystems, in the order in which they may include each other, and the units that build without Windows.
set(TARNWICK_SUBSYSTEMS foundation catalogue matching steam launchers inventory focus core)

# Readers turn bytes into records and know nothing of Windows; the name says so. The few other units that
# include nothing of Windows are listed by hand.
file(GLOB_RECURSE TARNWICK_NATIVE_UNITS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*_reader.cpp)
list(APPEND TARNWICK_NATIVE_UNITS
  ${PROJECT_SOURCE_DIR}/src/foundation/result_buffer.cpp
  ${PROJECT_SOURCE_DIR}/src/foundation/text.cpp
  ${PROJECT_SOURCE_DIR}/src/matching/path_text.cpp
  ${PROJECT_SOURCE_DIR}/src/matching/signature_index.cpp
  ${PROJECT_SOURCE_DIR}/src/core/merge.cpp)

# Builds without Windows too; its test doesn't.
set(TARNWICK_NATIVE_TABLES ${PROJECT_SOURCE_DIR}/src/core/strategy_wants.cpp)

# Of the program, what reads a catalogue for its checks, and what turns tables into records and back.
foreach(unit check_characters check_encoding check_findings check_layout check_rules check_text check_wants fix_text
        csv_reader csv_records csv_writer merge)
  list(APPEND TARNWICK_NATIVE_HOST_UNITS ${PROJECT_SOURCE_DIR}/host/catalogue/${unit}.cpp)
endforeach()
list(APPEND TARNWICK_NATIVE_UNITS ${TARNWICK_NATIVE_HOST_UNITS}
  ${PROJECT_SOURCE_DIR}/common/catalogue_text.cpp
  ${PROJECT_SOURCE_DIR}/common/xml_text.cpp)
