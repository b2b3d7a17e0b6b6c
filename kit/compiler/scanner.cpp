#include "scanner.h"

#include "dos_name.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tp3 {
namespace {

constexpr bool isDigit(int c) {
    return c >= '0' && c <= '9';
}
constexpr bool isLetter(int c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}
constexpr int upper(int c) {
    return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c;
}
// The characters of names, in upper case; 0 for all others.
constexpr std::array<char, 256> nameCharacters = [] {
    std::array<char, 256> table{};
    for (int c = 0; c < 256; ++c)
        table[static_cast<std::size_t>(c)] = isLetter(c) || isDigit(c) ? static_cast<char>(upper(c)) : '\0';
    return table;
}();
constexpr int hexDigit(int c) {
    if (isDigit(c))
        return c - '0';
    c = upper(c);
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

void ErrorState::report(Error error, Position position, std::string_view detail) {
    if (failed() || error == Error::none)
        return;
    first.error = error;
    first.position = position;
    first.detail = detail;
    if (position.file >= files.size())
        return;
    first.file = nameOf(position.file);
    const Position shown = shownPlace(position);
    if (shown.file != position.file) {
        first.shownFile = nameOf(shown.file);
        first.shownPosition = shown;
    }
}

std::string ErrorState::nameOf(std::size_t file) const {
    const std::string& path = files[file];
    const std::size_t folder = path.find_last_of("\\/:");
    return folder == std::string::npos ? path : path.substr(folder + 1);
}

// The way out of a file that includes itself ends somewhere in it.
Position ErrorState::shownPlace(Position position) const {
    for (std::size_t step = 0; step < files.size(); ++step) {
        if (position.file >= directives.size() || directives[position.file].line == 0)
            break;
        position = directives[position.file];
    }
    return position;
}

Scanner::Scanner(Host& host, NameTable& names, ErrorState& errors, int pass)
    : host_(host), names_(names), errors_(errors), pass_(pass) {}

void Scanner::fail(Error error, Position position, std::string_view detail) {
    errors_.report(error, position, detail);
}

Position Scanner::here() const {
    if (source_.reader == nullptr)
        return {};
    const std::ptrdiff_t column = source_.next - source_.buffer.get() - source_.lineStart + 1;
    Position position;
    position.line = source_.line;
    position.file = source_.file;
    position.column = static_cast<std::uint8_t>(column < 255 ? column : 255);
    return position;
}

// Makes at least `wanted` characters available in the buffer if the file has them.
bool Scanner::fill(std::size_t wanted) {
    char* const buffer = source_.buffer.get();
    while (static_cast<std::size_t>(source_.end - source_.next) < wanted) {
        if (source_.ended)
            return false;
        const std::ptrdiff_t passed = source_.next - buffer;
        const auto kept = static_cast<std::size_t>(source_.end - source_.next);
        std::memmove(buffer, source_.next, kept);
        source_.lineStart -= passed;
        const std::size_t count = source_.reader->read(buffer + kept, bufferSize - kept);
        source_.next = buffer;
        source_.end = buffer + kept;
        if (count == 0 || count > bufferSize - kept)
            source_.ended = true;
        else
            source_.end += count;
    }
    return true;
}

int Scanner::peekBehind(std::size_t ahead) {
    if (static_cast<std::size_t>(source_.end - source_.next) <= ahead && !fill(ahead + 1))
        return endOfFile;
    const int character = static_cast<unsigned char>(source_.next[ahead]);
    return character == controlZ ? endOfFile : character;
}

int Scanner::take() {
    const int character = peek();
    if (character == endOfFile)
        return endOfFile;
    skip();
    if (character == '\n' || character == '\r')
        lineEnd(character);
    return character;
}

// LF, CR LF and CR all end a line.
void Scanner::lineEnd(int character) {
    if (character == '\r' && peek() == '\n')
        skip();
    // A position has two bytes for the line; a wrong one would lead the user astray.
    if (source_.line == UINT16_MAX) {
        if (peek() != endOfFile)
            fail(Error::tableOverflow, here(), "more than 65535 lines in one file");
    } else {
        ++source_.line;
        source_.lineStart = source_.next - source_.buffer.get();
    }
    ++lines_;
    constexpr std::uint32_t linesBetweenReports = 128;
    if (lines_ % linesBetweenReports == 0)
        host_.progress(pass_, lines_);
}

bool Scanner::open(std::string_view mainFile) {
    return push(mainFile, Position{}, mainFile, true);
}

// `told` is what the error says when there is no such file; `isShown`, whether the IDE's tree has this file.
bool Scanner::push(std::string_view name, Position position, std::string_view told, bool isShown) {
    const bool isDevice = isDosDevice(name);
    std::unique_ptr<SourceReader> reader = isDevice ? nullptr : host_.openSource(name);
    if (reader == nullptr) {
        if (source_.reader == nullptr)
            errors_.files.emplace_back(name);
        fail(Error::fileNotFound, position,
             isDevice ? std::string(name) + " (a device of DOS)" : std::string(told));
        return false;
    }
    if (!enter(name, position, isShown))
        return false;
    source_.reader = std::move(reader);
    skipByteOrderMark();
    return true;
}

// Makes the file the innermost one.
bool Scanner::enter(std::string_view name, Position position, bool isShown) {
    std::size_t file = 0;
    while (file < errors_.files.size() && errors_.files[file] != name)
        ++file;
    if (file > 255) {
        fail(Error::tableOverflow, position, name);
        return false;
    }
    if (file == errors_.files.size()) {
        errors_.files.emplace_back(name);
        errors_.directives.emplace_back();
    }
    errors_.directives[file] = isShown ? Position{} : position;
    if (source_.reader != nullptr)
        outer_.push_back(std::move(source_));
    source_ = {};
    source_.buffer.reset(new char[bufferSize]);
    source_.next = source_.end = source_.buffer.get();
    source_.file = static_cast<std::uint8_t>(file);
    source_.ended = false;
    return true;
}

// Editors of today mark UTF-8 so at the begin of a file. The first column is the one after it.
void Scanner::skipByteOrderMark() {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (fill(mark.size()) && std::string_view(source_.next, mark.size()) == mark) {
        source_.next += mark.size();
        source_.lineStart = static_cast<std::ptrdiff_t>(mark.size());
    }
}

// At the end of an included file: goes on after its directive. False at the end of the main file, which stays
// so that errors there still have a place.
bool Scanner::popInclude() {
    if (outer_.empty())
        return false;
    source_ = std::move(outer_.back());
    outer_.pop_back();
    return true;
}

// Skips what stands between tokens. False at the end of the source.
bool Scanner::skipBlanks() {
    while (!errors_.failed()) {
        passBuffered([](char c) { return c == ' ' || c == '\t'; });
        const int character = peek();
        if (character > ' ' && character != '{' && character != '(')
            return true;
        if (character == endOfFile) {
            if (!popInclude())
                return false;
        } else if (character <= ' ') {
            take();
        } else if (character == '{') {
            skipComment(true);
        } else if (peekBehind(1) == '*') {
            skipComment(false);
        } else {
            return true;
        }
    }
    return false;
}

void Scanner::next(Token& token) {
    if (!skipBlanks()) {
        token.kind = TokenKind::endOfSource;
        token.position = here();
        return;
    }
    token.position = here();
    const int character = peek();
    if (isLetter(character))
        identifier(token);
    else if (isDigit(character))
        number(token);
    else if (character == '$')
        hexNumber(token);
    else if (character == '\'' || character == '#')
        stringToken(token);
    else
        symbol(token);
    if (errors_.failed())
        token.kind = TokenKind::endOfSource;
}

void Scanner::identifier(Token& token) {
    textLength_ = 0;
    std::uint32_t hash = NameTable::hashStart;
    char* out = text_.data(); // what half of all characters come by stays in registers
    char* const full = out + maximumIdentifier;
    do {
        const char* next = source_.next;
        const char* const end = next + std::min(source_.end - next, full - out);
        for (; next != end; ++next) {
            const char letter = nameCharacters[static_cast<unsigned char>(*next)];
            if (letter == '\0')
                break;
            *out++ = letter;
            hash = NameTable::hashStep(hash, letter);
        }
        source_.next = next;
    } while (source_.next == source_.end && out != full && fill(1));
    const auto length = static_cast<std::size_t>(out - text_.data());
    textLength_ = length;
    const int character = peek();
    if (isLetter(character) || isDigit(character))
        return fail(Error::tableOverflow, token.position, "identifier of more than 127 characters");
    if (character >= 0x80)
        return fail(Error::identifierCharacter, here());
    token.name = names_.find(text(), hash);
    token.kind = token.name->reservedWord == 0 ? TokenKind::identifier
                                               : static_cast<TokenKind>(token.name->reservedWord);
}

// integer = digit {digit}; a number is real when a point and a digit, or an exponent, follow.
void Scanner::number(Token& token) {
    textLength_ = 0;
    std::int32_t value = 0;
    std::size_t digits = 0;
    for (int digit = peek(); isDigit(digit); skip(), digit = peek()) {
        if (value < 100000)
            value = value * 10 + digit - '0';
        if (digits < maximumString)
            text_[digits] = static_cast<char>(digit);
        ++digits;
    }
    const int after = peek();
    const bool point = after == '.' && peekBehind(1) != '.' && peekBehind(1) != ')';
    const bool exponent =
        upper(after) == 'E' && (isDigit(peekBehind(1)) ||
                                ((peekBehind(1) == '+' || peekBehind(1) == '-') && isDigit(peekBehind(2))));
    if (point || exponent)
        return realNumber(token, digits);
    if (value > 32768)
        return fail(Error::integerConstant, token.position);
    token.kind = TokenKind::integer;
    token.value = value;
}

// real = digits '.' digits ['E' [sign] digits] | digits 'E' [sign] digits
void Scanner::realNumber(Token& token, std::size_t digits) {
    textLength_ = digits;
    const auto keep = [this](int character) {
        if (textLength_ < maximumString)
            text_[textLength_] = static_cast<char>(character);
        ++textLength_;
    };
    if (peek() == '.') {
        if (!isDigit(peekBehind(1)))
            return fail(Error::realConstant, token.position);
        keep(take());
        while (isDigit(peek()))
            keep(take());
    }
    if (upper(peek()) == 'E') {
        const std::size_t digitAt = peekBehind(1) == '+' || peekBehind(1) == '-' ? 2 : 1;
        if (isDigit(peekBehind(digitAt))) {
            keep(upper(take()));
            if (digitAt == 2)
                keep(take());
            while (isDigit(peek()))
                keep(take());
        }
    }
    if (textLength_ > maximumString) {
        textLength_ = 0;
        return fail(Error::realConstant, token.position);
    }
    token.kind = TokenKind::real;
}

// hexNumber = '$' hexDigit {hexDigit}
void Scanner::hexNumber(Token& token) {
    take();
    std::int32_t value = 0;
    bool any = false;
    for (int digit = hexDigit(peek()); digit >= 0; digit = hexDigit(peek())) {
        value = value * 16 + digit;
        any = true;
        take();
        if (value > 0xFFFF)
            return fail(Error::integerConstant, token.position);
    }
    if (!any || isLetter(peek()))
        return fail(Error::integerConstant, token.position);
    token.kind = TokenKind::integer;
    token.value = value > 32767 ? value - 65536 : value;
}

void Scanner::append(char character, Position start) {
    if (textLength_ == maximumString)
        return fail(Error::stringLength, start);
    text_[textLength_++] = character;
}

// Between quotes, '' for a quote, on one line.
bool Scanner::quoted(Position start) {
    take();
    while (!errors_.failed()) {
        const int character = peek();
        if (character == endOfFile || character == '\n' || character == '\r') {
            fail(Error::stringExceedsLine, start);
            return false;
        }
        take();
        if (character == '\'') {
            if (peek() != '\'')
                return true;
            take();
        }
        append(static_cast<char>(character), start);
    }
    return false;
}

// '#' (digits | '$' hexDigits)
bool Scanner::numbered() {
    const Position start = here();
    take();
    const bool hex = peek() == '$';
    if (hex)
        take();
    int value = 0;
    bool any = false;
    while (hex ? hexDigit(peek()) >= 0 : isDigit(peek())) {
        value = hex ? value * 16 + hexDigit(peek()) : value * 10 + peek() - '0';
        any = true;
        take();
        if (value > 255) {
            fail(Error::constantOutOfRange, start);
            return false;
        }
    }
    if (!any) {
        fail(Error::integerConstant, start);
        return false;
    }
    append(static_cast<char>(value), start);
    return true;
}

// What follows the caret: @ A..Z [ \ ] ^ _ stand for 0..31, ? for 127.
bool Scanner::control() {
    const Position start = here();
    const int character = upper(peek());
    if ((character < '@' || character > '_') && character != '?') {
        fail(Error::unknownIdentifier, start);
        return false;
    }
    take();
    append(static_cast<char>(character ^ 0x40), start);
    return true;
}

// Literals that touch each other are one: 'ab'^G#13'c'
void Scanner::stringPieces(Token& token) {
    while (!errors_.failed()) {
        const int character = peek();
        if (character == '\'') {
            if (!quoted(token.position))
                return;
        } else if (character == '#') {
            if (!numbered())
                return;
        } else if (character == '^') {
            take();
            if (!control())
                return;
        } else {
            break;
        }
    }
    token.kind = TokenKind::string;
}

void Scanner::stringToken(Token& token) {
    textLength_ = 0;
    stringPieces(token);
}

void Scanner::controlCharacter(Token& token) {
    textLength_ = 0;
    if (control())
        stringPieces(token);
    if (errors_.failed())
        token.kind = TokenKind::endOfSource;
}

void Scanner::symbol(Token& token) {
    const auto two = [&](int second, TokenKind both, TokenKind single) {
        if (peek() == second) {
            skip();
            token.kind = both;
        } else {
            token.kind = single;
        }
    };
    const int character = peek();
    skip();
    switch (character) {
    case '+':
        token.kind = TokenKind::plus;
        break;
    case '-':
        token.kind = TokenKind::minus;
        break;
    case '*':
        token.kind = TokenKind::star;
        break;
    case '/':
        token.kind = TokenKind::slash;
        break;
    case '=':
        token.kind = TokenKind::equal;
        break;
    case ')':
        token.kind = TokenKind::rightParenthesis;
        break;
    case '[':
        token.kind = TokenKind::leftBracket;
        break;
    case ']':
        token.kind = TokenKind::rightBracket;
        break;
    case ',':
        token.kind = TokenKind::comma;
        break;
    case ';':
        token.kind = TokenKind::semicolon;
        break;
    case '^':
        token.kind = TokenKind::caret;
        break;
    case '>':
        two('=', TokenKind::greaterEqual, TokenKind::greater);
        break;
    case ':':
        two('=', TokenKind::assign, TokenKind::colon);
        break;
    case '(':
        two('.', TokenKind::leftBracket, TokenKind::leftParenthesis);
        break;
    case '<':
        two('=', TokenKind::lessEqual, TokenKind::less);
        if (token.kind == TokenKind::less)
            two('>', TokenKind::notEqual, TokenKind::less);
        break;
    case '.':
        two('.', TokenKind::range, TokenKind::period);
        if (token.kind == TokenKind::period)
            two(')', TokenKind::rightBracket, TokenKind::period);
        break;
    default:
        fail(Error::unknownIdentifier, token.position);
        break;
    }
}

} // namespace tp3
