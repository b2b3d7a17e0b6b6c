// Recognises that a Pascal program ended with a run-time error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace msxrun {

/// Watches what a program prints. A program that stops at a run-time error says so in its last two lines,
///     Run-time error NN, PC=XXXX        or        I/O error NN, PC=XXXX
///     Program aborted
/// and ends; MSX-DOS 1 has no exit code by which it could tell.
class ErrorReport {
  public:
    /// One character that the program printed.
    void add(std::uint8_t character);
    /// True when the output so far ends in such a report.
    bool ends() const;

  private:
    /// More than the report's two lines with their line ends and what may follow them.
    static constexpr std::size_t kept = 256;
    std::string tail_;
};

} // namespace msxrun
