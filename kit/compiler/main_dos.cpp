// TP3.EXE NAME [/H] /S<hex> /E<hex> /R<file>: compiles NAME.PAS in the current folder to NAME.CHN. On an
// error it writes one record to the error file; on success it prints three lines of sizes and writes no error
// file. Meanwhile the console tells how far it is.
#include "compiler.h"
#include "dos/dos.h"
#include "dos_name.h"

#include <array>
#include <optional>

namespace {

constexpr int exitCompileError = 1;
constexpr int exitMisuse = 2;
constexpr std::size_t longestCommand = 120; // characters; DOS keeps 126 at most
constexpr std::string_view temporaryName = "TP3OUT.$$$";

struct Arguments {
    std::string name;
    std::string errors;
    bool chain = false; ///< nobody makes a .COM of the image
    tp3::CompileOptions options;
};

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::optional<std::uint16_t> hexadecimal(std::string_view text) {
    std::uint32_t value = 0;
    for (const char c : text) {
        const char digit = upper(c);
        if (digit >= '0' && digit <= '9') {
            value = value * 16 + static_cast<std::uint32_t>(digit - '0');
        } else if (digit >= 'A' && digit <= 'F') {
            value = value * 16 + static_cast<std::uint32_t>(digit - 'A' + 10);
        } else {
            return {};
        }
        if (value > 0xFFFF) {
            return {};
        }
    }
    return text.empty() ? std::optional<std::uint16_t>{} : static_cast<std::uint16_t>(value);
}

bool takeSwitch(Arguments& arguments, std::string_view word) {
    const std::string_view rest = word.substr(2);
    switch (upper(word[1])) {
    case 'H':
        arguments.chain = rest.empty();
        return arguments.chain;
    case 'S':
        if (const auto value = hexadecimal(rest)) {
            arguments.options.start = *value;
            return true;
        }
        return false;
    case 'E':
        if (const auto value = hexadecimal(rest)) {
            arguments.options.end = *value;
            return true;
        }
        return false;
    case 'R':
        arguments.errors = rest;
        return !rest.empty();
    default:
        return false;
    }
}

constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// One word that begins with a slash: a switch, or several without blanks between them.
bool takeSwitches(Arguments& arguments, std::string_view word) {
    bool understood = true;
    while (!word.empty()) {
        const std::string_view one = word.substr(0, word.find('/', 1));
        understood = one.size() > 1 && takeSwitch(arguments, one) && understood;
        word.remove_prefix(one.size());
    }
    return understood;
}

/// All of the line is read even when a part cannot be followed, since the error file is named at its end. A
/// slash within a word is part of a name, which the error then tells whole; so is a second word.
bool parse(std::string_view tail, Arguments& arguments) {
    bool understood = true;
    std::size_t at = 0;
    while (at < tail.size()) {
        const std::size_t start = at;
        while (at < tail.size() && !isBlank(tail[at])) {
            ++at;
        }
        const std::string_view word = tail.substr(start, at - start);
        if (word.empty()) {
            ++at;
        } else if (word[0] == '/') {
            understood = takeSwitches(arguments, word) && understood;
        } else {
            if (!arguments.name.empty()) {
                arguments.name += ' ';
            }
            for (const char c : word) {
                arguments.name += upper(c);
            }
        }
    }
    return understood && !arguments.name.empty() && arguments.options.start >= tp3::defaultStart &&
           arguments.options.end > arguments.options.start;
}

class DosReader : public tp3::SourceReader {
  public:
    explicit DosReader(dos::File file) : file_(static_cast<dos::File&&>(file)) {}
    std::size_t read(char* buffer, std::size_t capacity) override { return file_.read({buffer, capacity}); }

  private:
    dos::File file_;
};

/// How far the compiler is, on one line of the console that is written over again and again.
class ProgressLine {
  public:
    void show(std::string_view activity, std::uint32_t lines) {
        const std::string text = std::string(activity) + ' ' + std::to_string(lines);
        dos::printToConsole('\r' + text);
        shown_ = text.size() > shown_ ? text.size() : shown_;
    }
    /// Leaves the line empty for what comes next.
    void clear() {
        if (shown_ != 0) {
            dos::printToConsole('\r' + std::string(shown_, ' ') + '\r');
        }
    }

  private:
    std::size_t shown_ = 0;
};

class DosHost : public tp3::Host {
  public:
    ~DosHost() override { progress_.clear(); }
    std::unique_ptr<tp3::SourceReader> openSource(std::string_view name) override {
        dos::File file;
        if (!file.open(name) || file.isDevice()) { // a driver's own name, beside those that DOS has always
            return nullptr;
        }
        return std::make_unique<DosReader>(static_cast<dos::File&&>(file));
    }
    void progress(int pass, std::uint32_t lines) override {
        progress_.show(pass == 1 ? "Checking line" : "Compiling line", lines);
    }
    std::size_t stackLeft() override { return dos::stackLeft(); }

