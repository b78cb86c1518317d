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

# holdfast_floor(target source ...): a floor as a static library, named holdfast_FLOOR.
function(holdfast_floor target)
  add_library(${target} STATIC ${ARGN})
  target_link_libraries(${target} PRIVATE holdfast_flags)
  target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()
