# The build's few options, and the flags that every target shares.

option(HOLDFAST_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(HOLDFAST_COVERAGE "Build with line and branch coverage counters (g++)" OFF)
option(HOLDFAST_TIDY "Run clang-tidy with every compilation" OFF)
option(HOLDFAST_WORKBENCH "Build the workbench, its tests and the benchmarks" ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

find_program(HOLDFAST_CCACHE ccache)
if(HOLDFAST_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${HOLDFAST_CCACHE}")
endif()

add_library(holdfast_flags INTERFACE)
target_compile_options(holdfast_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                                -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 sees overlapping copies where optimised code joins texts, and there are none.
  target_compile_options(holdfast_flags INTERFACE -Wno-restrict)
endif()
if(HOLDFAST_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)  # what the sanitizers do not see: an empty optional read, a wrong index
  add_link_options(-fsanitize=address,undefined)
endif()
if(HOLDFAST_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
if(HOLDFAST_TIDY)
  set(CMAKE_CXX_CLANG_TIDY clang-tidy;--quiet)
endif()
