# `cpack` makes Debian packages, one for each component of the installation.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Holdfast developers <holdfast@users.noreply.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# Libraries of the other packages made here are found in the build; their packages are named below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

# debian_package(component name section "what it is" [needed component ...])
macro(debian_package component name section summary)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}")
  set(CPACK_COMPONENT_${upper}_DEPENDS ${ARGN})
endmacro()

# What the module promises holds within a major version, what solver and engine promise within a minor one.
set(abi ${PROJECT_VERSION_MAJOR})
set(engine_abi ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_COMPONENTS_ALL "")
if(TARGET host_model)
  debian_package(model libholdfast-host-model${abi} libs "In-memory CAD host for libholdfast")
  debian_package(model_development libholdfast-host-model-dev libdevel
                 "Declarations and headers of the in-memory CAD host" model)
  debian_package(module libholdfast${abi} libs "Keeps 2-D constraint networks true while a CAD host edits" model)
  debian_package(development libholdfast-dev libdevel "Headers and build files of libholdfast"
                 module model_development)
else()
  debian_package(module libholdfast${abi} libs "Keeps 2-D constraint networks true while a CAD host edits")
  debian_package(development libholdfast-dev libdevel "Headers and build files of libholdfast" module)
endif()
if(TARGET holdfast_solver)
  debian_package(solver libholdfast-solver${engine_abi} libs "Solver for 2-D geometric constraints")
  debian_package(solver_development libholdfast-solver-dev libdevel "Headers and build files of libholdfast-solver"
                 solver)
endif()
if(TARGET holdfast_sketch)
  debian_package(sketch libholdfast-sketch${engine_abi} libs "Edits constrained drawings and tells each constraint's fate"
                 module)
  debian_package(sketch_development libholdfast-sketch-dev libdevel "Headers and build files of libholdfast-sketch"
                 sketch solver_development)
endif()
if(TARGET holdfast_program)
  debian_package(program holdfast graphics "Edits constrained drawings and tells each constraint's fate"
                 module)
  # Loaded when a PDF page is written: whoever writes none need not have it.
  set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "librsvg2-2")
endif()
include(CPack)
