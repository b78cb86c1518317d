# The module: compiled once, linked twice. The shared library is the product and shows only its exported classes;
# the tests link the same objects directly, so that they can reach rules that no host sees.
add_library(holdfast_objects OBJECT)
target_link_libraries(holdfast_objects PRIVATE holdfast_flags PUBLIC host_api)
target_compile_definitions(holdfast_objects PRIVATE HOLDFAST_BUILDING)
set_target_properties(holdfast_objects PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
foreach(floor IN ITEMS core evaluation commands drag)
  if(EXISTS "${PROJECT_SOURCE_DIR}/${floor}/CMakeLists.txt")
    add_subdirectory(${floor})
  endif()
endforeach()

add_library(holdfast SHARED $<TARGET_OBJECTS:holdfast_objects>)
target_include_directories(holdfast PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
target_compile_features(holdfast INTERFACE cxx_std_20)
target_link_libraries(holdfast PUBLIC host_api)
if(TARGET host_model)
  target_link_libraries(holdfast PUBLIC host_model)
endif()
set_target_properties(holdfast PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
                                          LINKER_LANGUAGE CXX)

# For tests only: the module's objects, with everything visible to the linker.
add_library(holdfast_static STATIC $<TARGET_OBJECTS:holdfast_objects>)
target_include_directories(holdfast_static PUBLIC "${PROJECT_SOURCE_DIR}")
if(WIN32)
  # The tests are part of the same program: they must not look for the classes in a DLL.
  target_compile_definitions(holdfast_static INTERFACE HOLDFAST_BUILDING)
endif()
target_link_libraries(holdfast_static PUBLIC host_api)
if(TARGET host_model)
  target_link_libraries(holdfast_static PUBLIC host_model)
endif()
set_target_properties(holdfast_static PROPERTIES LINKER_LANGUAGE CXX)
