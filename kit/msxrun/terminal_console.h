// The console of msxrun: standard input and output.
#pragma once

#include "msxrun/console.h"
#include "msxrun/error_report.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <termios.h>

namespace msxrun {

/// Keys from standard input, the screen on standard output, the printer in a file.
///
/// From a terminal keys come one by one, unechoed. From a file or pipe they are a script: a key is always
/// ready until the end, and reading waits for the other side of a pipe.
class TerminalConsole : public Console {
  public:
    /// @param printerFile opened for appending; empty: printed characters are dropped
    /// @throws std::system_error when it cannot be opened
    explicit TerminalConsole(const std::string& printerFile);
    ~TerminalConsole() override;

    Key peek(bool wait) override;
    void take() override;
    bool interactive() const override { return terminal_; }
    void write(std::uint8_t character) override;
    void print(std::uint8_t character) override;

    /// Writes out what is still held back.
    /// @return false when some output was lost, now or before
    bool flush();
    /// True when the output ends in the report of a run-time error.
    bool reportedError() const { return report_.ends(); }

  private:
    /// Output that goes out in large pieces.
    struct Buffer {
        int descriptor = -1;
        std::string bytes;
        bool failed = false;
        void add(std::uint8_t character);
        void flush();
    };

    bool fill(bool wait);

    bool terminal_ = false;
    termios savedMode_{};
    std::array<std::uint8_t, 4096> input_{};
    std::size_t inputStart_ = 0;
    std::size_t inputEnd_ = 0;
    bool inputOver_ = false;
    bool afterReturn_ = false; ///< the last key was a carriage return: a line feed behind it is the same key
    Buffer screen_;
    Buffer printer_;
    ErrorReport report_;
};

} // namespace msxrun
