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
    std::uint8_t withLimit = 9;  ///< W
};

/// The first error of a compilation and the names of the files in which it may lie.
struct ErrorState {
    Diagnostic first;
    std::vector<std::string> files; ///< as the host opened them, in the order of Position::file
    std::vector<Position>
        directives; ///< of files that the IDE does not show: what includes them; line 0 else

    [[nodiscard]] bool failed() const { return first.error != Error::none; }
    /// Keeps the error if it is the first one.
    void report(Error error, Position position, std::string_view detail);

  private:
    [[nodiscard]] std::string nameOf(std::size_t file) const;
    [[nodiscard]] Position shownPlace(Position position) const;
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
    /// Called when `token` is the word "program": makes it the semicolon that ends the heading, whatever
    /// stands between. A heading without one ends before the next line that begins with a declaration or
    /// "begin".
    void passHeading(Token& token);

    /// Characters of the string or real token that was read last.
    [[nodiscard]] std::string_view text() const { return {text_.data(), textLength_}; }
    [[nodiscard]] const Directives& directives() const { return directives_; }
    [[nodiscard]] std::uint32_t lineCount() const { return lines_; }

    static constexpr std::size_t maximumIncludeDepth = 8;
    static constexpr std::size_t maximumIdentifier = 127; ///< a whole line of the original editor
    static constexpr std::size_t maximumString = 255;

  private:
    /// A source file that is being read.
    struct Source {
        std::unique_ptr<SourceReader> reader;
        std::unique_ptr<char[]> buffer;
        const char* next = nullptr; ///< the next character, in the buffer
        const char* end = nullptr;  ///< behind the last character in the buffer
        std::ptrdiff_t lineStart =
            0; ///< where the line began, counted from the start of the buffer: often before it
        std::uint16_t line = 1; ///< stays at the highest number
        std::uint8_t file = 0;
        bool ended = true; ///< the reader has no more
    };
    static constexpr std::size_t bufferSize = 2048; // nine files may be open at once
    static constexpr int endOfFile = -1;
    static constexpr char controlZ = 0x1A; // ends a text file, whatever follows

    /// Steps over what lies in the buffer and is accepted: the short way through long runs of characters.
    template <typename Accepts> void passBuffered(Accepts accepts) {
        const char* next = source_.next;
        const char* const end = source_.end;
        while (next != end && accepts(*next))
            ++next;
        source_.next = next;
    }

    /// The next character, which stays.
    int peek() {
        if (source_.next == source_.end && !fill(1))
            return endOfFile;
        const int character = static_cast<unsigned char>(*source_.next);
        return character == controlZ ? endOfFile : character;
    }
    /// Takes the character that peek() gave, which is neither a line's end nor the file's.
    void skip() { ++source_.next; }
    int peekBehind(std::size_t ahead);
    /// The same outside of literals and comments, where bit 7 does not count: word processors of the time set
    /// it at the ends of words and lines.
    int code() { return withoutBit7(peek()); }
    int codeBehind(std::size_t ahead) { return withoutBit7(peekBehind(ahead)); }
    static constexpr int withoutBit7(int character) {
        return character == endOfFile ? character : character & 0x7F;
    }
    int take();
    bool fill(std::size_t wanted);
    void lineEnd(int character);
    [[nodiscard]] Position here() const;
    void fail(Error error, Position position, std::string_view detail = {});

    bool push(std::string_view name, Position position, std::string_view told, bool isShown);
    bool enter(std::string_view name, Position position, bool isShown);
    void skipByteOrderMark();
    bool popInclude();

    bool skipBlanks();
    void skipComment(bool brace);
    bool commentEnd(bool brace);
    void directiveList(bool brace);
    bool directive(int letter);
    void passDirective();
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
    Source source_;             ///< the innermost include file, or the main file
    std::vector<Source> outer_; ///< the files that wait for its end, the main file first
    Directives directives_;
    std::array<char, maximumString + 1> text_{};
    std::size_t textLength_ = 0;
    std::uint32_t lines_ = 0;
};

} // namespace tp3
