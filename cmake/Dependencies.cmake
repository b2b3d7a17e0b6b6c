# tavrel::scintilla and tavrel::lexilla, static, for the Windows architecture that is built.
# setup/dependencies.sh builds them and writes where they are.
if(TAVREL_TARGET STREQUAL "windows")
  include("${TAVREL_OUT}/dependencies.cmake" OPTIONAL RESULT_VARIABLE tavrel_dependencies)
  if(NOT tavrel_dependencies)
    message(FATAL_ERROR "Run setup/dependencies.sh first: it builds the libraries that Tavrel links.")
  endif()

  # tavrel_import(NAME FOLDER LIBRARIES...): one static library with its headers and the system libraries it needs.
  function(tavrel_import name folder)
    add_library(tavrel::${name} STATIC IMPORTED GLOBAL)
    set_target_properties(tavrel::${name} PROPERTIES
      IMPORTED_LOCATION "${folder}/lib/lib${name}.a"
      INTERFACE_INCLUDE_DIRECTORIES "${folder}/include"
      INTERFACE_LINK_LIBRARIES "${ARGN}")
  endfunction()

  set(processor "${CMAKE_SYSTEM_PROCESSOR}")
  tavrel_import(scintilla "${TAVREL_SCINTILLA_${processor}}" gdi32 user32 imm32 ole32 uuid oleaut32 msimg32)
  # The lexer interface is declared in terms of Scintilla's headers.
  tavrel_import(lexilla "${TAVREL_LEXILLA_${processor}}" tavrel::scintilla)
endif()
