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
// The characters of names, in upper case and without bit 7; 0 for all others.
constexpr std::array<char, 256> nameCharacters = [] {
    std::array<char, 256> table{};
    for (int c = 0; c < 256; ++c) {
        const int code = c & 0x7F;
        table[static_cast<std::size_t>(c)] =
            isLetter(code) || isDigit(code) ? static_cast<char>(upper(code)) : '\0';
    }
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

// LF, CR LF and CR all end a line; the LF of a pair may have bit 7.
void Scanner::lineEnd(int character) {
    if (character == '\r' && code() == '\n')
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
        const int character = code();
        if (character > ' ' && character != '{' && character != '(')
            return true;
        if (character == endOfFile) {
            if (!popInclude())
                return false;
        } else if (character <= ' ') {
            take();
        } else if (character == '{') {
            skipComment(true);
        } else if (codeBehind(1) == '*') {
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
    const int character = code();
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

void Scanner::passHeading(Token& token) {
    std::uint32_t line = lines_;
    while (skipBlanks() && code() != ';') {
        if (lines_ != line && isLetter(code())) {
            line = lines_;
            next(token);
            switch (token.kind) {
            case TokenKind::wordLabel:
            case TokenKind::wordConst:
            case TokenKind::wordType:
            case TokenKind::wordVar:
            case TokenKind::wordProcedure:
            case TokenKind::wordFunction:
            case TokenKind::wordOverlay:
            case TokenKind::wordBegin:
                return;
            default:
                continue;
            }
        }
        skip();
    }
    next(token);
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
    const int character = code();
    if (isLetter(character) || isDigit(character))
        return fail(Error::tableOverflow, token.position, "identifier of more than 127 characters");
    token.name = names_.find(text(), hash);
    token.kind = token.name->reservedWord == 0 ? TokenKind::identifier
                                               : static_cast<TokenKind>(token.name->reservedWord);
}

// integer = digit {digit}; a number is real when a point or an exponent follows, and when it is above 32767.
// 32768 alone is left to the parser, which knows whether a minus stands before it.
void Scanner::number(Token& token) {
    textLength_ = 0;
    std::int32_t value = 0;
    std::size_t digits = 0;
    for (int digit = code(); isDigit(digit); skip(), digit = code()) {
        if (value < 100000)
            value = value * 10 + digit - '0';
        if (digits < maximumString)
            text_[digits] = static_cast<char>(digit);
        ++digits;
    }
    const int after = code();
    const bool point = after == '.' && codeBehind(1) != '.' && codeBehind(1) != ')';
    const bool exponent =
        upper(after) == 'E' && (isDigit(codeBehind(1)) ||
                                ((codeBehind(1) == '+' || codeBehind(1) == '-') && isDigit(codeBehind(2))));
    if (point || exponent || value > 32768)
        return realNumber(token, digits);
    textLength_ = std::min(digits, maximumString);
    token.kind = TokenKind::integer;
    token.value = value;
}

// real = digits ['.' {digit}] ['E' [sign] digits]; a point that `..` or `.)` begins is not one of a number
void Scanner::realNumber(Token& token, std::size_t digits) {
    textLength_ = digits;
    const auto keep = [this](int character) {
        if (textLength_ < maximumString)
            text_[textLength_] = static_cast<char>(character);
        ++textLength_;
    };
    const auto keepDigits = [&] {
        for (; isDigit(code()); skip())
            keep(code());
    };
    if (code() == '.' && codeBehind(1) != '.' && codeBehind(1) != ')') {
        keep('.');
        skip();
        keepDigits();
    }
    if (upper(code()) == 'E') {
        const std::size_t digitAt = codeBehind(1) == '+' || codeBehind(1) == '-' ? 2 : 1;
        if (isDigit(codeBehind(digitAt))) {
            for (std::size_t i = 0; i < digitAt; ++i, skip())
                keep(upper(code()));
            keepDigits();
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
    for (int digit = hexDigit(code()); digit >= 0; digit = hexDigit(code())) {
        value = value * 16 + digit;
        any = true;
        take();
        if (value > 0xFFFF)
            return fail(Error::integerConstant, token.position);
    }
    if (!any || isLetter(code()))
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
    const bool hex = code() == '$';
    if (hex)
        take();
    int value = 0;
    bool any = false;
    while (hex ? hexDigit(code()) >= 0 : isDigit(code())) {
        value = hex ? value * 16 + hexDigit(code()) : value * 10 + code() - '0';
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
    const int character = upper(code());
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
        const int character = code();
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
        if (code() == second) {
            skip();
            token.kind = both;
        } else {
            token.kind = single;
        }
    };
    const int character = code();
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
