# The walls between the floors. A target sees the folders that it or a target that it links shows, and nothing else:
# each has an include folder of its own in the build tree, in which stand links to the source folders that it shows.

# holdfast_show(target PUBLIC|PRIVATE|INTERFACE folder ...): folders are given from the top, and included by that path.
function(holdfast_show target scope)
  set(face "${PROJECT_BINARY_DIR}/include/${target}-${scope}")
  foreach(folder IN LISTS ARGN)
    get_filename_component(parent "${face}/${folder}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${folder}" "${face}/${folder}" COPY_ON_ERROR SYMBOLIC)
  endforeach()
  target_include_directories(${target} ${scope} "$<BUILD_INTERFACE:${face}>")
endfunction()

# For ccache to see what of a kept header a source depends on, each compiler wants an option of its own.
add_library(holdfast_kept_headers INTERFACE)
target_compile_options(holdfast_kept_headers INTERFACE
  $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess> "$<$<CXX_COMPILER_ID:Clang,AppleClang>:SHELL:-Xclang -fno-pch-timestamp>")

# holdfast_keep_headers(target [header ...]): the standard headers that nearly every source reads, and others, are read
# once for a target: they are longer than most sources are. In a project that takes this one in, nothing is kept.
function(holdfast_keep_headers target)
  if(PROJECT_IS_TOP_LEVEL)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:holdfast_kept_headers>)
    target_precompile_headers(${target} PRIVATE <algorithm> <cmath> <functional> <map> <memory> <optional> <string>
                              <unordered_map> <unordered_set> <variant> <vector> ${ARGN})
  endif()
endfunction()

# holdfast_floor(target source ...): a floor as a static library, named holdfast_FLOOR.
function(holdfast_floor target)
  add_library(${target} STATIC ${ARGN})
  holdfast_keep_headers(${target})
  target_link_libraries(${target} PRIVATE holdfast_flags)
  target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()

# holdfast_gather(target): compiles its sources eight at a time. What eight sources of a floor, or eight tests,
# include costs more than what is in them, so that all together compile in a third of the time; a change of one costs
# little more. Names in the nameless namespaces of one target therefore differ. For clang-tidy each source stays by
# itself.
function(holdfast_gather target)
  if(NOT HOLDFAST_TIDY)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()
