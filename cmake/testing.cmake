# GoogleTest from Debian's sources, and quivane_add_test.
#
# Test programs are not part of the default target: the target "tests" builds all of them. Without
# Debian's googletest package everything else still builds; ./test installs it and configures again.
enable_testing()

set(GOOGLETEST_SOURCE /usr/src/googletest)
set(QUIVANE_TESTS OFF)
if(EXISTS ${GOOGLETEST_SOURCE}/CMakeLists.txt)
  set(QUIVANE_TESTS ON)
endif()
set(QUIVANE_TESTS ${QUIVANE_TESTS} CACHE INTERNAL "Whether the tests were configured")

add_custom_target(tests)

if(QUIVANE_TESTS)
  set(INSTALL_GTEST OFF)
  set(BUILD_GMOCK ON)
  add_subdirectory(${GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)

  # Compiling a test takes longer than running it: with sanitizers 13.4 s instead of 3.7 s for a typical one.
  set(quickly_compiled -O0)
  # Else what the compiler cache looks at would not name the precompiled header.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND quickly_compiled $<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
  endif()
  foreach(target gtest gmock)
    target_compile_options(${target} PRIVATE -O0)
  endforeach()

  set(support ${PROJECT_SOURCE_DIR}/tests/support)
  add_library(quivane_test_support STATIC EXCLUDE_FROM_ALL
    ${support}/main.cpp
    ${support}/paths.cpp
    $<IF:$<BOOL:${WIN32}>,${support}/process_windows.cpp,${support}/process_linux.cpp>)
  target_link_libraries(quivane_test_support PUBLIC GTest::gmock PRIVATE quivane_options)
  target_compile_options(quivane_test_support PRIVATE ${quickly_compiled})
  # Two thirds of that are the headers that nearly all tests have.
  target_precompile_headers(quivane_test_support PRIVATE
    $<$<BOOL:${WIN32}>:<windows.h$<ANGLE-R>>
    $<$<BOOL:${WIN32}>:<commctrl.h$<ANGLE-R>>
    <algorithm> <chrono> <cstdint> <filesystem> <functional> <map> <memory> <optional> <string> <thread> <vector>
    <gmock/gmock.h>)
endif()

# quivane_add_test_library(NAME name SOURCES file... [LIBRARIES library...])
#
# Makes a static library of what several test programs have in common.
function(quivane_add_test_library)
  cmake_parse_arguments(PARSE_ARGV 0 LIBRARY "" "NAME" "SOURCES;LIBRARIES")
  if(LIBRARY_UNPARSED_ARGUMENTS OR LIBRARY_KEYWORDS_MISSING_VALUES OR NOT LIBRARY_NAME OR NOT LIBRARY_SOURCES)
    message(FATAL_ERROR "quivane_add_test_library(${ARGV}): unknown or missing arguments.")
  endif()
  if(NOT QUIVANE_TESTS)
    return()
  endif()
  add_library(${LIBRARY_NAME} STATIC EXCLUDE_FROM_ALL ${LIBRARY_SOURCES})
  target_link_libraries(${LIBRARY_NAME} PUBLIC ${LIBRARY_LIBRARIES} quivane_test_support PRIVATE quivane_options)
  target_compile_options(${LIBRARY_NAME} PRIVATE ${quickly_compiled})
  target_precompile_headers(${LIBRARY_NAME} REUSE_FROM quivane_test_support)
endfunction()

# quivane_add_test(NAME name SOURCES file... [LIBRARIES library...] [LABELS label...] [GRAPHICS x11]
#                  [TIMEOUT seconds] [ENVIRONMENT variable=value...] [BESIDE_PROGRAM] [LAUNCHER script])
#
# Makes the test program name_tests in the build's folder "tests" and one CTest entry called name that
# runs all of it. The program has a main function (tests/support/main.cpp), GoogleMock and
# tests/support/paths.h. A Windows program runs in a Wine prefix of its own, that is removed
# afterwards, so different test programs may run at the same time. It has no display unless GRAPHICS
# is x11: then it has a virtual one of its own. TIMEOUT is 300 seconds unless given. BESIDE_PROGRAM lets
# the program load the modules that lie in the folder of the product. LAUNCHER runs the program, its command line
# being the script's arguments; natively it is to end the program after QUIVANE_SERVER_TIMEOUT seconds.
function(quivane_add_test)
  cmake_parse_arguments(PARSE_ARGV 0 TEST "BESIDE_PROGRAM" "NAME;GRAPHICS;TIMEOUT;LAUNCHER" "SOURCES;LIBRARIES;LABELS;ENVIRONMENT")
  if(TEST_UNPARSED_ARGUMENTS OR TEST_KEYWORDS_MISSING_VALUES OR NOT TEST_NAME OR NOT TEST_SOURCES)
    message(FATAL_ERROR "quivane_add_test(${ARGV}): unknown or missing arguments.")
  endif()
  if(DEFINED TEST_GRAPHICS AND NOT TEST_GRAPHICS STREQUAL "x11")
    message(FATAL_ERROR "quivane_add_test(${TEST_NAME}): GRAPHICS can only be x11.")
  endif()
  if(NOT QUIVANE_TESTS)
    return()
  endif()
  if(NOT DEFINED TEST_TIMEOUT)
    set(TEST_TIMEOUT 300)
  endif()

  set(program ${TEST_NAME}_tests)
  add_executable(${program} EXCLUDE_FROM_ALL ${TEST_SOURCES})
  set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  target_link_libraries(${program} PRIVATE ${TEST_LIBRARIES} quivane_test_support quivane_options)
  target_compile_options(${program} PRIVATE ${quickly_compiled})
  target_precompile_headers(${program} REUSE_FROM quivane_test_support)
  add_dependencies(tests ${program})

  # CTest kills without a chance to clean up, so who would have to keeps the time: under Wine tools/wine.
  set(environment LC_ALL=C.UTF-8)
  set(last_resort ${TEST_TIMEOUT})
  if(DEFINED TEST_LAUNCHER OR WIN32)
    math(EXPR last_resort "${TEST_TIMEOUT} + 60")
  endif()
  if(WIN32)
    list(APPEND environment QUIVANE_PREFIX=fresh QUIVANE_TIMEOUT=${TEST_TIMEOUT})
    if(TEST_BESIDE_PROGRAM)
      list(APPEND environment WINEPATH=Z:${PROJECT_BINARY_DIR}/bin)
    endif()
    if(DEFINED TEST_GRAPHICS)
      list(APPEND environment QUIVANE_GRAPHICS=${TEST_GRAPHICS})
    endif()
  else()
    list(APPEND environment
      ASAN_OPTIONS=strict_string_checks=1:detect_stack_use_after_return=1
      UBSAN_OPTIONS=print_stacktrace=1
      QUIVANE_SERVER_TIMEOUT=${TEST_TIMEOUT})
  endif()

  set(command ${program})
  if(DEFINED TEST_LAUNCHER)
    set(command ${TEST_LAUNCHER} ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${program}>)
  endif()
  add_test(NAME ${TEST_NAME} COMMAND ${command} WORKING_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  set_tests_properties(${TEST_NAME} PROPERTIES
    TIMEOUT ${last_resort}
    LABELS "${TEST_LABELS}"
    ENVIRONMENT "${environment};${TEST_ENVIRONMENT}")
endfunction()
