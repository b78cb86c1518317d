# The build's few options, and the flags that every target of ours shares. Nothing here reaches a project that takes
# Holdfast in by add_subdirectory or FetchContent: no flags, no folders, no kind of build, no tests.

option(HOLDFAST_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(HOLDFAST_THREAD_SANITIZE "Build with the thread sanitizer" OFF)
option(HOLDFAST_COVERAGE "Build with line and branch coverage counters (g++)" OFF)
option(HOLDFAST_TIDY "Run clang-tidy with every compilation" OFF)
option(HOLDFAST_WARNINGS_AS_ERRORS "Let no warning pass, as our own presets do" OFF)
option(HOLDFAST_SOLVER "Build the solver library (needs Eigen)" ON)
option(HOLDFAST_ENGINE "Build the sketch engine and the program (needs Eigen, OpenCASCADE, nlohmann-json, libzip, pugixml, CLI11)"
       ${PROJECT_IS_TOP_LEVEL})
option(HOLDFAST_INSTALL "Install the libraries, and make packages of them" ${PROJECT_IS_TOP_LEVEL})
# BUILD_TESTING, the word of CTest, is heard as well.
set(tests_by_default ${PROJECT_IS_TOP_LEVEL})
if(DEFINED BUILD_TESTING AND NOT BUILD_TESTING)
  set(tests_by_default OFF)
endif()
option(HOLDFAST_TESTS "Build the tests (needs GoogleTest and rapidcheck)" ${tests_by_default})

if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
  # A program need not be linked again when the inside of a shared library changes.
  set(CMAKE_LINK_DEPENDS_NO_SHARED ON)
  get_property(has_many_configurations GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
  if(NOT CMAKE_BUILD_TYPE AND NOT has_many_configurations)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
  endif()
endif()

# Warnings are for those who work on Holdfast: which of them another project asks for is its own choice.
add_library(holdfast_flags INTERFACE)
if(PROJECT_IS_TOP_LEVEL)
  target_compile_options(holdfast_flags INTERFACE
    $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Wall;-Wextra;-Wpedantic;-Wshadow;-Wconversion;-Wno-sign-conversion>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 sees overlapping copies where optimised code joins texts, and there are none.
    target_compile_options(holdfast_flags INTERFACE -Wno-restrict)
  endif()
endif()
if(HOLDFAST_WARNINGS_AS_ERRORS)
  target_compile_options(holdfast_flags INTERFACE $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Werror>)
endif()
if(HOLDFAST_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)  # what the sanitizers do not see: an empty optional read, a wrong index
  add_link_options(-fsanitize=address,undefined)
endif()
if(HOLDFAST_THREAD_SANITIZE)
  if(HOLDFAST_SANITIZE)
    message(FATAL_ERROR "HOLDFAST_SANITIZE and HOLDFAST_THREAD_SANITIZE exclude each other")
  endif()
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
if(HOLDFAST_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
if(HOLDFAST_TIDY)
  set(CMAKE_CXX_CLANG_TIDY clang-tidy;--quiet)
endif()
