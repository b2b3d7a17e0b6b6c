#include "native_command.h"

#include "compiler.h"
#include "files/host_files.h"
#include "native_files.h"

#include <runtime_entries.h>

#include <cctype>
#include <cstdlib>
#include <new>
#include <optional>
#include <stdexcept>

namespace tp3 {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view help =
    "tp3: compiles a Turbo Pascal 3 program for MSX-DOS\n"
    "\n"
    "usage: tp3 FILE.PAS [-o FILE.COM] [--chn] [--start HEX] [--end HEX] [--errors FILE] [--runtime FILE]\n"
    "       tp3 NAME [/H] [/S<hex>] [/E<hex>] [/R<file>]      as TP3.EXE is called: NAME.PAS to NAME.CHN\n"
    "       tp3 --find ADDRESS FILE.PAS [--start HEX] [--end HEX]\n"
    "\n"
    "  -o FILE         where the program goes (FILE.COM, or FILE.CHN with --chn, beside the source)\n"
    "  --chn           the chain image alone, without the run-time library in front\n"
    "  --start HEX     start address, 2E9B to 7FFF (2E9B)\n"
    "  --end HEX       end address of the variables (D200)\n"
    "  --errors FILE   write the error as a record for the IDE\n"
    "  --runtime FILE  the run-time library (RUNTIME.COM beside tp3)\n"
    "  --find ADDRESS  print the source line that the code at a hexadecimal address comes from\n"
    "\n"
    "Exit code 0; 1 with FILE(line,col): Error N: text; 2 when called wrongly.\n";

enum ExitCode : int { done = 0, failed = 1, wrongUse = 2 };

struct Arguments {
    bool help = false;
    std::string source;
    std::string output;
    std::string errors;
    std::string runtime;
    bool chain = false;
    bool dosForm = false;
    std::optional<std::uint16_t> find;
    CompileOptions options;
};

/// A command line that cannot be followed; what() is the message for the user.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

[[noreturn]] void misuse(const std::string& text) {
    throw UsageError(text + " (try tp3 --help)");
}

std::uint16_t hexadecimal(const std::string& text) {
    char* end = nullptr;
    const unsigned long value = std::strtoul(text.c_str(), &end, 16);
    if (text.empty() || *end != '\0' || value > 0xFFFF ||
        std::isxdigit(static_cast<unsigned char>(text[0])) == 0) {
        misuse("'" + text + "' is not a hexadecimal address");
    }
    return static_cast<std::uint16_t>(value);
}

/// A switch of the DOS form; a path of this system begins with a slash too, but then names an existing file.
bool takeDosSwitch(Arguments& arguments, const std::string& argument) {
    std::error_code error;
    if (argument.size() < 2 || argument[0] != '/' || fs::exists(argument, error)) {
        return false;
    }
    const std::string rest = argument.substr(2);
    switch (std::toupper(static_cast<unsigned char>(argument[1]))) {
    case 'H':
        if (!rest.empty()) {
            return false;
        }
        arguments.chain = true;
        break;
    case 'S':
        arguments.options.start = hexadecimal(rest);
        break;
    case 'E':
        arguments.options.end = hexadecimal(rest);
        break;
    case 'R':
        arguments.errors = rest;
        break;
    default:
        return false;
    }
    arguments.dosForm = true;
    return true;
}

/// Where `value` gives the word behind the option. False when the argument is no option.
template <typename Value>
bool takeOption(Arguments& arguments, const std::string& argument, const Value& value) {
    if (argument == "--help") {
        arguments.help = true;
    } else if (argument == "-o") {
        arguments.output = value();
    } else if (argument == "--chn") {
        arguments.chain = true;
    } else if (argument == "--start") {
        arguments.options.start = hexadecimal(value());
    } else if (argument == "--end") {
        arguments.options.end = hexadecimal(value());
    } else if (argument == "--errors") {
        arguments.errors = value();
    } else if (argument == "--runtime") {
        arguments.runtime = value();
    } else if (argument == "--find") {
        arguments.find = hexadecimal(value());
    } else {
        return takeDosSwitch(arguments, argument);
    }
    return true;
}

Arguments parse(const std::vector<std::string>& words) {
    Arguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& argument = words[i];
        const auto value = [&]() -> const std::string& {
            if (++i >= words.size()) {
                misuse(argument + " needs a value");
            }
            return words[i];
        };
        if (takeOption(arguments, argument, value)) {
            continue;
        }
        if (argument.size() > 1 && argument[0] == '-') {
            misuse("unknown option " + argument);
        }
        if (!arguments.source.empty()) {
            misuse("more than one source file");
        }
        arguments.source = argument;
    }
    if (arguments.help) {
        return arguments;
    }
    if (arguments.source.empty()) {
        misuse("no source file");
    }
    if (arguments.options.start < defaultStart || arguments.options.end <= arguments.options.start) {
        misuse("the start address must be 2E9B or more, and the end address above it");
    }
    if (fs::path(arguments.source).extension().empty()) {
        arguments.source += ".PAS";
    }
    return arguments;
}

