# What an installation holds. Components: runtime (the shared library), development (headers, static library, CMake
# package, pkg-config file), program (the command line program) and python (the Python module, where it is built).

if(NOT QOC_INSTALL)
  return()
endif()

include(CMakePackageConfigHelpers)

install(TARGETS qoc EXPORT qocTargets
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development)
install(TARGETS qoc_static EXPORT qocTargets
  ARCHIVE COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/qoc"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development
  FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")

set(QOC_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/qoc")
install(EXPORT qocTargets NAMESPACE qoc:: DESTINATION "${QOC_PACKAGE_DIR}" COMPONENT development)
configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/packaging/qocConfig.cmake.in" "${PROJECT_BINARY_DIR}/qocConfig.cmake"
  INSTALL_DESTINATION "${QOC_PACKAGE_DIR}")
# Before 1.0.0 a new minor version may change the interface.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/qocConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/qocConfig.cmake" "${PROJECT_BINARY_DIR}/qocConfigVersion.cmake"
  DESTINATION "${QOC_PACKAGE_DIR}" COMPONENT development)

# pkg-config finds the prefix from the file's own place, so an installed tree can be moved.
file(RELATIVE_PATH QOC_PC_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" QOC_PC_PREFIX "${QOC_PC_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/packaging/qoc.pc.in" "${PROJECT_BINARY_DIR}/qoc.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/qoc.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/README.md"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development)

if(TARGET qoc_program)
  # The program finds its library beside itself, wherever the tree lies.
  file(RELATIVE_PATH QOC_LIBDIR_FROM_BINDIR "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(qoc_program PROPERTIES INSTALL_RPATH "$ORIGIN/${QOC_LIBDIR_FROM_BINDIR}")
  install(TARGETS qoc_program RUNTIME COMPONENT program)
endif()
