# holdfast_test(name SOURCES a.cpp ... LIBRARIES lib ... [ENVIRONMENT VAR=value ...])
# One test program and one ctest entry: starting a process costs more than most tests do. GTest::gmock is named among
# the libraries by those who use it: reading it costs more than GoogleTest itself.
find_package(GTest REQUIRED)
if(CMAKE_CROSSCOMPILING)
  find_package(rapidcheck QUIET)
else()
  find_package(rapidcheck REQUIRED)
endif()

# Few systems package rapidcheck for other targets: there, the sources that use it are left out, and named.
function(leave_out_property_tests sources libraries)
  set(kept "")
  foreach(source IN LISTS ${sources})
    file(STRINGS "${source}" uses REGEX "#include (<rapidcheck|\".*/RandomNetwork\\.h\")")
    if(uses)
      message(STATUS "without rapidcheck: ${CMAKE_CURRENT_SOURCE_DIR}/${source} is left out")
    else()
      list(APPEND kept "${source}")
    endif()
  endforeach()
  set(${sources} ${kept} PARENT_SCOPE)
  list(REMOVE_ITEM ${libraries} rapidcheck)
  set(${libraries} ${${libraries}} PARENT_SCOPE)
endfunction()

# The tests see one another's folder, and the module's rooms by the names that the module itself uses.
add_library(holdfast_test_support INTERFACE)
holdfast_show(holdfast_test_support INTERFACE tests)

# What nearly every test includes is read once and kept: together it is longer than most tests are. Both programs do
# nothing; they are programs because what is kept for a library cannot be used in one.
set(kept_headers <gtest/gtest.h> <algorithm> <cmath> <filesystem> <functional> <map> <memory> <numbers> <optional>
                 <set> <sstream> <string> <variant> <vector>)
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/tests/kept_headers.cpp" CONTENT "int main() {}\n")

function(keep_headers target)
  add_executable(${target} EXCLUDE_FROM_ALL "${PROJECT_BINARY_DIR}/tests/kept_headers.cpp")
  target_link_libraries(${target} PRIVATE holdfast_flags holdfast_test_flags GTest::gtest)
  target_precompile_headers(${target} PRIVATE ${ARGN})
endfunction()

# In a release, tests run for seconds and compile for minutes: what they call is compiled for speed, they are not.
add_library(holdfast_test_flags INTERFACE)
target_compile_options(holdfast_test_flags INTERFACE
  $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU,Clang,AppleClang>>:-O0>)
target_link_libraries(holdfast_test_flags INTERFACE holdfast_kept_headers)
keep_headers(holdfast_gtest_headers ${kept_headers})
keep_headers(holdfast_gmock_headers ${kept_headers} <gmock/gmock.h>)

function(holdfast_test name)
  cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  if(NOT rapidcheck_FOUND)
    leave_out_property_tests(arg_SOURCES arg_LIBRARIES)
  endif()
  add_executable(${name} ${arg_SOURCES})
  holdfast_gather(${name})
  target_link_libraries(${name} PRIVATE holdfast_flags holdfast_test_flags holdfast_test_support ${arg_LIBRARIES}
                                        GTest::gtest GTest::gtest_main)
  if("GTest::gmock" IN_LIST arg_LIBRARIES)
    target_precompile_headers(${name} REUSE_FROM holdfast_gmock_headers)
  else()
    target_precompile_headers(${name} REUSE_FROM holdfast_gtest_headers)
  endif()
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1 WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
  if(arg_TIMEOUT)
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
  endif()
  if(arg_ENVIRONMENT)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${arg_ENVIRONMENT}")
  endif()
endfunction()
