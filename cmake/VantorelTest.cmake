# SPDX-License-Identifier: MIT
find_package(GTest REQUIRED)

# vantorel_test_suites(PROGRAM SOURCES ... [PREFIX p] [ONLY regex] [LABELS ...] [ENVIRONMENT NAME=VALUE]
#                      [TIMEOUT s])
# Each suite in the sources is a test of CTest: a process for each single test would take longer to
# start than to run.
function(vantorel_test_suites name)
  cmake_parse_arguments(T "ALONE" "PREFIX;ONLY;ENVIRONMENT;TIMEOUT" "SOURCES;LABELS" ${ARGN})
  set(suites)
  foreach(source ${T_SOURCES})
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
    # A suite that comes or goes configures the build anew.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
    file(STRINGS "${source}" lines REGEX "^(TEST|TEST_F|TEST_P|TYPED_TEST)\\(")
    foreach(line ${lines})
      if(T_ALONE AND line MATCHES "^[A-Z_]+\\(([A-Za-z0-9_]+), ([A-Za-z0-9_]+)")
        list(APPEND suites "${CMAKE_MATCH_1}.${CMAKE_MATCH_2}")
      elseif(line MATCHES "^[A-Z_]+\\(([A-Za-z0-9_]+)")
        list(APPEND suites ${CMAKE_MATCH_1})
      endif()
    endforeach()
  endforeach()
  list(REMOVE_DUPLICATES suites)
  if(T_ONLY)
    list(FILTER suites INCLUDE REGEX "${T_ONLY}")
  endif()
  foreach(suite ${suites})
    set(test "${VANTOREL_TEST_PREFIX}${T_PREFIX}${suite}")
    # Plain tests, those with parameters, and those with types.
    set(filter "${suite}.*:*/${suite}.*:${suite}/*:*/${suite}/*")
    if(T_ALONE)
      set(filter "${suite}")
    endif()
    add_test(NAME ${test} COMMAND ${name} "--gtest_filter=${filter}")
    set_tests_properties(${test} PROPERTIES
      TIMEOUT ${T_TIMEOUT} LABELS "${T_LABELS}" FAIL_REGULAR_EXPRESSION "Running 0 tests from")
    if(T_ENVIRONMENT)
      set_tests_properties(${test} PROPERTIES ENVIRONMENT "${T_ENVIRONMENT}")
    endif()
  endforeach()
endfunction()

# vantorel_test(NAME SOURCES ... LIBRARIES ... [LABELS ...] [ENVIRONMENT NAME=VALUE] [TIMEOUT s] [MAIN]
#   [ALONE])
# One test program. With MAIN the sources bring their own main, with ALONE each plain test has a
# process of its own: the toolkit keeps the first session bus that it has met.
# What all have in their environment is in tests/environment/OwnEnvironment.cpp, which holds for a
# program started by hand too. TIMEOUT is that of a suite.
function(vantorel_test name)
  cmake_parse_arguments(T "MAIN;ALONE" "TIMEOUT;ENVIRONMENT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 300)
  endif()
  if(NOT T_LABELS)
    set(T_LABELS unit)
  endif()
  if(T_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "${name}: what is ${T_UNPARSED_ARGUMENTS}?")
  endif()
  add_executable(${name} ${T_SOURCES} $<TARGET_OBJECTS:vantorel_own_environment>)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE ${T_LIBRARIES} GTest::gmock GTest::gtest)
  # A test's own code runs once: to optimise it takes longer than to run it.
  target_compile_options(${name} PRIVATE -O0 -U_FORTIFY_SOURCE)
  if(NOT T_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gmock_main)
  endif()
  set(alone)
  if(T_ALONE)
    set(alone ALONE)
  endif()
  vantorel_test_suites(${name} SOURCES ${T_SOURCES} LABELS ${T_LABELS} TIMEOUT ${T_TIMEOUT}
    ENVIRONMENT "${T_ENVIRONMENT}" ${alone})
endfunction()
