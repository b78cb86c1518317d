# What an installed Holdfast is, in components that can be installed one by one:
#   module             the library that a host loads
#   development        its headers, and the files by which CMake and pkg-config find it
#   model              the in-memory host, where the module was built against it
#   model_development  the platform's declarations and the model's own headers
#   solver             the constraint solver, which stands by itself
#   solver_development its headers, and the files by which CMake and pkg-config find it
#   sketch             the sketch engine, which uses the module and the in-memory host
#   sketch_development its headers, and the files by which CMake and pkg-config find it; one header is the solver's
#   program            the program holdfast
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(include_folder "${CMAKE_INSTALL_INCLUDEDIR}/holdfast")
set(cmake_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Holdfast")
set(pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
set(doc_folder "${CMAKE_INSTALL_DATAROOTDIR}/doc/holdfast")

# install_headers(component root header.h ...): under their paths from the root, by which they include one another.
function(install_headers component root)
  foreach(header IN LISTS ARGN)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${root}/${header}" DESTINATION "${include_folder}/${folder}" COMPONENT ${component})
  endforeach()
endfunction()

# install_library(target component development_component export [include_folder])
function(install_library target component development_component export)
  set(includes "${include_folder}")
  if(ARGC GREATER 4)
    set(includes "${ARGV4}")
  endif()
  install(TARGETS ${target} EXPORT ${export}
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${component} NAMELINK_COMPONENT ${development_component}
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${development_component}
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${component}
    INCLUDES DESTINATION "${includes}")
endfunction()

# install_pkgconfig(name component)
function(install_pkgconfig name component)
  file(RELATIVE_PATH up "${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder}" "${CMAKE_INSTALL_PREFIX}")
  string(REGEX REPLACE "/$" "" HOLDFAST_PREFIX "\${pcfiledir}/${up}")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/package/${name}.pc.in" "${PROJECT_BINARY_DIR}/package/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/package/${name}.pc" DESTINATION "${pkgconfig_folder}" COMPONENT ${component})
endfunction()

# An installed library finds the one beside it wherever the whole was moved to.
set_target_properties(holdfast PROPERTIES INSTALL_RPATH "$ORIGIN")

install_library(holdfast module development HoldfastTargets)
install_headers(development "${PROJECT_SOURCE_DIR}/module"
  core/Export.h
  core/LvEditDeleteConstraint.h
  commands/break/ConstraintBreakCmdCenter.h
  commands/break/ConstraintTrimCmdCenter.h
  commands/extend/ConstraintExtendCmdCenter.h
  commands/fillet/ConstraintFilletCmdCenter.h
  evaluation/ConstraintStaticEditCmdCenter.h
  evaluation/CopiesInWaiting.h
  commands/align/ConstraintAlignCmdCenter.h
  commands/mirror/ConstraintMirrorCmdCenter.h
  commands/properties/ConstraintPropertiesCmdCenter.h
  commands/properties/PropertiesOriRecord.h
  commands/lengthen/ConstraintLengthenCmdCenter.h
  commands/join/ConstraintJoinCmdCenter.h
  commands/stretch/ConstraintStretchCmdCenter.h
  drag/LvConstraintDropData.h
  drag/CYxRotateReleaseConstraint.h)

# What pkg-config tells of a platform that is no package: the folder of its headers, and a word for each library.
set(HOLDFAST_PC_REQUIRES "")
set(HOLDFAST_PC_HOST_HEADERS "")
set(HOLDFAST_PC_HOST_CFLAGS "")
set(HOLDFAST_PC_HOST_LIBRARIES "")
if(HOLDFAST_HOST_HEADERS)
  string(REPLACE " " "\\ " HOLDFAST_PC_HOST_HEADERS "${HOLDFAST_HOST_HEADERS}")
  set(HOLDFAST_PC_HOST_CFLAGS " -I\${host_headers}")
endif()
foreach(library IN LISTS HOLDFAST_HOST_LIBRARIES)
  if(NOT library MATCHES "^-|/")
    set(library "-l${library}")
  endif()
  string(REPLACE " " "\\ " library "${library}")
  string(APPEND HOLDFAST_PC_HOST_LIBRARIES " ${library}")
endforeach()
if(TARGET host_model)
  set(HOLDFAST_PC_REQUIRES "holdfast-host-model = ${PROJECT_VERSION}")
  install_library(host_model model model_development HoldfastModelTargets)
  install(TARGETS host_api EXPORT HoldfastModelTargets)
  install(EXPORT HoldfastModelTargets NAMESPACE Holdfast:: DESTINATION "${cmake_folder}" COMPONENT model_development)
  install_pkgconfig(holdfast-host-model model_development)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/host/include/" DESTINATION "${include_folder}/host"
          COMPONENT model_development FILES_MATCHING PATTERN "*.h")
  install_headers(model_development "${PROJECT_SOURCE_DIR}"
    host/model/ConverterRecord.h
    host/model/DynamicEdits.h
    host/model/entities/EntityAccess.h
    host/model/entities/EntityGeometry.h
    host/model/state/HostAccess.h
    host/model/HostAudit.h
    host/model/HostBuilder.h
    host/model/state/HostCall.h
    host/model/state/HostChanges.h
    host/model/HostFaults.h
    host/model/HostJournal.h
    host/model/HostProcess.h
    host/model/state/HostState.h
    host/model/state/ImplementClass.h
    host/model/NetworkAudit.h
    host/model/state/ProtocolExtensions.h
    host/model/Scene.h
    host/model/entities/SegmentNames.h)
else()
  install(TARGETS host_api EXPORT HoldfastTargets)
endif()

install(EXPORT HoldfastTargets NAMESPACE Holdfast:: DESTINATION "${cmake_folder}" COMPONENT development)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/package/HoldfastConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/package/HoldfastConfig.cmake"
                              INSTALL_DESTINATION "${cmake_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/HoldfastConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/package/HoldfastConfig.cmake"
              "${PROJECT_BINARY_DIR}/package/HoldfastConfigVersion.cmake"
        DESTINATION "${cmake_folder}" COMPONENT development)
