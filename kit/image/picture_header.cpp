#include "image/picture_header.h"

#include <optional>

namespace image {

namespace {

/// The bytes of a file, taken from its begin to its end. Past the end everything is zero, and ended() true.
class Bytes {
  public:
    explicit Bytes(std::string_view file) : file_(file) {}

    bool ended() const { return ended_; }
    void skip(std::size_t count) {
        ended_ = ended_ || count > file_.size() - next_;
        next_ = ended_ ? file_.size() : next_ + count;
    }
    unsigned byte() {
        if (next_ == file_.size()) {
            ended_ = true;
            return 0;
        }
        return static_cast<unsigned char>(file_[next_++]);
    }
    std::uint32_t bigEndian(unsigned count) {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < count; ++i)
            value = value << 8 | byte();
        return value;
    }
    std::uint32_t littleEndian(unsigned count) {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < count; ++i)
            value |= byte() << 8 * i;
        return value;
    }

  private:
    std::string_view file_;
    std::size_t next_ = 0;
    bool ended_ = false;
};

struct Size {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
};

PictureHeader headerOf(const std::optional<Size>& size) {
    if (!size || size->width == 0 || size->height == 0)
        return {PictureKind::damaged};
    return {PictureKind::known, size->width, size->height, size->width * size->height};
}

/// Signature, then the chunk IHDR: length, name, width, height.
PictureHeader pngHeader(Bytes bytes) {
    bytes.skip(8 + 4);
    constexpr std::uint32_t nameOfHeader = 0x49484452;
    if (bytes.bigEndian(4) != nameOfHeader)
        return {PictureKind::damaged};
    const std::uint32_t width = bytes.bigEndian(4);
    const std::uint32_t height = bytes.bigEndian(4);
    return headerOf(bytes.ended() ? std::optional<Size>() : Size{width, height});
}

/// File header of 14 bytes, then one of several picture headers, which begin with their own length.
PictureHeader bmpHeader(Bytes bytes) {
    bytes.skip(14);
    constexpr std::uint32_t oldHeader = 12;
    const bool isOld = bytes.littleEndian(4) == oldHeader;
    const std::uint32_t width = bytes.littleEndian(isOld ? 2 : 4);
    std::uint32_t height = bytes.littleEndian(isOld ? 2 : 4);
    if (!isOld && height > INT32_MAX) // a negative height: the rows go down
        height = 0U - height;
    if (bytes.ended() || width > INT32_MAX)
        return {PictureKind::damaged};
    return headerOf(Size{width, height});
}

/// Segments, each a marker and, except for some markers, a length; the frame's holds the size.
PictureHeader jpegHeader(Bytes bytes) {
    bytes.skip(2);
    while (!bytes.ended()) {
        if (bytes.byte() != 0xFF)
            continue;
        unsigned marker = bytes.byte();
        while (marker == 0xFF)
            marker = bytes.byte();
        if (marker <= 0x01 || (marker >= 0xD0 && marker <= 0xD8)) // stands alone
            continue;
        const std::uint32_t length = bytes.bigEndian(2);
        // C4, C8 and CC are tables among the frames of C0 to CF.
        const bool isFrame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (isFrame) {
            bytes.skip(1);
            const std::uint32_t height = bytes.bigEndian(2);
            const std::uint32_t width = bytes.bigEndian(2);
            return headerOf(bytes.ended() ? std::optional<Size>() : Size{width, height});
        }
        if (length < 2)
            break;
        bytes.skip(length - 2);
    }
    return {PictureKind::damaged};
}

void skipGifBlocks(Bytes& bytes) {
    while (const unsigned length = bytes.byte())
        bytes.skip(length);
}

std::size_t gifTableBytes(unsigned flags) {
    return (flags & 0x80) == 0 ? 0 : std::size_t{3} << ((flags & 7) + 1);
}

/// The screen's size, then extensions and frames, each frame with a size of its own.
PictureHeader gifHeader(Bytes bytes) {
    bytes.skip(6);
    const std::uint32_t screenWidth = bytes.littleEndian(2);
    const std::uint32_t screenHeight = bytes.littleEndian(2);
    const unsigned flags = bytes.byte();
    bytes.skip(2 + gifTableBytes(flags));
    PictureHeader header;
    std::uint64_t pixels = std::uint64_t{screenWidth} * screenHeight;
    while (!bytes.ended()) {
        const unsigned kind = bytes.byte();
        if (kind == '!') {
            bytes.skip(1);
            skipGifBlocks(bytes);
        } else if (kind == ',') {
            bytes.skip(4);
            const std::uint32_t width = bytes.littleEndian(2);
            const std::uint32_t height = bytes.littleEndian(2);
            if (header.kind != PictureKind::known && !bytes.ended())
                header = headerOf(Size{width, height});
            pixels += std::uint64_t{width} * height;
            const unsigned frameFlags = bytes.byte();
            bytes.skip(gifTableBytes(frameFlags) + 1);
            skipGifBlocks(bytes);
        } else {
            break;
        }
    }
    if (header.kind != PictureKind::known)
        return {PictureKind::damaged};
    header.pixels = pixels;
    return header;
}

} // namespace

PictureHeader readHeader(std::string_view file) {
    const Bytes bytes(file);
    if (file.starts_with("\x89PNG\r\n\x1A\n"))
        return pngHeader(bytes);
    if (file.starts_with("BM"))
        return bmpHeader(bytes);
    if (file.starts_with("\xFF\xD8"))
        return jpegHeader(bytes);
    if (file.starts_with("GIF8"))
        return gifHeader(bytes);
    return {};
}

} // namespace image
