#include "names.h"

#include "token.h"

namespace tp3 {
namespace {

constexpr std::string_view reservedWords[] = {
    "ABSOLUTE", "AND",       "ARRAY",    "BEGIN",  "CASE",   "CONST",   "DIV",      "DO",   "DOWNTO",
    "ELSE",     "END",       "EXTERNAL", "FILE",   "FOR",    "FORWARD", "FUNCTION", "GOTO", "IF",
    "IN",       "INLINE",    "LABEL",    "MOD",    "NIL",    "NOT",     "OF",       "OR",   "OVERLAY",
    "PACKED",   "PROCEDURE", "PROGRAM",  "RECORD", "REPEAT", "SET",     "SHL",      "SHR",  "STRING",
    "THEN",     "TO",        "TYPE",     "UNTIL",  "VAR",    "WHILE",   "WITH",     "XOR",
};
static_assert(sizeof(reservedWords) / sizeof(reservedWords[0]) ==
              static_cast<std::size_t>(TokenKind::wordXor) -
                  static_cast<std::size_t>(TokenKind::wordAbsolute) + 1);

} // namespace

NameTable::NameTable() {
    auto token = static_cast<std::uint8_t>(TokenKind::wordAbsolute);
    for (const std::string_view word : reservedWords)
        find(word)->reservedWord = token++;
}

Name* NameTable::find(std::string_view text) {
    std::uint32_t hash = hashStart;
    for (const char character : text)
        hash = hashStep(hash, character);
    return find(text, hash);
}

Name* NameTable::find(std::string_view text, std::uint32_t hash) {
    Name*& bucket = buckets_[(hash ^ (hash >> 16)) % bucketCount];
    for (Name* name = bucket; name != nullptr; name = name->nextInBucket)
        if (name->text == text)
            return name;
    Name* name = arena_.make<Name>();
    name->text = {arena_.copyText(text.data(), text.size()), text.size()};
    name->nextInBucket = bucket;
    bucket = name;
    return name;
}

} // namespace tp3
