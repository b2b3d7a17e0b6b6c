# The version is said once, in project(). This hands it on: app/version.h for the About box, the manifest, and the
# properties that Windows shows of each delivered program. packaging/build reads it from CMakeLists.txt too.
configure_file("${CMAKE_SOURCE_DIR}/app/version.h.in" "${CMAKE_BINARY_DIR}/app/version.h" @ONLY)
configure_file("${CMAKE_SOURCE_DIR}/app/tavrel.manifest.in" "${CMAKE_BINARY_DIR}/app/tavrel.manifest" @ONLY)

# tavrel_delivered_program(TARGET DESCRIPTION): a program of ours that users get. For Windows it has name and version in its
# properties, and no symbols.
function(tavrel_delivered_program target description)
  if(TAVREL_TARGET STREQUAL "windows")
    set(properties "${CMAKE_CURRENT_BINARY_DIR}/${target}_properties.rc")
    configure_file("${CMAKE_SOURCE_DIR}/cmake/properties.rc.in" "${properties}" @ONLY)
    target_sources(${target} PRIVATE "${properties}")
    target_link_options(${target} PRIVATE -s)
  endif()
endfunction()

# No moment of linking in a program: two builds of one commit are the same bytes.
if(TAVREL_TARGET STREQUAL "windows")
  add_link_options(-Wl,--no-insert-timestamp)
endif()
