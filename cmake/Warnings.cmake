# tavrel_warnings: link it PRIVATE into every target of ours (never into fetched libraries).
add_library(tavrel_warnings INTERFACE)
target_compile_options(tavrel_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wimplicit-fallthrough -Wcast-qual)
# GCC 12 sees overlapping copies inside std::string's own operator+ that cannot happen.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tavrel_warnings INTERFACE -Wduplicated-cond -Wlogical-op -Wno-restrict)
endif()

# Counted lines are those of the source, so nothing is optimised; and no sanitizer, so that a run costs little.
option(TAVREL_COVERAGE "count how often each line of the native tree runs" OFF)
if(TAVREL_COVERAGE)
  add_compile_options(--coverage -fprofile-abs-path)
  add_link_options(--coverage)
# Sanitizers are for the whole native tree, fetched test libraries included.
elseif(TAVREL_TARGET STREQUAL "native")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# The programs of libFuzzer, which wants to see every branch that is taken.
option(TAVREL_FUZZ "build the fuzz targets for libFuzzer (clang)" OFF)
if(TAVREL_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
