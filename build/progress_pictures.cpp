// The progress window's pictures, drawn when it opens so that they fit any screen.
#include "build/form2.h"
#include "util/smooth_picture.h"

#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace tavrel {

namespace {

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

    template <std::size_t count>
    void polygon(const std::array<std::array<double, 2>, count>& corners, COLORREF colour) const {
        std::array<POINT, count> points = {};
        for (std::size_t i = 0; i < count; ++i)
            points[i] = {at(corners[i][0]), at(corners[i][1])};
        HBRUSH const brush = CreateSolidBrush(colour);
        HGDIOBJ const oldBrush = SelectObject(context_, brush);
        HGDIOBJ const oldPen = SelectObject(context_, GetStockObject(NULL_PEN));
        Polygon(context_, points.data(), static_cast<int>(count));
        SelectObject(context_, oldPen);
        SelectObject(context_, oldBrush);
        DeleteObject(brush);
    }

  private:
    int at(double coordinate) const { return static_cast<int>(std::lround(coordinate * unit_)); }

    HDC context_;
    double unit_;
};

/// A gear of eight teeth around a bright hub; the second frame is the first one turned by half a tooth.
void drawWorking(const Canvas& canvas, int frame) {
    constexpr int teeth = 8;
    constexpr double middle = designSide / 2;
    constexpr COLORREF edge = RGB(24, 72, 150);
    constexpr COLORREF metal = RGB(58, 118, 206);
    for (const auto& [grown, colour] : {std::pair{1.0, edge}, std::pair{-0.8, metal}}) {
        for (int tooth = 0; tooth < teeth; ++tooth) {
            const double angle = 2 * std::numbers::pi * (tooth + 0.5 * frame) / teeth;
            const auto corner = [&](double radius, double turn) {
                return std::array<double, 2>{middle + radius * std::sin(angle + turn),
                                             middle - radius * std::cos(angle + turn)};
            };
            const double foot = 0.25 + grown * 0.05;
            const double tip = 0.15 + grown * 0.04;
            canvas.polygon(std::array<std::array<double, 2>, 4>{{corner(14, -foot), corner(23 + grown, -tip),
                                                                 corner(23 + grown, tip), corner(14, foot)}},
                           colour);
        }
        canvas.disc(middle, middle, 17 + grown, colour);
    }
    canvas.disc(middle, middle, 8.5, edge);
    canvas.disc(middle, middle, 7, RGB(236, 243, 253));
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
    return makeSmoothPicture(side, background, [&](HDC context) {
        drawPicture(Canvas(context, side * smoothPictureScale), image);
    });
}

} // namespace tavrel
