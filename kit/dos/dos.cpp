#include "dos/dos.h"

#include "dos/interrupt.h"

#include <algorithm>
#include <utility>

namespace dos {

namespace {

constexpr std::uint32_t standardOutput = 1;
constexpr std::uint32_t standardError = 2;
/// The longest path that DOS takes, with its end mark.
constexpr std::size_t longestPath = 80;

Error errorOf(const Registers& registers) {
    return registers.failed() ? static_cast<Error>(registers.ax()) : Error::none;
}

/// Puts a name with its end mark into the transfer buffer; false when DOS would not take it.
bool putName(std::string_view name, std::size_t offset = 0) {
    if (name.size() >= longestPath || name.find('\0') != std::string_view::npos) {
        return false;
    }
    *std::copy(name.begin(), name.end(), transferBuffer() + offset) = '\0';
    return true;
}

Error writeTo(std::uint32_t handle, std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), transferSize);
        std::copy_n(bytes.data(), count, transferBuffer());
        Registers registers{.eax = 0x4000, .ebx = handle, .ecx = static_cast<std::uint32_t>(count)};
        interrupt21(registers);
        if (registers.failed()) {
            return errorOf(registers);
        }
        if (registers.ax() != count) {
            return Error::diskFull;
        }
        bytes.remove_prefix(count);
    }
    return Error::none;
}

} // namespace

bool print(std::string_view text) {
    return writeTo(standardOutput, text) == Error::none;
}

bool printToConsole(std::string_view text) {
    return writeTo(standardError, text) == Error::none;
}

File::File(File&& other) noexcept : handle_(std::exchange(other.handle_, -1)), error_(other.error_) {}

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        close();
        handle_ = std::exchange(other.handle_, -1);
        error_ = other.error_;
    }
    return *this;
}

bool File::open(std::string_view name, bool forWriting) {
    close();
    if (!putName(name)) {
        error_ = Error::nameTooLong;
        return false;
    }
    Registers registers{.eax = forWriting ? 0x3D02U : 0x3D00U};
    interrupt21(registers);
    return take(registers.flags, registers.ax());
}

bool File::create(std::string_view name) {
    close();
    if (!putName(name)) {
        error_ = Error::nameTooLong;
        return false;
    }
    Registers registers{.eax = 0x3C00};
    interrupt21(registers);
    return take(registers.flags, registers.ax());
}

/// Keeps the handle or the error that a call has given.
bool File::take(std::uint32_t flags, std::uint32_t result) {
    const bool failed = (flags & 1U) != 0;
    handle_ = failed ? -1 : static_cast<int>(result);
    error_ = failed ? static_cast<Error>(result) : Error::none;
    return !failed;
}

bool File::close() {
    if (!isOpen()) {
        return true;
    }
    Registers registers{.eax = 0x3E00, .ebx = static_cast<std::uint32_t>(std::exchange(handle_, -1))};
    interrupt21(registers);
    error_ = errorOf(registers);
    return error_ == Error::none;
}

std::size_t File::read(std::span<char> bytes) {
    error_ = isOpen() ? Error::none : Error::invalidHandle;
    std::size_t done = 0;
    while (isOpen() && done < bytes.size()) {
        const std::size_t wanted = std::min(bytes.size() - done, transferSize);
        Registers registers{.eax = 0x3F00,
                            .ebx = static_cast<std::uint32_t>(handle_),
                            .ecx = static_cast<std::uint32_t>(wanted)};
        interrupt21(registers);
        error_ = errorOf(registers);
        if (error_ != Error::none || registers.ax() == 0) {
            break;
        }
        std::copy_n(transferBuffer(), registers.ax(), bytes.data() + done);
        done += registers.ax();
    }
    return done;
}

bool File::write(std::string_view bytes) {
    error_ = isOpen() ? writeTo(static_cast<std::uint32_t>(handle_), bytes) : Error::invalidHandle;
    return error_ == Error::none;
}

bool File::move(unsigned origin, std::uint32_t offset, std::uint32_t& position) {
    if (!isOpen()) {
        error_ = Error::invalidHandle;
        return false;
    }
    Registers registers{.eax = 0x4200U | origin,
                        .ebx = static_cast<std::uint32_t>(handle_),
                        .ecx = offset >> 16U,
                        .edx = offset & 0xFFFFU};
    interrupt21(registers);
    error_ = errorOf(registers);
    position = (registers.edx & 0xFFFFU) << 16U | registers.ax();
    return error_ == Error::none;
}

bool File::seek(std::uint32_t offset) {
    std::uint32_t position = 0;
    return move(0, offset, position);
}

bool File::isDevice() {
    constexpr std::uint32_t deviceBit = 0x80;
    Registers registers{.eax = 0x4400, .ebx = static_cast<std::uint32_t>(handle_)};
    interrupt21(registers);
    return isOpen() && !registers.failed() && (registers.edx & deviceBit) != 0;
}

std::uint32_t File::size() {
    constexpr unsigned fromHere = 1;
    constexpr unsigned fromEnd = 2;
    std::uint32_t here = 0;
    std::uint32_t end = 0;
    const bool known = move(fromHere, 0, here) && move(fromEnd, 0, end) && seek(here);
    return known ? end : 0;
}

Error remove(std::string_view name) {
    if (!putName(name)) {
        return Error::nameTooLong;
    }
    Registers registers{.eax = 0x4100};
    interrupt21(registers);
    return errorOf(registers);
}

Error rename(std::string_view from, std::string_view to) {
    if (!putName(from) || !putName(to, longestPath)) {
        return Error::nameTooLong;
    }
    Registers registers{.eax = 0x5600, .edi = longestPath};
    interrupt21(registers);
    return errorOf(registers);
}

} // namespace dos
