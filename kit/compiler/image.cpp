#include "image.h"

namespace tp3 {

namespace {

template <typename T> T& at(std::vector<T>& list, std::size_t index) {
    if (index >= list.size()) {
        list.resize(index + 1);
    }
    return list[index];
}

} // namespace

Image::Image(std::uint16_t start, std::uint16_t end) : start_(start) {
    bytes_.reserve(std::size_t{headerSize} + (end > start ? end - start : 0));
    bytes_.resize(headerSize);
}

void Image::word(std::size_t offset, std::uint32_t value) {
    bytes_[offset] = static_cast<std::uint8_t>(value & 0xFFU);
    bytes_[offset + 1] = static_cast<std::uint8_t>(value >> 8U & 0xFFU);
}

std::uint16_t Image::wordAt(std::size_t offset) const {
    return static_cast<std::uint16_t>(bytes_[offset] | static_cast<unsigned>(bytes_[offset + 1]) << 8U);
}

std::uint16_t Image::placeOf(const std::vector<Place>& places, std::uint16_t ordinal) {
    return ordinal < places.size() ? places[ordinal].offset : std::uint16_t{0};
}

std::uint16_t Image::placeOf(const z80::Fixup& fixup) const {
    return placeOf(fixup.target == z80::Target::routine ? routines_ : constants_, fixup.index);
}

void Image::addConstant(std::uint16_t ordinal, const char* bytes, std::uint16_t size) {
    if (bytes_.size() + size + start_ > 0xFFFFU) {
        tooLarge_ = true;
        return;
    }
    at(constants_, ordinal).offset = static_cast<std::uint16_t>(bytes_.size());
    for (std::uint16_t i = 0; i < size; ++i) {
        bytes_.push_back(static_cast<std::uint8_t>(bytes[i]));
    }
}

void Image::addLine(std::uint16_t ordinal, std::uint16_t offset, Position position) {
    if (overlay_.holds(ordinal)) {
        return; // several routines share the address
    }
    lines_.push_back({address(bytes_.size() + offset), position});
}

void Image::useOverlays(const Overlays& overlays, std::string_view fileName) {
    overlay_.begin(overlays, fileName);
}

void Image::addRoutine(std::uint16_t ordinal, const z80::Encoded& code) {
    if (overlay_.add(ordinal, code)) {
        return;
    }
    if (bytes_.size() + code.bytes.size() + start_ > 0xFFFFU) {
        tooLarge_ = true;
        return;
    }
    const std::size_t base = bytes_.size();
    at(routines_, ordinal).offset = static_cast<std::uint16_t>(base);
    bytes_.insert(bytes_.end(), code.bytes.begin(), code.bytes.end());
    for (const z80::Fixup& fixup : code.ownAddresses) {
        word(base + fixup.offset, wordAt(base + fixup.offset) + start_ + static_cast<std::uint32_t>(base));
    }
    for (const z80::Fixup& fixup : code.fixups) {
        const std::size_t offset = base + fixup.offset;
        if (placeOf(fixup) != 0) {
            word(offset, std::uint32_t{wordAt(offset)} + start_ + placeOf(fixup));
        } else { // declared forward
            fixups_.push_back(fixup);
            fixupOffsets_.push_back(static_cast<std::uint16_t>(offset));
        }
    }
}

bool Image::finish(std::uint16_t dataBottom, std::uint16_t end, std::uint8_t flags) {
    overlay_.addStubs(bytes_, start_, [&](std::uint16_t routine, std::uint16_t offset) {
        at(routines_, routine).offset = offset;
    });
    tooLarge_ = tooLarge_ || overlay_.tooLarge() || start_ + bytes_.size() + overlay_.areaBytes() > 0xFFFFU;
    if (tooLarge_) {
        return false;
    }
    overlay_.resolve(
        [&](const z80::Fixup& fixup) { return static_cast<std::uint16_t>(start_ + placeOf(fixup)); });
    for (std::size_t i = 0; i < fixups_.size(); ++i) {
        const std::size_t offset = fixupOffsets_[i];
        word(offset, std::uint32_t{wordAt(offset)} + start_ + placeOf(fixups_[i]));
    }
    const auto length = static_cast<std::uint32_t>(bytes_.size());
    constexpr std::uint32_t leastStack = 256; // what the library's deepest entry and a few calls need
    const std::uint32_t used = start_ + length + static_cast<std::uint32_t>(overlay_.areaBytes());
    if (used + leastStack > dataBottom) {
        return false;
    }
    bytes_[0] = 0xC3; // JP to the main program
    word(1, start_ + static_cast<std::uint32_t>(placeOf(routines_, 0)));
    word(3, start_);
    word(5, length);
    word(7, end);
    word(9, dataBottom);
    word(11, used);
    bytes_[13] = flags;
    return true;
}

} // namespace tp3
