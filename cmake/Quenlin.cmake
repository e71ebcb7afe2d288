# The options that every target shares, and the helper that makes a test program.

add_library(quenlin_options INTERFACE)
target_compile_options(quenlin_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlaps and sizes in `"literal" + text` and in appended texts that are not there (its bug
  # 105651), also in headers of the system once they are precompiled.
  target_compile_options(quenlin_options INTERFACE
    -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
endif()
if(QUENLIN_SANITIZE)
  target_compile_options(quenlin_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quenlin_options INTERFACE -fsanitize=address,undefined)
endif()
if(QUENLIN_FUZZ)
  target_compile_options(quenlin_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Headers of the standard library and of Qt that most files need: compiled once a library, and once for
# all test programs of a kind. A file includes what it uses all the same; tools/lint compiles without
# these.
set(QUENLIN_PRECOMPILED
  <algorithm> <cstdint> <filesystem> <functional> <map> <memory> <optional> <string> <string_view>
  <utility> <vector>)
set(QUENLIN_PRECOMPILED_QT
  <QApplication> <QEvent> <QLabel> <QPainter> <QPushButton> <QScrollBar> <QStyle> <QTimer> <QWidget>)

# quenlin_test(NAME SOURCES... [LABELS...]): one GoogleTest program per area, one CTest entry each, so
# that a run costs one process an area. The test gets a fresh folder of its own from
# tests/support/testfolder.h.
function(quenlin_test name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE quenlin_core quenlin_test_support GTest::gtest_main)
  target_precompile_headers(${name} REUSE_FROM quenlin_test_support)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 900 LABELS logic)
endfunction()

# quenlin_window_test(NAME SOURCES...): the same for windows. The program runs with a display, a window
# manager and a D-Bus session of its own; what its suites named "...Scaled" test runs a second time at
# 200 percent, as NAME_200. Pictures go to the folder that QUENLIN_SCREENSHOTS names in the environment;
# without it none are made. The built program's path is in the environment as QUENLIN_PROGRAM.
function(quenlin_window_test name)
  add_executable(${name} ${ARGN})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_link_libraries(${name} PRIVATE quenlin_window_bench)
  target_precompile_headers(${name} REUSE_FROM quenlin_window_bench)
  set(run ${CMAKE_SOURCE_DIR}/tests/windows/run_windowed)
  add_test(NAME ${name} COMMAND ${run} $<TARGET_FILE:${name}>)
  add_test(NAME ${name}_200 COMMAND ${run} --scale 200 $<TARGET_FILE:${name}> --gtest_filter=*Scaled.*)
  set_tests_properties(${name} ${name}_200 PROPERTIES TIMEOUT 600 LABELS window ENVIRONMENT
    "QUENLIN_PROGRAM=$<TARGET_FILE:quenlin>")
endfunction()

# The system's own Python, for which Debian's packages of modules are made, before any other.
find_program(PYTHON_PROGRAM python3 HINTS /usr/bin REQUIRED)
