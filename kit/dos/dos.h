// What a DOS program in C++ has: files, its command line, memory, and an end.
//
// A program gives `int dosMain()`; its result is the exit code. CMake makes NAME.EXE from it:
//     tavrel_dos_program(NAME SOURCES file.cpp... LIBRARIES library...)
//
// The standard library's containers, strings, views, spans, optional, unique_ptr and algorithms work;
// streams, exceptions, <format>, threads and locales do not exist. What would throw ends the program with a
// message (exit code 250), and so does memory that runs out, unless setOutOfMemoryHandler() says otherwise.
// There is no need to free anything before the end. Global objects are constructed; they are never destroyed.
//
// Limits: code, data and stack lie in conventional memory (about 630 kB under DOSBox); the heap lies there
// too unless the machine has more memory above 1 MB, by XMS or INT 15h. The stack has stackSize bytes. File
// names have eight and three characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// The program. Its result is the exit code, 0 to 255.
int dosMain();

namespace dos {

/// Bytes of stack. A recursive descent that takes 200 bytes a level may go 400 levels deep and leave a fifth;
/// ask stackLeft() and stop at some thousands.
constexpr std::size_t stackSize = 80 * 1024;

/// Exit codes of ends that the program did not choose. 252 and 253 are the loader's: not in real mode, and a
/// processor exception.
constexpr int exitStandardLibrary = 250;
constexpr int exitOutOfMemory = 251;
constexpr int exitStackOverflow = 254;
constexpr int exitTooLittleMemory = 255;

/// The command tail as the user typed it, without blanks at its ends.
std::string_view commandLine();

/// Ends the program at once.
[[noreturn]] void exit(int code);

/// Writes to the standard output, which a `>` in the command can redirect. False when not all of it could be
/// written. Line ends are the caller's: CR LF.
bool print(std::string_view text);

/// Writes to the standard error output: the console, even when the standard output goes to a file.
bool printToConsole(std::string_view text);

/// What DOS answers to a call that fails (its own numbers), and two answers of ours.
enum class Error : std::uint16_t {
    none = 0,
    fileNotFound = 2,
    pathNotFound = 3,
    tooManyFiles = 4,
    accessDenied = 5,
    invalidHandle = 6,
    nameTooLong = 0xFFFE,
    diskFull = 0xFFFF, ///< DOS took fewer bytes than it was given
};

/// An open file; closed when the object goes.
class File {
  public:
    File() = default;
    ~File() { close(); }
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Opens an existing file for reading, or for reading and writing.
    /// @return false when it cannot be; error() says why
    bool open(std::string_view name, bool forWriting = false);
    /// Makes an empty file for reading and writing; one of that name is emptied.
    bool create(std::string_view name);
    bool isOpen() const { return handle_ >= 0; }
    /// Closes the file; true when there was none to close.
    bool close();

    /// Reads up to so many bytes.
    /// @return how many were read: fewer than asked for at the end of the file and on an error, which error()
    /// tells apart
    std::size_t read(std::span<char> bytes);
    /// Writes all the bytes or says that it cannot.
    bool write(std::string_view bytes);
    /// Moves to an offset from the start, in bytes.
    bool seek(std::uint32_t offset);
    /// True for a device such as CON, which has no end.
    bool isDevice();
    /// The length in bytes, the position unchanged; 0 on an error.
    std::uint32_t size();

    /// Why the last operation failed; Error::none when it did not.
    Error error() const { return error_; }

  private:
    bool take(std::uint32_t flags, std::uint32_t result);
    bool move(unsigned origin, std::uint32_t offset, std::uint32_t& position);

    int handle_ = -1;
    Error error_ = Error::none;
};

/// Deletes a file. @return Error::none when it is gone now
Error remove(std::string_view name);
/// Renames a file within its drive; fails when the new name is taken.
Error rename(std::string_view from, std::string_view to);

/// Bytes of the heap, used or not.
std::size_t memorySize();
/// Bytes that are not handed out.
std::size_t memoryFree();
/// The largest piece that operator new can give.
std::size_t largestFree();
/// Bytes of stack that are left below the caller.
std::size_t stackLeft();

/// Called when memory has run out; it must end the program.
using OutOfMemoryHandler = void (*)();
void setOutOfMemoryHandler(OutOfMemoryHandler handler);

} // namespace dos