  private:
    ProgressLine progress_;
};

Arguments arguments; // global, as the out-of-memory handler needs it

/// Writes one record to the error file, and the error to the console for who runs the compiler by hand.
void writeError(const tp3::Diagnostic& diagnostic) {
    const std::string record = tp3::errorRecord(diagnostic);
    dos::print(record);
    if (arguments.errors.empty()) {
        return;
    }
    dos::File file;
    if (!file.create(arguments.errors) || !file.write(record) || !file.close()) {
        dos::print("Cannot write the error file\r\n");
    }
}

/// Error 98, written without asking for memory that is not there: the record is put together from fixed
/// parts.
void outOfMemory() {
    dos::File file;
    constexpr std::string_view text = ",1,1,98,\"Out of memory\"\r\n";
    if (!arguments.errors.empty() && file.create(arguments.errors)) {
        file.write("\"");
        file.write(arguments.name);
        file.write(".PAS\"");
        file.write(text);
        file.close();
    }
    dos::print("Out of memory\r\n");
    dos::exit(exitCompileError);
}

/// Makes a file of the bytes and so many zeros. DOS takes bytes that the disk has no room for and loses them
/// at the end, so the size is checked.
bool writeFile(std::string_view name, std::string_view bytes, std::size_t zeros = 0) {
    static constexpr std::array<char, 512> nothing{}; // memory may be scarce by now
    dos::File file;
    const std::size_t size = bytes.size() + zeros;
    bool written = file.create(name) && file.write(bytes);
    for (std::size_t count = 0; written && zeros != 0; zeros -= count) {
        count = zeros < nothing.size() ? zeros : nothing.size();
        written = file.write({nothing.data(), count});
    }
    written = file.close() && written;
    return written && file.open(name) && file.size() == size;
}

/// Gives the image its name only when all of it is written. The program that the build makes of it, with the
/// library before it, needs room too: a copy that finds none leaves a cut program and says nothing.
bool writeImage(const std::string& name, const std::vector<std::uint8_t>& image, bool chain) {
    const std::string_view bytes(reinterpret_cast<const char*>(image.data()), image.size());
    const bool hasRoom = chain || writeFile(temporaryName, bytes, tp3::librarySize + bytes.size());
    if (!hasRoom || !writeFile(temporaryName, bytes)) {
        dos::remove(temporaryName);
        return false;
    }
    dos::remove(name);
    if (dos::rename(temporaryName, name) != dos::Error::none) {
        dos::remove(temporaryName);
        return false;
    }
    return true;
}

void cannotWrite(tp3::Error error, const std::string& source, const std::string& file) {
    tp3::Diagnostic failed;
    failed.error = error;
    failed.file = source;
    failed.position.line = 1;
    failed.position.column = 1;
    failed.detail = file + " (the disk is full, or a file or folder of that name is protected)";
    writeError(failed);
}

void printReport(const std::string& report) {
    std::string text;
    for (const char c : report) {
        if (c == '\n') {
            text += '\r';
        }
        text += c;
    }
    dos::print(text);
}

} // namespace

int dosMain() {
    dos::setOutOfMemoryHandler(outOfMemory);
    const bool understood = parse(dos::commandLine(), arguments);
    const std::string source = arguments.name + (arguments.name.find('.') == std::string::npos ? ".PAS" : "");
    if (!arguments.name.empty() && !tp3::isDosName(source)) {
        // DOS cuts a long command, and with it the name of the error file that somebody waits for.
        if (arguments.errors.empty() && dos::commandLine().size() >= longestCommand) {
            arguments.errors = "errors.txt";
        }
        writeError({tp3::Error::fileNotFound, {1, 0, 1}, source, tp3::notADosName(source)});
        return exitCompileError;
    }
    if (!understood) {
        dos::print("Usage: TP3 NAME [/H] [/S<start>] [/E<end>] [/R<error file>]\r\n");
        // Whoever called wrongly waits for the error file too.
        tp3::Diagnostic wrong;
        wrong.error = tp3::Error::fileNotFound;
        wrong.file = arguments.name;
        wrong.detail = "the compiler was called wrongly";
        writeError(wrong);
        return exitMisuse;
    }
    arguments.options.mainFile = source;
    const tp3::CompileResult result = [] {
        DosHost host;
        return tp3::compile(host, arguments.options);
    }();
    if (!result.ok) {
        writeError(result.diagnostic);
        return exitCompileError;
    }
    const std::string stem = source.substr(0, source.find('.'));
    for (std::size_t number = 0; number < result.overlayFiles.size(); ++number) {
        const std::string overlay = stem + tp3::overlayExtension(number);
        if (!result.overlayFiles[number].empty() && !writeImage(overlay, result.overlayFiles[number], true)) {
            cannotWrite(tp3::Error::overlayFile, source, overlay);
            return exitCompileError;
        }
    }
    const std::string output = stem + ".CHN";
    if (!writeImage(output, result.image, arguments.chain)) {
        cannotWrite(tp3::Error::outputFile, source, output);
        return exitCompileError;
    }
    printReport(tp3::sizeReport(result, arguments.options));
    return 0;
}
