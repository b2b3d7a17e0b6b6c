#include "dos_name.h"
#include "scanner.h"

namespace tp3 {
namespace {

constexpr char upper(int c) {
    return static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

} // namespace

// A comment ends with the mark of its own kind only, so that one kind may enclose the other.
bool Scanner::commentEnd(bool brace) {
    if (brace) {
        if (peek() != '}')
            return false;
        take();
        return true;
    }
    if (peek() != '*' || peekBehind(1) != ')')
        return false;
    take();
    take();
    return true;
}

// comment = '{' any '}' | '(*' any '*)'; one that begins with '$' holds directives
void Scanner::skipComment(bool brace) {
    const Position start = here();
    take();
    if (!brace)
        take();
    if (peek() == '$') {
        take();
        directiveList(brace);
        return;
    }
    const auto plain = [](char c) { return c != '}' && c != '*' && c != '\r' && c != '\n' && c != controlZ; };
    for (passBuffered(plain); !commentEnd(brace); passBuffered(plain)) {
        if (take() == endOfFile)
            return fail(Error::unexpectedEnd, start);
    }
}

// directives = directive {',' directive}; text behind the last one is commentary
void Scanner::directiveList(bool brace) {
    const Position start = here();
    while (!errors_.failed()) {
        const Position position = here();
        if (commentEnd(brace))
            return;
        const int letter = upper(peek());
        if (letter == 'I' && peekBehind(1) != '+' && peekBehind(1) != '-') {
            take();
            return include(brace, position);
        }
        if (peek() == endOfFile)
            return fail(Error::unexpectedEnd, start);
        take();
        if (!directive(letter))
            return fail(Error::directive, position);
        if (peek() != ',')
            break;
        take();
    }
    while (!errors_.failed() && !commentEnd(brace)) {
        if (take() == endOfFile)
            return fail(Error::unexpectedEnd, start);
    }
}

// The rest of a directive that is unknown, such as {$F4} or {$-V}: other compilers' directives change
// nothing.
void Scanner::passDirective() {
    const auto belongs = [](int c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '+' ||
               c == '-';
    };
    while (belongs(peek()))
        skip();
}

bool Scanner::sign(bool& flag) {
    const int character = peek();
    if (character != '+' && character != '-')
        return false;
    flag = character == '+';
    take();
    return true;
}

bool Scanner::directive(int letter) {
    bool ignored = false;
    switch (letter) {
    case 'A':
        return sign(directives_.absoluteCode);
    case 'B':
        return sign(directives_.bufferedConsole);
    case 'C':
        return sign(directives_.controlC);
    case 'I':
        return sign(directives_.ioCheck);
    case 'K':
        return sign(ignored); // checks of the 16-bit machines' stack; programs made for both carry it
    case 'R':
        return sign(directives_.rangeCheck);
    case 'U':
        return sign(directives_.userInterrupt);
    case 'V':
        return sign(directives_.varStringCheck);
    case 'X':
        return sign(directives_.arraySpeed);
    case 'W':
        if (peek() < '0' || peek() > '9')
            return false;
        directives_.withLimit = static_cast<std::uint8_t>(take() - '0');
        return true;
    default:
        passDirective();
        return true;
    }
}

// include = 'I' blank name; what follows the name counts only in the message that there is no such file,
// since it may be the rest of a name with a blank in it
void Scanner::include(bool brace, Position position) {
    std::string name;
    std::string whole;
    constexpr std::size_t longestPath = 127;
    while (peek() == ' ' || peek() == '\t')
        take();
    bool inName = true;
    bool ended = false; // by a semicolon, which some put after the name
    while (!commentEnd(brace)) {
        const int character = take();
        if (character == endOfFile)
            return fail(Error::unexpectedEnd, position);
        ended = ended || character == ';';
        if (ended)
            continue;
        if (character <= ' ')
            inName = false;
        if (inName && name.size() < longestPath)
            name += upper(character);
        if (whole.size() < longestPath)
            whole += upper(character);
    }
    if (name.empty())
        return fail(Error::directive, position);
    const std::size_t folder = name.find_last_of("\\/:");
    const std::size_t start = folder == std::string::npos ? 0 : folder + 1;
    if (!isDosName(std::string_view(name).substr(start)))
        return fail(Error::fileNotFound, position, notADosName(name));
    while (whole.back() <= ' ')
        whole.pop_back();
    const bool more = whole != name;
    // The tree of the IDE takes the name as it is written, from a comment in braces, down to the second
    // level.
    const bool hasType = name.find('.', start) != std::string::npos;
    constexpr std::size_t shownLevels = 2;
    const bool isShown =
        brace && hasType && outer_.size() < shownLevels && errors_.directives[source_.file].line == 0;
    if (!hasType)
        name += ".PAS";
    if (outer_.size() >= maximumIncludeDepth)
        return fail(Error::includeNesting, position, name);
    // On the author's machine it lay on another disk; here it lies with the others.
    const std::string named = name;
    if (name[1] == ':' && !isDosDevice(name) && host_.openSource(name) == nullptr)
        name.erase(0, 2);
    const bool asWritten = !ended && name == named;
    push(name, position, more ? notADosName(whole) : named, isShown && asWritten);
}

} // namespace tp3
