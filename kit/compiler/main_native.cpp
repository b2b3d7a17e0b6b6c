#include "compiler.h"
#include "native_files.h"

#include <runtime_entries.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr const char* help =
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

struct Arguments {
    std::string source;
    std::string output;
    std::string errors;
    std::string runtime;
    bool chain = false;
    bool dosForm = false;
    std::optional<std::uint16_t> find;
    tp3::CompileOptions options;
};

[[noreturn]] void misuse(const std::string& text) {
    std::fprintf(stderr, "tp3: %s (try tp3 --help)\n", text.c_str());
    std::exit(2);
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

Arguments parse(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const auto value = [&]() -> std::string {
            if (++i >= argc) {
                misuse(argument + " needs a value");
            }
            return argv[i];
        };
        if (argument == "--help") {
            std::fputs(help, stdout);
            std::exit(0);
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
        } else if (takeDosSwitch(arguments, argument)) {
            continue;
        } else if (argument.size() > 1 && argument[0] == '-') {
            misuse("unknown option " + argument);
        } else if (!arguments.source.empty()) {
            misuse("more than one source file");
        } else {
            arguments.source = argument;
        }
    }
    if (arguments.source.empty()) {
        misuse("no source file");
    }
    if (arguments.options.start < tp3::defaultStart || arguments.options.end <= arguments.options.start) {
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
    std::vector<std::uint8_t> library = tp3::readFile(path);
    if (library.size() != tp3::librarySize || checksum(library) != tp3::runtimeChecksum) {
        throw std::runtime_error(path.string() +
                                 " is not the run-time library that this compiler was built with");
    }
    return library;
}

int reportError(const Arguments& arguments, const tp3::Diagnostic& diagnostic) {
    std::fprintf(stderr, "%s(%u,%u): Error %u: %s\n", diagnostic.file.c_str(),
                 unsigned{diagnostic.position.line}, unsigned{diagnostic.position.column},
                 static_cast<unsigned>(diagnostic.error), tp3::errorMessage(diagnostic).c_str());
    if (!arguments.errors.empty()) {
        const std::string record = tp3::errorRecord(diagnostic);
        tp3::writeFileSafely(arguments.errors, {record.begin(), record.end()});
    }
    return 1;
}

int find(const Arguments& arguments, const tp3::CompileResult& result) {
    const tp3::LineEntry* best = nullptr;
    for (const tp3::LineEntry& entry : result.lines) {
        if (entry.address <= *arguments.find) {
            best = &entry;
        }
    }
    if (best == nullptr || *arguments.find >= result.codeEnd) {
        std::fprintf(stderr, "tp3: no code of this program lies at %04X\n", unsigned{*arguments.find});
        return 1;
    }
    std::printf("%s(%u)\n", result.files[best->position.file].c_str(), unsigned{best->position.line});
    return 0;
}

/// Memory that runs out is an error of the program that is too large for it.
tp3::CompileResult compileWithinMemory(tp3::Host& host, const tp3::CompileOptions& options) {
    try {
        return tp3::compile(host, options);
    } catch (const std::bad_alloc&) {
        tp3::CompileResult failed;
        failed.diagnostic.error = tp3::Error::outOfMemory;
        failed.diagnostic.file = options.mainFile;
        failed.diagnostic.position.line = 1;
        failed.diagnostic.position.column = 1;
        return failed;
    }
}

int run(const Arguments& arguments) {
    const fs::path source = arguments.source;
    std::string name = source.filename().string();
    for (char& c : name) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    tp3::CompileOptions options = arguments.options;
    options.mainFile = name;
    options.wantsLines = arguments.find.has_value();
    tp3::FolderHost host(source.parent_path());
    const tp3::CompileResult result = compileWithinMemory(host, options);
    if (!result.ok) {
        return reportError(arguments, result.diagnostic);
    }
    if (arguments.find) {
        return find(arguments, result);
    }
    const bool chain = arguments.chain || arguments.dosForm;
    std::vector<std::uint8_t> program = chain ? std::vector<std::uint8_t>{} : readRuntime(arguments);
    program.insert(program.end(), result.image.begin(), result.image.end());
    const fs::path output = arguments.output.empty() ? withExtension(source, chain ? ".CHN" : ".COM")
                                                     : fs::path(arguments.output);
    tp3::writeFileSafely(output, program);
    std::fputs(tp3::sizeReport(result, options).c_str(), stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(parse(argc, argv));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tp3: %s\n", failure.what());
        return 1;
    }
}
