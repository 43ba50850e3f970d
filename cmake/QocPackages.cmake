# Debian packages, one for each component of the installation: libqoc, libqoc-dev, qoc and python3-qoc. scripts/packages
# makes them, in a build tree whose prefix is /usr.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qoc)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "The qoc developers <qoc@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# What the binaries need of other packages is read from them; what they need of each other is said below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

set(CPACK_COMPONENTS_ALL "")
function(qoc_add_package component package section description depends)
  string(TOUPPER "${component}" key)
  set("CPACK_DEBIAN_${key}_PACKAGE_NAME" "${package}" PARENT_SCOPE)
  set("CPACK_DEBIAN_${key}_PACKAGE_SECTION" "${section}" PARENT_SCOPE)
  set("CPACK_DEBIAN_${key}_PACKAGE_DEPENDS" "${depends}" PARENT_SCOPE)
  set("CPACK_COMPONENT_${key}_DESCRIPTION" "${PROJECT_DESCRIPTION}: ${description}." PARENT_SCOPE)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} "${component}" PARENT_SCOPE)
  install(FILES "${PROJECT_SOURCE_DIR}/LICENSE"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" RENAME copyright COMPONENT "${component}")
endfunction()

set(QOC_LIBRARY_PACKAGE "libqoc (= ${PROJECT_VERSION})")
qoc_add_package(runtime libqoc libs "the shared library" "")
qoc_add_package(development libqoc-dev libdevel "headers, static library, CMake package and pkg-config file"
  "${QOC_LIBRARY_PACKAGE}")
if(TARGET qoc_program)
  qoc_add_package(program qoc text "the command line program" "${QOC_LIBRARY_PACKAGE}")
endif()
if(TARGET qoc_python)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  math(EXPR next_minor "${Python3_VERSION_MINOR} + 1")
  qoc_add_package(python python3-qoc python "the Python module"
    "${QOC_LIBRARY_PACKAGE}, python3 (>= 3.${Python3_VERSION_MINOR}), python3 (<< 3.${next_minor})")
endif()

include(CPack)
