# What an installed Holdfast is: the module with its headers, the host model for developers without the platform, the
# workbench program, and the files by which CMake and pkg-config find them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(module_headers
  core/Export.h
  core/LvEditDeleteConstraint.h
  commands/break/ConstraintBreakCmdCenter.h
  commands/break/ConstraintTrimCmdCenter.h
  commands/extend/ConstraintExtendCmdCenter.h
  commands/fillet/ConstraintFilletCmdCenter.h
  evaluation/ConstraintStaticEditCmdCenter.h
  commands/align/ConstraintAlignCmdCenter.h
  commands/mirror/ConstraintMirrorCmdCenter.h
  commands/properties/ConstraintPropertiesCmdCenter.h
  commands/lengthen/ConstraintLengthenCmdCenter.h
  commands/join/ConstraintJoinCmdCenter.h
  commands/stretch/ConstraintStretchCmdCenter.h
  drag/LvConstraintDropData.h
  drag/CYxRotateReleaseConstraint.h)
foreach(header IN LISTS module_headers)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${PROJECT_SOURCE_DIR}/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/holdfast/${folder}"
          COMPONENT development)
endforeach()

set(installed_targets holdfast host_api)
if(TARGET host_model)
  list(APPEND installed_targets host_model)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/host/include/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/holdfast/host"
          COMPONENT development FILES_MATCHING PATTERN "*.h")
  foreach(folder IN ITEMS model src)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/host/${folder}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/holdfast/host"
            COMPONENT development FILES_MATCHING PATTERN "*.h")
  endforeach()
endif()
install(TARGETS ${installed_targets} EXPORT HoldfastTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
if(TARGET holdfast_program)
  install(TARGETS holdfast_program RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
endif()

set(cmake_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Holdfast")
install(EXPORT HoldfastTargets NAMESPACE Holdfast:: DESTINATION "${cmake_folder}" COMPONENT development)
configure_package_config_file(cmake/package/HoldfastConfig.cmake.in "${PROJECT_BINARY_DIR}/HoldfastConfig.cmake"
                              INSTALL_DESTINATION "${cmake_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/HoldfastConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/HoldfastConfig.cmake" "${PROJECT_BINARY_DIR}/HoldfastConfigVersion.cmake"
        DESTINATION "${cmake_folder}" COMPONENT development)

configure_file(cmake/package/holdfast.pc.in "${PROJECT_BINARY_DIR}/holdfast.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/holdfast.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
        COMPONENT development)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/README.md"
        DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT runtime)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Holdfast developers <holdfast@users.noreply.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
include(CPack)
