// The failures that the classic runtime knows by number and text.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tavrel {

/// Error numbers of the classic runtime; the numbers and texts are what users know from its message boxes.
enum class RuntimeErrorNumber {
    overflow = 6,
    subscriptOutOfRange = 9,
    typeMismatch = 13,
    badFileNameOrNumber = 52,
    fileNotFound = 53,
    deviceIoError = 57,
    diskFull = 61,
    inputPastEndOfFile = 62,
    permissionDenied = 70,
    pathFileAccessError = 75,
    pathNotFound = 76,
};

/// The text that belongs to a number, for example "File not found".
std::string_view runtimeErrorText(RuntimeErrorNumber number);

/// A failure that ends the running operation. Each command has one boundary that shows message() in a
/// message box; the program and all other data live on.
class RuntimeError : public std::runtime_error {
  public:
    /// `detail` names what the error is about, usually a path; it may be empty.
    explicit RuntimeError(RuntimeErrorNumber number, std::string detail = {});

    RuntimeErrorNumber number() const { return number_; }
    std::string_view text() const { return runtimeErrorText(number_); }
    const std::string& detail() const { return detail_; }

    /// The classic text, and on a second line (CR LF) the detail when there is one.
    std::string message() const;

  private:
    RuntimeErrorNumber number_;
    std::string detail_;
};

} // namespace tavrel
