include(GoogleTest)
find_package(GTest REQUIRED)

# vantorel_test(NAME SOURCES ... LIBRARIES ... [LABELS ...] [ENVIRONMENT NAME=VALUE] [TIMEOUT s] [MAIN])
# One test program; every test in it is a test of CTest. With MAIN the sources bring their own main.
# What all have in their environment is in tests/environment/OwnEnvironment.cpp, which holds for the
# discovery of the tests and for a program started by hand too. ENVIRONMENT takes one variable: the
# discovery flattens lists, and of a second one CTest would silently make another property.
function(vantorel_test name)
  cmake_parse_arguments(T "MAIN" "TIMEOUT;ENVIRONMENT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 60)
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
  if(NOT T_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gmock_main)
  endif()
  set(properties TIMEOUT ${T_TIMEOUT} LABELS "${T_LABELS}")
  if(T_ENVIRONMENT)
    list(APPEND properties ENVIRONMENT "${T_ENVIRONMENT}")
  endif()
  gtest_discover_tests(${name}
    TEST_PREFIX "${VANTOREL_TEST_PREFIX}"
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    PROPERTIES ${properties})
endfunction()