install_pkgconfig(holdfast development)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
              "${PROJECT_SOURCE_DIR}/docs/tutorial-host.md" "${PROJECT_SOURCE_DIR}/docs/host-operations.txt"
        DESTINATION "${doc_folder}" COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/consumer" DESTINATION "${doc_folder}/examples"
        COMPONENT development)

if(TARGET holdfast_solver)
  # Included as <holdfast/solver/...>. Of the geometry its headers show points alone.
  set(solver_cmake_folder "${CMAKE_INSTALL_LIBDIR}/cmake/HoldfastSolver")
  install_library(holdfast_solver solver solver_development HoldfastSolverTargets "${CMAKE_INSTALL_INCLUDEDIR}")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/solver/include/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
          COMPONENT solver_development FILES_MATCHING PATTERN "*.h")
  install(FILES "${PROJECT_SOURCE_DIR}/geometry/Vec2.h" DESTINATION "${include_folder}/geometry"
          COMPONENT solver_development)
  install(EXPORT HoldfastSolverTargets NAMESPACE Holdfast:: DESTINATION "${solver_cmake_folder}"
          COMPONENT solver_development)
  configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/package/HoldfastSolverConfig.cmake.in"
                                "${PROJECT_BINARY_DIR}/package/HoldfastSolverConfig.cmake"
                                INSTALL_DESTINATION "${solver_cmake_folder}")
  write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/HoldfastSolverConfigVersion.cmake"
                                   COMPATIBILITY SameMinorVersion)
  install(FILES "${PROJECT_BINARY_DIR}/package/HoldfastSolverConfig.cmake"
                "${PROJECT_BINARY_DIR}/package/HoldfastSolverConfigVersion.cmake"
          DESTINATION "${solver_cmake_folder}" COMPONENT solver_development)
  install_pkgconfig(holdfast-solver solver_development)
  install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/docs/solver.md"
          DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/holdfast-solver" COMPONENT solver_development)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/solver/"
          DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/holdfast-solver/examples" COMPONENT solver_development)
endif()

if(TARGET holdfast_sketch)
  # Included as <holdfast/sketch/...>; what the floors below hand on to it, as <holdfast/FLOOR/...>.
  set(sketch_cmake_folder "${CMAKE_INSTALL_LIBDIR}/cmake/HoldfastSketch")
  set(sketch_doc_folder "${CMAKE_INSTALL_DATAROOTDIR}/doc/holdfast-sketch")
  set_target_properties(holdfast_sketch PROPERTIES INSTALL_RPATH "$ORIGIN")
  install_library(holdfast_sketch sketch sketch_development HoldfastSketchTargets "${CMAKE_INSTALL_INCLUDEDIR}")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/sketch/include/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
          COMPONENT sketch_development FILES_MATCHING PATTERN "*.h")
  foreach(floor IN ITEMS geometry document editing formats report)
    install(DIRECTORY "${PROJECT_BINARY_DIR}/include/holdfast_sketch-face/holdfast/${floor}"
            DESTINATION "${include_folder}" COMPONENT sketch_development FILES_MATCHING PATTERN "*.h"
            REGEX "geometry/Vec2.h$" EXCLUDE)  # the solver's headers have it
  endforeach()
  install(EXPORT HoldfastSketchTargets NAMESPACE Holdfast:: DESTINATION "${sketch_cmake_folder}"
          COMPONENT sketch_development)
  configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/package/HoldfastSketchConfig.cmake.in"
                                "${PROJECT_BINARY_DIR}/package/HoldfastSketchConfig.cmake"
                                INSTALL_DESTINATION "${sketch_cmake_folder}")
  write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/HoldfastSketchConfigVersion.cmake"
                                   COMPATIBILITY SameMinorVersion)
  install(FILES "${PROJECT_BINARY_DIR}/package/HoldfastSketchConfig.cmake"
                "${PROJECT_BINARY_DIR}/package/HoldfastSketchConfigVersion.cmake"
          DESTINATION "${sketch_cmake_folder}" COMPONENT sketch_development)
  install_pkgconfig(holdfast-sketch sketch_development)
  install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/docs/sketch.md"
          DESTINATION "${sketch_doc_folder}" COMPONENT sketch_development)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/sketch/" DESTINATION "${sketch_doc_folder}/examples"
          COMPONENT sketch_development)
endif()

if(TARGET holdfast_program)
  file(RELATIVE_PATH libraries "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(holdfast_program PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
  install(TARGETS holdfast_program RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT program)
  install(FILES "${PROJECT_SOURCE_DIR}/scripts/completion/holdfast"
          DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT program)
endif()

include("${PROJECT_SOURCE_DIR}/cmake/debian.cmake")
