#pragma once

#include "errors.h"
#include "overlay_code.h"
#include "z80.h"

#include <cstdint>
#include <vector>

namespace tp3 {

/// Which source line the code at an address comes from, in ascending order of address.
struct LineEntry {
    std::uint16_t address = 0;
    Position position;
};

/// The program's memory image from its start address: header, typed constants and code in the order of their
/// arrival.
class Image {
  public:
    /// Bytes of the header that the library reads: a jump, start, length, end of data, stack top, heap,
    /// flags, reserved.
    static constexpr std::uint16_t headerSize = 16;

    /// An image from `start` on, below `end`. Takes all of its memory now: one that grew would leave holes in
    /// that of DOS.
    Image(std::uint16_t start, std::uint16_t end);

    /// Lays down the bytes of a typed constant.
    void addConstant(std::uint16_t ordinal, const char* bytes, std::uint16_t size);
    /// Lays down a routine's code.
    void addRoutine(std::uint16_t ordinal, const z80::Encoded& code);
    /// Marks that the code from `offset` bytes into the routine, which is to be added next, belongs to the
    /// place.
    void addLine(std::uint16_t ordinal, std::uint16_t offset, Position position);

    /// From now on code of overlay routines goes into files of their own; `overlays` must outlive the image.
    /// @param fileName eight characters, filled up with blanks
    void useOverlays(const Overlays& overlays, std::string_view fileName);

    /// Fills in the header and all addresses; `dataBottom` is the lowest address of variables, `end` their
    /// upper end. False when code and data do not fit.
    bool finish(std::uint16_t dataBottom, std::uint16_t end, std::uint8_t flags);

    /// The bytes, which are the caller's from now on.
    [[nodiscard]] std::vector<std::uint8_t> takeBytes() {
        return static_cast<std::vector<std::uint8_t>&&>(bytes_);
    }
    /// The overlay files' bytes by the number of the file; empty where there is none.
    [[nodiscard]] std::vector<std::vector<std::uint8_t>> takeOverlayFiles() { return overlay_.takeFiles(); }
    /// First address after code and the memory for overlays.
    [[nodiscard]] std::uint16_t codeEnd() const { return address(bytes_.size() + overlay_.areaBytes()); }
    [[nodiscard]] const std::vector<LineEntry>& lines() const { return lines_; }
    [[nodiscard]] std::uint16_t address(std::size_t offset) const {
        return static_cast<std::uint16_t>(start_ + offset);
    }

  private:
    struct Place {
        std::uint16_t offset = 0; ///< in bytes_, 0 = not there (the header lies there)
    };
    void word(std::size_t offset, std::uint32_t value);
    [[nodiscard]] std::uint16_t wordAt(std::size_t offset) const;
    static std::uint16_t placeOf(const std::vector<Place>& places, std::uint16_t ordinal);
    /// Offset of what an address refers to; 0 while it is not there.
    [[nodiscard]] std::uint16_t placeOf(const z80::Fixup& fixup) const;

    std::uint16_t start_;
    std::vector<std::uint8_t> bytes_;
    std::vector<z80::Fixup> fixups_;
    std::vector<std::uint16_t> fixupOffsets_;
    std::vector<Place> routines_;
    std::vector<Place> constants_;
    std::vector<LineEntry> lines_;
    OverlayCode overlay_;
    bool tooLarge_ = false;
};

} // namespace tp3
