# GoogleTest is built from the sources that Debian's package googletest installs, so that native and
# Windows tests use the same version.
enable_testing()
if(TAVREL_TARGET STREQUAL "native" OR TAVREL_TARGET STREQUAL "windows")
  add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
  include(GoogleTest)
endif()

# tavrel_add_test(NAME SOURCES file... LIBRARIES lib...)
# One test program; run by `./test` through CTest (natively) or by the Wine runner (windows).
function(tavrel_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest_main GTest::gmock tavrel_warnings)
  set_property(GLOBAL APPEND PROPERTY TAVREL_TESTS ${name})
  if(TAVREL_TARGET STREQUAL "native")
    add_test(NAME ${name} COMMAND ${name})
  endif()
endfunction()
