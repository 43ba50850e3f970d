# The fuzzers' functions, fuzz/NAME_fuzz.cpp each. Two drivers run them: clang's fuzzer, in fuzz/, and a plain one that
# goes through kept inputs, in tests/.

file(GLOB QOC_FUZZ_SOURCES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/fuzz/*_fuzz.cpp")
if(TARGET qoc_program)
  # What the program reads of readings; dictionary files have a library already.
  find_package(pugixml REQUIRED)
  file(GLOB QOC_READINGS_SOURCES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/qoc/readings*.cpp")
  add_library(qoc_readings_${QOC_FUZZ_DRIVER} STATIC ${QOC_READINGS_SOURCES}
    "${PROJECT_SOURCE_DIR}/tools/qoc/page_document.cpp" "${PROJECT_SOURCE_DIR}/tools/qoc/xml_document.cpp")
  target_link_libraries(qoc_readings_${QOC_FUZZ_DRIVER}
    PUBLIC qoc_dictionary_file pugixml::pugixml PRIVATE qoc_build_options)
  set(QOC_FUZZ_LIBRARIES qoc_readings_${QOC_FUZZ_DRIVER})
else()
  list(FILTER QOC_FUZZ_SOURCES EXCLUDE REGEX "/(dictionary_file|readings)_fuzz\\.cpp$")
  set(QOC_FUZZ_LIBRARIES "")
endif()

set(QOC_FUZZ_NAMES "")
foreach(source IN LISTS QOC_FUZZ_SOURCES)
  cmake_path(GET source STEM name)
  string(REGEX REPLACE "_fuzz$" "" name "${name}")
  list(APPEND QOC_FUZZ_NAMES "${name}")
  set(executable "qoc_${QOC_FUZZ_DRIVER}_${name}")
  add_executable(${executable} "${source}" "${PROJECT_SOURCE_DIR}/tests/support/heap.cpp")
  target_include_directories(${executable} PRIVATE "${PROJECT_SOURCE_DIR}/tests" "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${executable} PRIVATE qoc_objects ${QOC_FUZZ_LIBRARIES} GTest::gtest qoc_build_options)
  set_target_properties(${executable} PROPERTIES CXX_EXTENSIONS OFF)
endforeach()
