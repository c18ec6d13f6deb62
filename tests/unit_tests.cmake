# The test programs in C++, one for each room of the library.
find_package(GTest QUIET)
norva_require("${GTest_FOUND}" "GoogleTest" test NORVA_BUILD_TESTS)
include(GoogleTest)
find_path(RAPIDCHECK_INCLUDE_DIR rapidcheck.h)
find_library(RAPIDCHECK_LIBRARY rapidcheck)
norva_require("${RAPIDCHECK_LIBRARY}" "RapidCheck" test NORVA_BUILD_TESTS)

# What every test program shares: its main function and scripted runs.
add_library(norva_test_support OBJECT support/main.cpp support/play.cpp)
target_include_directories(norva_test_support PUBLIC ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(norva_test_support PUBLIC norva_script GTest::gtest PRIVATE norva_options)

if(TARGET norva_desktop_parts)
  find_package(Qt6 QUIET COMPONENTS Test)
  norva_require("${Qt6Test_FOUND}" "Qt 6 Test" desktop NORVA_BUILD_TESTS)
  target_link_libraries(norva_test_support PUBLIC norva_desktop_parts)
  target_compile_definitions(norva_test_support PRIVATE NORVA_TEST_WITH_WINDOWS)
endif()

# norva_add_tests(NAME SOURCES...): one test program for one folder of the library.
function(norva_add_tests name)
  add_executable(${name} ${ARGN})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests
                                             ${PROJECT_SOURCE_DIR}/apps ${RAPIDCHECK_INCLUDE_DIR})
  target_compile_definitions(${name} PRIVATE NORVA_SAMPLES="${PROJECT_SOURCE_DIR}/samples"
                                             NORVA_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  target_link_libraries(${name} PRIVATE norva_core norva_script norva_test_support norva_options GTest::gtest ${RAPIDCHECK_LIBRARY})
  # What is tested is optimised and sanitized; a test's own code would only take three times as long to compile.
  target_compile_options(${name} PRIVATE -O0)
  if(NORVA_SANITIZE)
    target_compile_options(${name} PRIVATE -fno-sanitize=all)
  endif()
  if(TARGET norva_desktop_parts)
    # The same tests with their scripts played on real windows, which have to give the same traces.
    target_link_libraries(${name} PRIVATE norva_desktop_parts)
    if(NOT name MATCHES "platform|store|ui|desktop")
      add_test(NAME ${name}.windows COMMAND ${name})
      set_tests_properties(${name}.windows PROPERTIES
        ENVIRONMENT "NORVA_TEST_WINDOWS=1;QT_QPA_PLATFORM=offscreen;XDG_RUNTIME_DIR=${CMAKE_BINARY_DIR}")
    endif()
  endif()
  gtest_discover_tests(${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60)
endfunction()

foreach(folder platform ui store exchange inspection formats entry trust)
  if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt)
    add_subdirectory(${folder})
  endif()
endforeach()

# The desktop program's own windows.
if(TARGET norva_desktop_parts)
  add_subdirectory(desktop)
endif()
