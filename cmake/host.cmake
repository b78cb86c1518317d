# The seam to the platform. Without HOLDFAST_HOST_HEADERS the in-memory model of the host is built and used.
set(HOLDFAST_HOST_HEADERS "" CACHE PATH "Headers of a real host platform; empty: the in-memory model")
set(HOLDFAST_HOST_LIBRARIES "" CACHE STRING "Libraries of a real host platform")

# Declarations only: all that the module may see.
add_library(host_api INTERFACE)
if(HOLDFAST_HOST_HEADERS)
  if(NOT EXISTS "${HOLDFAST_HOST_HEADERS}/yxdb/YxDbEntity.h")
    message(FATAL_ERROR "HOLDFAST_HOST_HEADERS names ${HOLDFAST_HOST_HEADERS}, where there is no yxdb/YxDbEntity.h. "
                        "Give the folder of the platform's headers, with yxbase, yxdb, YxDbConstraints, yxcore and "
                        "BondKit in it, or leave the option empty to build with the in-memory model.")
  endif()
  target_include_directories(host_api SYSTEM INTERFACE "$<BUILD_INTERFACE:${HOLDFAST_HOST_HEADERS}>")
  target_link_libraries(host_api INTERFACE "$<BUILD_INTERFACE:${HOLDFAST_HOST_LIBRARIES}>")
else()
  target_include_directories(host_api INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/host/include> $<INSTALL_INTERFACE:include/holdfast/host>)
  add_subdirectory("${PROJECT_SOURCE_DIR}/host" host)
  target_compile_features(host_model INTERFACE cxx_std_20)
  set_target_properties(host_model PROPERTIES OUTPUT_NAME holdfast_host_model)
endif()
