#include "msxrun/terminal_console.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace msxrun {

namespace {

constexpr std::size_t pieceSize = 65536;

} // namespace

void TerminalConsole::Buffer::add(std::uint8_t character) {
    bytes += static_cast<char>(character);
    if (bytes.size() >= pieceSize) {
        flush();
    }
}

void TerminalConsole::Buffer::flush() {
    std::size_t done = 0;
    while (done < bytes.size() && !failed) {
        const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            failed = true;
        }
    }
    bytes.clear();
}

TerminalConsole::TerminalConsole(const std::string& printerFile) {
    screen_.descriptor = STDOUT_FILENO;
    if (!printerFile.empty()) {
        printer_.descriptor = open(printerFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
        if (printer_.descriptor < 0) {
            throw std::system_error(errno, std::generic_category(), printerFile);
        }
    }
    terminal_ = tcgetattr(STDIN_FILENO, &savedMode_) == 0;
    if (terminal_) {
        termios mode = savedMode_;
        mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        tcsetattr(STDIN_FILENO, TCSANOW, &mode);
    }
}

TerminalConsole::~TerminalConsole() {
    flush();
    if (printer_.descriptor >= 0) {
        close(printer_.descriptor);
    }
    if (terminal_) {
        tcsetattr(STDIN_FILENO, TCSANOW, &savedMode_);
    }
}

/// Gets more input; false when there is none (yet).
bool TerminalConsole::fill(bool wait) {
    if (terminal_) {
        screen_.flush();
        pollfd keyboard{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        if (!wait && poll(&keyboard, 1, 0) <= 0) {
            return false;
        }
    }
    ssize_t count = 0;
    do {
        count = ::read(STDIN_FILENO, input_.data(), input_.size());
    } while (count < 0 && errno == EINTR);
    inputStart_ = 0;
    inputEnd_ = count > 0 ? static_cast<std::size_t>(count) : 0;
    inputOver_ = count <= 0;
    return count > 0;
}

Key TerminalConsole::peek(bool wait) {
    for (;;) {
        if (inputStart_ == inputEnd_ && (inputOver_ || !fill(wait))) {
            return {.kind = inputOver_ ? Key::Kind::ended : Key::Kind::none};
        }
        const std::uint8_t character = input_[inputStart_];
        if (character != '\n') {
            return {.kind = Key::Kind::code, .code = character};
        }
        if (!afterReturn_) {
            return {.kind = Key::Kind::code, .code = '\r'};
        }
        afterReturn_ = false;
        ++inputStart_;
    }
}

void TerminalConsole::take() {
    if (inputStart_ < inputEnd_) {
        afterReturn_ = input_[inputStart_] == '\r';
        ++inputStart_;
    }
}

void TerminalConsole::write(std::uint8_t character) {
    screen_.add(character);
    report_.add(character);
}

void TerminalConsole::print(std::uint8_t character) {
    if (printer_.descriptor >= 0) {
        printer_.add(character);
    }
}

bool TerminalConsole::flush() {
    screen_.flush();
    if (printer_.descriptor >= 0) {
        printer_.flush();
    }
    return !screen_.failed && !printer_.failed;
}

} // namespace msxrun
