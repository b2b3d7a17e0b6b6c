// Frames, accents and signs of the OEM character set, which DOS sources are written in.
#include "editor/oem_characters.h"

#include "editor/scintilla_view.h"

#include <bit>
#include <string>

namespace tavrel {

namespace {

constexpr int firstOther = 128; ///< below it the OEM set is ASCII
constexpr int characterCount = 256;

std::string narrow(UINT codePage, std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

} // namespace

std::wstring unicodeOfOem(std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0'); // no byte becomes more than one character
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_OEMCP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

std::string oemOfUnicode(std::wstring_view text) {
    return narrow(CP_OEMCP, text);
}

std::string ansiOfOem(std::string_view text) {
    return narrow(CP_ACP, unicodeOfOem(text));
}

void showOemCharacters(const ScintillaView& view, int characterSet) {
    view.call(SCI_CLEARALLREPRESENTATIONS);
    // What is typed and pasted becomes OEM characters by the default style's set, however they are drawn.
    view.call(SCI_STYLESETCHARACTERSET, STYLE_DEFAULT, SC_CHARSET_OEM);
    if (characterSet == SC_CHARSET_OEM)
        return;
    // The font itself does not know the set, so each character is drawn as the Unicode one that it stands
    // for.
    for (int code = firstOther; code < characterCount; ++code) {
        const std::string character(1, static_cast<char>(static_cast<unsigned char>(code)));
        const std::string shown = narrow(CP_UTF8, unicodeOfOem(character));
        view.call(SCI_SETREPRESENTATION, std::bit_cast<uptr_t>(character.c_str()), shown.c_str());
        view.call(SCI_SETREPRESENTATIONAPPEARANCE, std::bit_cast<uptr_t>(character.c_str()),
                  sptr_t{SC_REPRESENTATION_PLAIN});
    }
}

} // namespace tavrel
