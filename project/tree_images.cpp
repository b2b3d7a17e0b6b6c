// The tree's pictures, drawn when the program starts so that they fit any screen.
#include "project/tree_view.h"
#include "util/smooth_picture.h"
#include "util/window_placing.h"

#include <array>
#include <cmath>

namespace tavrel {

namespace {

constexpr double designSide = 16; // coordinates below count the pixels of a square of this side, from 0

class Canvas {
  public:
    Canvas(HDC context, int side) : context_(context), unit_(side * smoothPictureScale / designSide) {}

    template <std::size_t count>
    void polygon(const std::array<std::array<double, 2>, count>& corners, COLORREF fill,
                 COLORREF line) const {
        std::array<POINT, count> points = {};
        for (std::size_t i = 0; i < count; ++i)
            points[i] = point(corners[i][0], corners[i][1]);
        const Selection selection(*this, fill, line);
        Polygon(context_, points.data(), static_cast<int>(count));
    }

    void line(double fromX, double toX, double y, COLORREF colour) const {
        const Selection selection(*this, colour, colour);
        const POINT from = point(fromX, y);
        const POINT to = point(toX, y);
        MoveToEx(context_, from.x, from.y, nullptr);
        LineTo(context_, to.x, to.y);
    }

  private:
    /// Pen and brush while it lives. A line is one design pixel wide.
    class Selection {
      public:
        Selection(const Canvas& canvas, COLORREF fill, COLORREF line) : context_(canvas.context_) {
            const LOGBRUSH ink = {BS_SOLID, line, 0};
            pen_ = ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_SQUARE | PS_JOIN_MITER,
                                static_cast<DWORD>(std::lround(canvas.unit_)), &ink, 0, nullptr);
            brush_ = CreateSolidBrush(fill);
            oldPen_ = SelectObject(context_, pen_);
            oldBrush_ = SelectObject(context_, brush_);
        }
        ~Selection() {
            SelectObject(context_, oldPen_);
            SelectObject(context_, oldBrush_);
            DeleteObject(pen_);
            DeleteObject(brush_);
        }
        Selection(const Selection&) = delete;
        Selection& operator=(const Selection&) = delete;

      private:
        HDC context_;
        HPEN pen_;
        HBRUSH brush_;
        HGDIOBJ oldPen_;
        HGDIOBJ oldBrush_;
    };

    /// The middle of a design pixel, so that a line fills whole pixels of the screen where it can.
    POINT point(double x, double y) const {
        return {std::lround((x + 0.5) * unit_), std::lround((y + 0.5) * unit_)};
    }

    HDC context_;
    double unit_;
};

constexpr COLORREF folderLine = RGB(160, 116, 30);
constexpr COLORREF folderFront = RGB(255, 226, 146);

void drawFolderBack(const Canvas& canvas) {
    canvas.polygon(std::array<std::array<double, 2>, 6>{{{1, 3}, {6, 3}, {8, 5}, {14, 5}, {14, 13}, {1, 13}}},
                   RGB(248, 206, 104), folderLine);
}

void drawClosedFolder(const Canvas& canvas) {
    drawFolderBack(canvas);
    canvas.polygon(std::array<std::array<double, 2>, 4>{{{1, 7}, {14, 7}, {14, 13}, {1, 13}}}, folderFront,
                   folderLine);
}

void drawOpenFolder(const Canvas& canvas) {
    drawFolderBack(canvas);
    canvas.polygon(std::array<std::array<double, 2>, 4>{{{4, 8}, {15, 8}, {13, 13}, {1, 13}}}, folderFront,
                   folderLine);
}

void drawFile(const Canvas& canvas) {
    constexpr COLORREF edge = RGB(110, 120, 135);
    canvas.polygon(std::array<std::array<double, 2>, 5>{{{3, 1}, {9, 1}, {12, 4}, {12, 14}, {3, 14}}},
                   RGB(255, 255, 255), edge);
    canvas.polygon(std::array<std::array<double, 2>, 3>{{{9, 1}, {9, 4}, {12, 4}}}, RGB(214, 224, 240), edge);
    for (const int y : {6, 8, 10, 12})
        canvas.line(5, y == 12 ? 8 : 10, y, RGB(70, 110, 190));
}

} // namespace

HIMAGELIST makeTreeImages() {
    const int side = MulDiv(static_cast<int>(designSide), screenScale().pixelsPerInchX, 96);
    HIMAGELIST const list = ImageList_Create(side, side, ILC_COLOR24, 3, 0);
    for (void (*const draw)(const Canvas&) : {drawClosedFolder, drawOpenFolder, drawFile}) {
        HBITMAP const picture = makeSmoothPicture(side, GetSysColor(COLOR_WINDOW),
                                                  [&](HDC context) { draw(Canvas(context, side)); });
        ImageList_Add(list, picture, nullptr);
        DeleteObject(picture);
    }
    return list;
}

} // namespace tavrel
