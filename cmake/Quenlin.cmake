# The options that every target shares, and the helper that makes a test program.

add_library(quenlin_options INTERFACE)
target_compile_options(quenlin_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlaps in `"literal" + text` that are not there (its bug 105651).
  target_compile_options(quenlin_options INTERFACE -Wno-restrict)
endif()
if(QUENLIN_SANITIZE)
  target_compile_options(quenlin_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quenlin_options INTERFACE -fsanitize=address,undefined)
endif()
if(QUENLIN_FUZZ)
  target_compile_options(quenlin_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# quenlin_test(NAME SOURCES... [LABELS...]): one GoogleTest program per area, one CTest entry each, so
# that a run costs one process an area. The test gets a fresh folder of its own from
# tests/support/testfolder.h.
function(quenlin_test name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE quenlin_core quenlin_test_support GTest::gtest_main)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 900 LABELS logic)
endfunction()
