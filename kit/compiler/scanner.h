#pragma once

#include "errors.h"
#include "host.h"
#include "names.h"
#include "token.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tp3 {

/// State of the compiler directives `{$...}` at the place that is being compiled.
struct Directives {
    bool absoluteCode = true;    ///< A
    bool bufferedConsole = true; ///< B
    bool controlC = true;        ///< C
    bool ioCheck = true;         ///< I
    bool rangeCheck = false;     ///< R
    bool varStringCheck = true;  ///< V
    bool userInterrupt = false;  ///< U
    bool arraySpeed = true;      ///< X
    std::uint8_t withLimit = 2;  ///< W
};

/// The first error of a compilation and the names of the files in which it may lie.
struct ErrorState {
    Diagnostic first;
    std::vector<std::string> files; ///< as the host opened them, in the order of Position::file

    [[nodiscard]] bool failed() const { return first.error != Error::none; }
    /// Keeps the error if it is the first one.
    void report(Error error, Position position, std::string_view detail);
};

/// Turns the main file and the files it includes into one stream of tokens. Knows comments, directives and
/// line ends; any byte may stand in the source. After the first error of whoever reports one, there are no
/// more tokens.
class Scanner {
  public:
    Scanner(Host& host, NameTable& names, ErrorState& errors, int pass);

    /// Opens the main file; false (with error 90) when it is not there.
    bool open(std::string_view mainFile);
    /// Reads the next token.
    void next(Token& token);
    /// Called when `token` is a caret in a place where a value begins: reads it as a control character such
    /// as ^G (with what follows directly, 'text' and #13), so that it becomes a string token.
    void controlCharacter(Token& token);

    /// Characters of the string or real token that was read last.
    [[nodiscard]] std::string_view text() const { return {text_.data(), textLength_}; }
    [[nodiscard]] const Directives& directives() const { return directives_; }
    [[nodiscard]] std::uint32_t lineCount() const { return lines_; }

    static constexpr std::size_t maximumIncludeDepth = 8;
    static constexpr std::size_t maximumIdentifier = 127; ///< a whole line of the original editor
    static constexpr std::size_t maximumString = 255;

  private:
    /// One file of the stack. The scanner works on the topmost.
    struct Source {
        std::unique_ptr<SourceReader> reader;
        std::unique_ptr<char[]> buffer;
        std::size_t next = 0;        ///< index of the next character
        std::size_t end = 0;         ///< number of characters in the buffer
        std::uint32_t before = 0;    ///< characters that lie before the buffer
        std::uint32_t lineStart = 0; ///< place of the line's first character in the file
        std::uint32_t line = 1;
        std::uint8_t file = 0;
        bool ended = false;
    };
    static constexpr std::size_t bufferSize = 2048; // nine files may be open at once
    static constexpr int endOfFile = -1;
    static constexpr char controlZ = 0x1A; // ends a text file, whatever follows

    /// Steps over what lies in the buffer and is accepted: the short way through long runs of characters.
    template <typename Accepts> void passBuffered(Accepts accepts) {
        Source& source = sources_.back();
        const char* const buffer = source.buffer.get();
        std::size_t next = source.next;
        while (next < source.end && accepts(buffer[next]))
            ++next;
        source.next = next;
    }

    int peek(std::size_t ahead = 0);
    int take();
    bool fill(std::size_t wanted);
    void lineEnd(int character);
    [[nodiscard]] Position here() const;
    void fail(Error error, Position position, std::string_view detail = {});

    bool push(std::string_view name, Position position, std::string_view shown);
    bool popInclude();

    bool skipBlanks();
    void skipComment(bool brace);
    bool commentEnd(bool brace);
    void directiveList(bool brace);
    bool directive(int letter);
    bool sign(bool& flag);
    void include(bool brace, Position position);

    void identifier(Token& token);
    void number(Token& token);
    void hexNumber(Token& token);
    void realNumber(Token& token, std::size_t digits);
    void stringToken(Token& token);
    bool quoted(Position start);
    bool numbered();
    bool control();
    void stringPieces(Token& token);
    void append(char character, Position start);
    void symbol(Token& token);

    Host& host_;
    NameTable& names_;
    ErrorState& errors_;
    int pass_;
    std::vector<Source> sources_;
    Directives directives_;
    std::array<char, maximumString + 1> text_{};
    std::size_t textLength_ = 0;
    std::uint32_t lines_ = 0;
    Position last_; ///< where the main file ended
};

} // namespace tp3
