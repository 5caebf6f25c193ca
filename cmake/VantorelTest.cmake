include(GoogleTest)
find_package(GTest REQUIRED)

# vantorel_test(NAME SOURCES ... LIBRARIES ... [LABELS ...] [ENVIRONMENT ...] [TIMEOUT s] [MAIN])
# One test program; every test in it is a test of CTest. With MAIN the sources bring their own main.
function(vantorel_test name)
  cmake_parse_arguments(T "MAIN" "TIMEOUT" "SOURCES;LIBRARIES;LABELS;ENVIRONMENT" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 60)
  endif()
  if(NOT T_LABELS)
    set(T_LABELS unit)
  endif()
  add_executable(${name} ${T_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE ${T_LIBRARIES} GTest::gmock GTest::gtest)
  if(NOT T_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gmock_main)
  endif()
  # Where a test program has nothing else to say about its environment, it says this, so that the
  # property is never an empty list.
  list(APPEND T_ENVIRONMENT "LC_ALL=C.UTF-8")
  gtest_discover_tests(${name}
    TEST_PREFIX "${VANTOREL_TEST_PREFIX}"
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${T_TIMEOUT} LABELS "${T_LABELS}" ENVIRONMENT "${T_ENVIRONMENT}")
endfunction()
