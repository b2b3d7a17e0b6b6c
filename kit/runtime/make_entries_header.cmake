# cmake -DLIBRARY=RUNTIME.COM -DSYMBOLS=runtime.sym -DENTRIES=entries.def -DHEADER=runtime_entries.h -P this
#
# Checks the assembled library, prints how much of its space is free, and writes the compiler's header: the entries of
# entries.def in their order, each with the address of the assembler's symbol "@name", and a checksum of the library.
# The checksum is the 32-bit FNV-1a of all its bytes: start with 811C9DC5h; for each byte, xor it in, then multiply by
# 01000193h modulo 2^32.

set(library_start 0x0100)
set(library_limit 0x2E9B)
math(EXPR library_size "${library_limit} - ${library_start}")

file(SIZE "${LIBRARY}" size)
if(NOT size EQUAL library_size)
  message(FATAL_ERROR "${LIBRARY} has ${size} bytes instead of ${library_size}")
endif()

# The symbol table: lines "name<TAB>EQU 0ABCDH".
file(STRINGS "${SYMBOLS}" symbol_lines)
foreach(line IN LISTS symbol_lines)
  if(line MATCHES "^@?([A-Za-z0-9_]+)[ \t]+EQU 0*([0-9A-F]+)H$")
    set(symbol ${CMAKE_MATCH_1})
    set(value 0x${CMAKE_MATCH_2})
    if(line MATCHES "^@")
      set(entry_${symbol} ${value})
    elseif(symbol STREQUAL "libraryEnd")
      set(library_end ${value})
    endif()
  endif()
endforeach()

set(names)
file(STRINGS "${ENTRIES}" entry_lines REGEX "^RUNTIME_ENTRY\\(")
foreach(line IN LISTS entry_lines)
  string(REGEX MATCH "^RUNTIME_ENTRY\\(([A-Za-z0-9_]+)\\)" line "${line}")
  set(name ${CMAKE_MATCH_1})
  if(NOT DEFINED entry_${name})
    message(FATAL_ERROR "${ENTRIES}: the library has no entry \"${name}\" (label @${name})")
  endif()
  list(APPEND names ${name})
endforeach()

# The map: entries in the order of their addresses, each with the bytes up to the next one.
set(places)
foreach(name IN LISTS names)
  math(EXPR place "${entry_${name}} + 0x10000" OUTPUT_FORMAT HEXADECIMAL)
  list(APPEND places "${place} ${name}")
endforeach()
list(SORT places)
list(REVERSE places)
set(map "")
set(behind ${library_end})
foreach(place IN LISTS places)
  string(REGEX MATCH "^0x1(....) (.*)$" place "${place}")
  math(EXPR bytes "${behind} - 0x${CMAKE_MATCH_1}")
  string(PREPEND map "${CMAKE_MATCH_1} ${bytes} ${CMAKE_MATCH_2}\n")
  set(behind 0x${CMAKE_MATCH_1})
endforeach()
get_filename_component(folder "${SYMBOLS}" DIRECTORY)
file(WRITE "${folder}/runtime_map.txt" "${map}")

math(EXPR used "${library_end} - ${library_start}")
math(EXPR free "${library_limit} - ${library_end}")
message("RUNTIME.COM: ${used} of ${library_size} bytes used, ${free} bytes free")

file(READ "${LIBRARY}" bytes HEX)
string(REGEX MATCHALL ".." bytes "${bytes}")
set(checksum 0x811C9DC5)
foreach(byte IN LISTS bytes)
  math(EXPR checksum "((${checksum} ^ 0x${byte}) * 0x01000193) & 0xFFFFFFFF")
endforeach()
math(EXPR checksum "${checksum}" OUTPUT_FORMAT HEXADECIMAL)

set(enumerators "")
set(addresses "")
set(texts "")
foreach(name IN LISTS names)
  math(EXPR address "${entry_${name}}" OUTPUT_FORMAT HEXADECIMAL)
  string(APPEND enumerators "    ${name},\n")
  string(APPEND addresses "    ${address}, // ${name}\n")
  string(APPEND texts "    \"${name}\",\n")
endforeach()

set(text "// Made by the build from the run-time library's sources; see kit/runtime/make_entries_header.cmake.
#pragma once

#include <cstdint>

namespace tp3 {

/// The library's entries; kit/runtime/entries.def says how each is called.
enum class RuntimeEntry : unsigned char {
${enumerators}};

/// Address of each entry, by the enumerator's value.
inline constexpr std::uint16_t runtimeAddresses[] = {
${addresses}};

/// Name of each entry, by the enumerator's value.
inline constexpr const char* runtimeEntryNames[] = {
${texts}};

/// Bytes of RUNTIME.COM: it fills 0100h to 2E9Ah.
inline constexpr unsigned runtimeSize = ${library_size};

/// 32-bit FNV-1a of all bytes of the RUNTIME.COM that these addresses belong to (begin with 0x811C9DC5; for each byte
/// xor it in, then multiply by 0x01000193).
inline constexpr std::uint32_t runtimeChecksum = ${checksum};

} // namespace tp3
")
get_filename_component(folder "${HEADER}" DIRECTORY)
file(MAKE_DIRECTORY "${folder}")
file(WRITE "${HEADER}" "${text}")
