#pragma once

#include "errors.h"
#include "host.h"
#include "image.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tp3 {

constexpr std::uint16_t defaultStart = 0x2E9B; ///< first address behind the library
constexpr std::uint16_t defaultEnd = 0xD200;
constexpr std::uint16_t libraryStart = 0x0100;
constexpr std::size_t librarySize = defaultStart - libraryStart;

struct CompileOptions {
    std::string_view mainFile; ///< as Host::openSource takes it, such as GAME.PAS
    std::uint16_t start = defaultStart;
    std::uint16_t end = defaultEnd;
    bool wantsLines =
        false; ///< fill CompileResult::lines, which a compilation in little memory can do without
};

struct CompileResult {
    bool ok = false;
    Diagnostic diagnostic;           ///< when not ok
    std::vector<std::uint8_t> image; ///< the chain image
    /// The files NAME.000, NAME.001, ... when the program is too large for memory without them; an empty one
    /// is not to be written.
    std::vector<std::vector<std::uint8_t>> overlayFiles;
    std::vector<LineEntry> lines;   ///< address to source line, when they were wanted
    std::vector<std::string> files; ///< by Position::file
    std::uint32_t lineCount = 0;
    std::uint16_t codeEnd = 0;    ///< first address after the image and the memory for overlays
    std::uint16_t dataBottom = 0; ///< lowest address of variables
};

/// ".000" and so on: what an overlay file's name ends with.
std::string overlayExtension(std::size_t number);

/// Compiles one program: a first pass over the source finds errors and who calls whom, a second makes the
/// code.
CompileResult compile(Host& host, const CompileOptions& options);

/// The three lines about sizes that end a successful run, with LF ends; none holds a comma, the first begins
/// with "Code".
std::string sizeReport(const CompileResult& result, const CompileOptions& options);

/// The error as one record of the error file: name, line, column, number and text, text quoted, CR LF at its
/// end. For an error in a file that the IDE does not show, the place is that of the directive that includes
/// it, since the IDE marks that line in whatever file it shows; the text says where the error is.
std::string errorRecord(const Diagnostic& diagnostic);

/// The text of an error with what it is about, without quotes.
std::string errorMessage(const Diagnostic& diagnostic);

} // namespace tp3
