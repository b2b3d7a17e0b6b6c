#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace tp3 {

/// One source file that is open for reading.
class SourceReader {
  public:
    virtual ~SourceReader() = default;
    /// Reads up to `capacity` bytes; returns how many, 0 at the end. A read error counts as the
    /// end or, where there are exceptions, ends the compilation with one.
    virtual std::size_t read(char* buffer, std::size_t capacity) = 0;
};

/// What the compiler core needs from the system it runs on. The core itself makes no system call, so the same
/// sources run under DOS, natively and in the fuzzer.
class Host {
  public:
    virtual ~Host() = default;
    /// Opens a source file by the name written in the program, already in upper case with its extension.
    /// Null when there is no such file or it cannot be read.
    virtual std::unique_ptr<SourceReader> openSource(std::string_view name) = 0;
    /// Called now and then with the number of lines read so far in this pass (1 survey, 2 code).
    virtual void progress(int pass, std::uint32_t lines) = 0;
    /// Bytes of machine stack that are left for the recursion of parser and generator.
    virtual std::size_t stackLeft() = 0;
};

} // namespace tp3
