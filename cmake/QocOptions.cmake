# The options of the build, and qoc_build_options: the warnings and the instrumentation that every target of this
# project is compiled with. Nothing here reaches a project that uses the library.

option(QOC_BUILD_TOOLS "Build the command line program" ${PROJECT_IS_TOP_LEVEL})
option(QOC_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(QOC_BUILD_BENCH "Build the benchmarks" ${PROJECT_IS_TOP_LEVEL})
option(QOC_BUILD_FUZZ "Build the fuzzers, with clang" OFF)
option(QOC_BUILD_PYTHON "Build the Python module" OFF)
option(QOC_INSTALL "Add the install rules" ${PROJECT_IS_TOP_LEVEL})
option(QOC_PACKAGES "Prepare Debian packages; see scripts/packages" OFF)
option(QOC_WERROR "Treat the compiler's warnings as errors" ${PROJECT_IS_TOP_LEVEL})
option(QOC_COVERAGE "Count which lines and branches run, with clang" OFF)
set(QOC_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread; none when empty")

set(QOC_GOOGLETEST_SOURCES "" CACHE PATH
  "Build GoogleTest from the sources here (Debian: googletest, /usr/src/googletest), for flags that the installed one lacks")

set(QOC_INSTRUMENTATION "")
if(QOC_SANITIZE)
  list(APPEND QOC_INSTRUMENTATION
    "-fsanitize=${QOC_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  if(QOC_SANITIZE MATCHES "implicit-conversion")
    # What others wrote, and the tests, which hand hostile numbers over on purpose, are not looked at for these.
    list(APPEND QOC_INSTRUMENTATION "-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/sanitize_ignore.txt")
  endif()
endif()
if(QOC_COVERAGE)
  list(APPEND QOC_INSTRUMENTATION -fprofile-instr-generate -fcoverage-mapping -fprofile-update=atomic)
endif()

add_library(qoc_build_options INTERFACE)
target_compile_options(qoc_build_options INTERFACE
  -Wall -Wextra -Wpedantic $<$<BOOL:${QOC_WERROR}>:-Werror>
  # g++ 12 reports overlapping copies inside std::string's operator+ where there are none.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  ${QOC_INSTRUMENTATION})
target_compile_definitions(qoc_build_options INTERFACE $<$<BOOL:${QOC_COVERAGE}>:QOC_COVERAGE>)
target_link_options(qoc_build_options INTERFACE ${QOC_INSTRUMENTATION})

# Finds a package, or ends with the Debian package and the option that help.
macro(qoc_require_package name debian_package option)
  find_package(${name} QUIET)
  if(NOT ${name}_FOUND)
    message(FATAL_ERROR
      "qoc: ${name} was not found. Install it (Debian: ${debian_package}), or configure with -D${option}=OFF.")
  endif()
endmacro()
