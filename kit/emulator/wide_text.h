// Between UTF-8, which the pure code has, and UTF-16, which Windows takes; and what Windows says of an error.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace emulator {

std::wstring wide(std::string_view text);
std::string narrow(std::wstring_view text);

/// Something that the user must be told, in words for a message box.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Fails with `what`, a colon and the system's message of the last error.
[[noreturn]] void failWithLastError(const std::string& what);

} // namespace emulator
