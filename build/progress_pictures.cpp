// The progress window's pictures, drawn at four times their size and shrunk, which makes their edges smooth.
#include "build/form2.h"

#include <array>
#include <cmath>
#include <numbers>

namespace tavrel {

namespace {

constexpr int finer = 4;
constexpr double designSide = 52; // coordinates below are in a square of this side

class Canvas {
  public:
    Canvas(HDC context, int side) : context_(context), unit_(side / designSide) {}

    void disc(double x, double y, double radius, COLORREF colour) const {
        HBRUSH const brush = CreateSolidBrush(colour);
        HGDIOBJ const oldBrush = SelectObject(context_, brush);
        HGDIOBJ const oldPen = SelectObject(context_, GetStockObject(NULL_PEN));
        Ellipse(context_, at(x - radius), at(y - radius), at(x + radius) + 1, at(y + radius) + 1);
        SelectObject(context_, oldPen);
        SelectObject(context_, oldBrush);
        DeleteObject(brush);
    }

    template <std::size_t count> void stroke(const std::array<std::array<double, 2>, count>& points) const {
        constexpr double thickness = 6;
        HPEN const pen = CreatePen(PS_SOLID, at(thickness), RGB(255, 255, 255));
        HGDIOBJ const old = SelectObject(context_, pen);
        MoveToEx(context_, at(points[0][0]), at(points[0][1]), nullptr);
        for (const auto& point : points)
            LineTo(context_, at(point[0]), at(point[1]));
        SelectObject(context_, old);
        DeleteObject(pen);
    }

  private:
    int at(double coordinate) const { return static_cast<int>(std::lround(coordinate * unit_)); }

    HDC context_;
    double unit_;
};

/// A ring of dots; every other one is dark, and the frames change places.
void drawWorking(const Canvas& canvas, int frame) {
    constexpr int dots = 8;
    for (int dot = 0; dot < dots; ++dot) {
        const double angle = 2 * std::numbers::pi * dot / dots;
        const bool dark = dot % 2 == frame;
        canvas.disc(designSide / 2 + 18 * std::sin(angle), designSide / 2 - 18 * std::cos(angle),
                    dark ? 5.5 : 4, dark ? RGB(30, 90, 190) : RGB(160, 192, 235));
    }
}

void drawError(const Canvas& canvas, bool bright) {
    canvas.disc(26, 26, 24, bright ? RGB(208, 32, 32) : RGB(140, 20, 20));
    canvas.disc(26, 26, 21, bright ? RGB(226, 60, 60) : RGB(165, 36, 36));
    canvas.stroke(std::array<std::array<double, 2>, 2>{{{17, 17}, {35, 35}}});
    canvas.stroke(std::array<std::array<double, 2>, 2>{{{35, 17}, {17, 35}}});
}

void drawFinished(const Canvas& canvas) {
    canvas.disc(26, 26, 24, RGB(24, 128, 56));
    canvas.disc(26, 26, 21, RGB(46, 158, 78));
    canvas.stroke(std::array<std::array<double, 2>, 3>{{{15, 27}, {23, 35}, {38, 18}}});
}

void drawPicture(const Canvas& canvas, int image) {
    switch (image) {
    case 0:
    case 1:
        drawWorking(canvas, image);
        break;
    case 2:
    case 3:
        drawError(canvas, image == 3);
        break;
    default:
        drawFinished(canvas);
        break;
    }
}

} // namespace

HBITMAP makeProgressPicture(int image, int side, COLORREF background) {
    HDC const screen = GetDC(nullptr);
    HDC const large = CreateCompatibleDC(screen);
    HDC const small = CreateCompatibleDC(screen);
    const int largeSide = side * finer;
    HBITMAP const drawing = CreateCompatibleBitmap(screen, largeSide, largeSide);
    HBITMAP const result = CreateCompatibleBitmap(screen, side, side);
    HGDIOBJ const oldLarge = SelectObject(large, drawing);
    HGDIOBJ const oldSmall = SelectObject(small, result);
    HBRUSH const brush = CreateSolidBrush(background);
    const RECT all = {0, 0, largeSide, largeSide};
    FillRect(large, &all, brush);
    DeleteObject(brush);
    drawPicture(Canvas(large, largeSide), image);
    SetStretchBltMode(small, HALFTONE);
    StretchBlt(small, 0, 0, side, side, large, 0, 0, largeSide, largeSide, SRCCOPY);
    SelectObject(large, oldLarge);
    SelectObject(small, oldSmall);
    DeleteObject(drawing);
    DeleteDC(large);
    DeleteDC(small);
    ReleaseDC(nullptr, screen);
    return result;
}

} // namespace tavrel
