# GoogleTest is built from the sources that Debian's package googletest installs, so that native and
# Windows tests use the same version.
enable_testing()
if(TAVREL_TARGET STREQUAL "native" OR TAVREL_TARGET STREQUAL "windows")
  add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
endif()

# tavrel_add_test(NAME SOURCES file... LIBRARIES lib...)
# One test program, native or for Windows. `./test` runs all that tests.txt lists, the Windows ones under Wine;
# natively `ctest` runs them too.
function(tavrel_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest_main GTest::gmock tavrel_warnings)
  set_property(GLOBAL APPEND PROPERTY TAVREL_TESTS ${name})
  if(TAVREL_TARGET STREQUAL "native")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS googletest)
  endif()
endfunction()

# Writes tests.txt into the build tree: the path of each test program, one a line.
function(tavrel_write_test_list)
  get_property(tests GLOBAL PROPERTY TAVREL_TESTS)
  set(paths "")
  foreach(test IN LISTS tests)
    string(APPEND paths "$<TARGET_FILE:${test}>\n")
  endforeach()
  file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/tests.txt" CONTENT "${paths}")
endfunction()
cmake_language(DEFER DIRECTORY "${CMAKE_SOURCE_DIR}" CALL tavrel_write_test_list)
