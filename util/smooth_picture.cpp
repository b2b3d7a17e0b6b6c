#include "util/smooth_picture.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tavrel {

namespace {

/// A square bitmap with its pixels in reach, top row first, four bytes each.
class PixelSquare {
  public:
    explicit PixelSquare(int side) : side_(static_cast<std::size_t>(side)) {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = side;
        info.bmiHeader.biHeight = -side;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        if (bitmap_ != nullptr)
            bytes_ = {static_cast<std::uint8_t*>(bits), side_ * side_ * 4};
    }
    ~PixelSquare() { DeleteObject(bitmap_); }
    PixelSquare(const PixelSquare&) = delete;
    PixelSquare& operator=(const PixelSquare&) = delete;

    HBITMAP bitmap() const { return bitmap_; }
    HBITMAP release() {
        HBITMAP const bitmap = bitmap_;
        bitmap_ = nullptr;
        return bitmap;
    }
    std::uint8_t& channel(std::size_t x, std::size_t y, std::size_t number) {
        return bytes_[(y * side_ + x) * 4 + number];
    }

  private:
    std::size_t side_;
    HBITMAP bitmap_ = nullptr;
    std::span<std::uint8_t> bytes_;
};

std::uint8_t meanOf(PixelSquare& large, std::size_t x, std::size_t y, std::size_t channel) {
    constexpr std::size_t scale = smoothPictureScale;
    unsigned sum = 0;
    for (std::size_t row = 0; row < scale; ++row) {
        for (std::size_t column = 0; column < scale; ++column)
            sum += large.channel(x * scale + column, y * scale + row, channel);
    }
    return static_cast<std::uint8_t>((sum + scale * scale / 2) / (scale * scale));
}

} // namespace

HBITMAP makeSmoothPicture(int side, COLORREF background, const std::function<void(HDC)>& draw) {
    const int largeSide = side * smoothPictureScale;
    PixelSquare large(largeSide);
    PixelSquare small(side);
    HDC const context = CreateCompatibleDC(nullptr);
    if (large.bitmap() != nullptr && small.bitmap() != nullptr && context != nullptr) {
        HGDIOBJ const old = SelectObject(context, large.bitmap());
        HBRUSH const brush = CreateSolidBrush(background);
        const RECT all = {0, 0, largeSide, largeSide};
        FillRect(context, &all, brush);
        DeleteObject(brush);
        draw(context);
        GdiFlush();
        SelectObject(context, old);
        for (std::size_t y = 0; y < static_cast<std::size_t>(side); ++y) {
            for (std::size_t x = 0; x < static_cast<std::size_t>(side); ++x) {
                for (std::size_t channel = 0; channel < 3; ++channel)
                    small.channel(x, y, channel) = meanOf(large, x, y, channel);
            }
        }
    }
    DeleteDC(context);
    return small.release();
}

} // namespace tavrel