fs::path withExtension(const fs::path& source, const char* extension) {
    fs::path path = source;
    // Keep to the source's own case, so that GAME.PAS becomes GAME.COM and game.pas game.com.
    std::string ending = extension;
    const std::string own = source.extension().string();
    if (own.size() > 1 && std::islower(static_cast<unsigned char>(own[1])) != 0) {
        for (char& c : ending) {
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return path.replace_extension(ending);
}

/// 32-bit FNV-1a, as the build computes it over the library.
std::uint32_t checksum(const std::vector<std::uint8_t>& bytes) {
    std::uint32_t hash = 0x811C9DC5U;
    for (const std::uint8_t byte : bytes) {
        hash = (hash ^ byte) * 0x01000193U;
    }
    return hash;
}

/// The library, checked against the addresses that this compiler was built for.
std::vector<std::uint8_t> readRuntime(const Arguments& arguments) {
    fs::path path = arguments.runtime;
    if (path.empty()) {
        std::error_code error;
        path = fs::read_symlink("/proc/self/exe", error).parent_path() / "RUNTIME.COM";
    }
    const std::string bytes = files::readWholeFile(path);
    std::vector<std::uint8_t> library(bytes.begin(), bytes.end());
    if (library.size() != librarySize || checksum(library) != runtimeChecksum) {
        throw std::runtime_error(path.string() +
                                 " is not the run-time library that this compiler was built with");
    }
    return library;
}

/// Four hexadecimal digits.
std::string addressText(std::uint16_t address) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += digits[address >> shift & 0xF];
    }
    return text;
}

int reportError(const Arguments& arguments, const Diagnostic& diagnostic, Report& report) {
    const auto number = [](auto value) { return std::to_string(static_cast<unsigned>(value)); };
    report.errors += diagnostic.file + "(" + number(diagnostic.position.line) + "," +
                     number(diagnostic.position.column) + "): Error " + number(diagnostic.error) + ": " +
                     errorMessage(diagnostic) + "\n";
    if (!arguments.errors.empty()) {
        files::writeWholeFile(arguments.errors, errorRecord(diagnostic));
    }
    return failed;
}

int find(const Arguments& arguments, const CompileResult& result, Report& report) {
    const LineEntry* best = nullptr;
    for (const LineEntry& entry : result.lines) {
        if (entry.address <= *arguments.find) {
            best = &entry;
        }
    }
    if (best == nullptr || *arguments.find >= arguments.options.start + result.image.size()) {
        report.errors += "tp3: no code of this program lies at " + addressText(*arguments.find) + "\n";
        return failed;
    }
    report.output +=
        result.files[best->position.file] + "(" + std::to_string(unsigned{best->position.line}) + ")\n";
    return done;
}

/// Memory that runs out is an error of the program that is too large for it.
CompileResult compileWithinMemory(Host& host, const CompileOptions& options) {
    try {
        return compile(host, options);
    } catch (const std::bad_alloc&) {
        CompileResult result;
        result.diagnostic.error = Error::outOfMemory;
        result.diagnostic.file = options.mainFile;
        result.diagnostic.position.line = 1;
        result.diagnostic.position.column = 1;
        return result;
    }
}

Diagnostic unwritable(const std::string& source, const std::string& reason) {
    Diagnostic diagnostic;
    diagnostic.error = Error::outputFile;
    diagnostic.file = source;
    diagnostic.position.line = 1;
    diagnostic.position.column = 1;
    diagnostic.detail = reason;
    return diagnostic;
}

int perform(const Arguments& arguments, Report& report) {
    if (arguments.help) {
        report.output += help;
        return done;
    }
    const fs::path source = arguments.source;
    std::string name = source.filename().string();
    for (char& c : name) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    CompileOptions options = arguments.options;
    options.mainFile = name;
    options.wantsLines = arguments.find.has_value();
    FolderHost host(source.parent_path());
    const CompileResult result = compileWithinMemory(host, options);
    if (!result.ok) {
        return reportError(arguments, result.diagnostic, report);
    }
    if (arguments.find) {
        return find(arguments, result, report);
    }
    const bool chain = arguments.chain || arguments.dosForm;
    std::vector<std::uint8_t> program = chain ? std::vector<std::uint8_t>{} : readRuntime(arguments);
    program.insert(program.end(), result.image.begin(), result.image.end());
    const fs::path output = arguments.output.empty() ? withExtension(source, chain ? ".CHN" : ".COM")
                                                     : fs::path(arguments.output);
    const std::string sizes = sizeReport(result, options);
    try {
        for (std::size_t number = 0; number < result.overlayFiles.size(); ++number) {
            if (!result.overlayFiles[number].empty()) {
                const fs::path overlay = source.stem().string() + overlayExtension(number);
                files::writeWholeFile(output.parent_path() / overlay, result.overlayFiles[number]);
            }
        }
        files::writeWholeFile(output, program);
    } catch (const files::FileError& failure) {
        return reportError(arguments, unwritable(name, failure.what()), report);
    }
    report.output += sizes;
    return done;
}

} // namespace

int run(const std::vector<std::string>& words, Report& report) {
    try {
        return perform(parse(words), report);
    } catch (const UsageError& misuse) {
        report.errors += std::string("tp3: ") + misuse.what() + "\n";
        return wrongUse;
    } catch (const std::exception& failure) {
        report.errors += std::string("tp3: ") + failure.what() + "\n";
        return failed;
    }
}

} // namespace tp3
