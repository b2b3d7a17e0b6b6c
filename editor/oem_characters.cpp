// Frames, accents and signs of the OEM character set, which DOS sources are written in.
#include "editor/scintilla_view.h"

#include <array>
#include <bit>
#include <string>

namespace tavrel {

namespace {

constexpr int firstOther = 128; ///< below it the OEM set is ASCII
constexpr int characterCount = 256;

std::string converted(UINT from, const std::string& text, UINT to) {
    std::array<WCHAR, 8> wide{};
    const int length = MultiByteToWideChar(from, 0, text.c_str(), static_cast<int>(text.size()), wide.data(),
                                           static_cast<int>(wide.size()));
    std::array<char, 16> bytes{};
    const int size = WideCharToMultiByte(to, 0, wide.data(), length, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    return std::string(bytes.data(), static_cast<std::size_t>(size));
}

} // namespace

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
        const std::string shown = converted(CP_OEMCP, character, CP_UTF8);
        view.call(SCI_SETREPRESENTATION, std::bit_cast<uptr_t>(character.c_str()), shown.c_str());
        view.call(SCI_SETREPRESENTATIONAPPEARANCE, std::bit_cast<uptr_t>(character.c_str()),
                  sptr_t{SC_REPRESENTATION_PLAIN});
    }
}

} // namespace tavrel
