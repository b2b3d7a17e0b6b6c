// The tree's pictures, drawn when the program starts so that they fit any screen.
#include "project/tree_view.h"

#include <array>

namespace tavrel {

namespace {

constexpr int side = 16;
constexpr COLORREF transparent = RGB(255, 0, 255);

template <std::size_t count>
void fillPolygon(HDC context, const std::array<POINT, count>& points, COLORREF fill, COLORREF line) {
    HPEN const pen = CreatePen(PS_SOLID, 1, line);
    HBRUSH const brush = CreateSolidBrush(fill);
    HGDIOBJ const oldPen = SelectObject(context, pen);
    HGDIOBJ const oldBrush = SelectObject(context, brush);
    Polygon(context, points.data(), static_cast<int>(count));
    SelectObject(context, oldPen);
    SelectObject(context, oldBrush);
    DeleteObject(pen);
    DeleteObject(brush);
}

constexpr COLORREF folderLine = RGB(160, 116, 30);

void drawFolderBack(HDC context) {
    constexpr std::array<POINT, 6> back = {{{1, 3}, {6, 3}, {8, 5}, {14, 5}, {14, 13}, {1, 13}}};
    fillPolygon(context, back, RGB(248, 206, 104), folderLine);
}

void drawClosedFolder(HDC context) {
    drawFolderBack(context);
    constexpr std::array<POINT, 4> front = {{{1, 7}, {14, 7}, {14, 13}, {1, 13}}};
    fillPolygon(context, front, RGB(255, 226, 146), folderLine);
}

void drawOpenFolder(HDC context) {
    drawFolderBack(context);
    constexpr std::array<POINT, 4> front = {{{4, 8}, {15, 8}, {13, 13}, {1, 13}}};
    fillPolygon(context, front, RGB(255, 226, 146), folderLine);
}

void drawFile(HDC context) {
    constexpr std::array<POINT, 5> sheet = {{{3, 1}, {9, 1}, {12, 4}, {12, 14}, {3, 14}}};
    fillPolygon(context, sheet, RGB(255, 255, 255), RGB(110, 120, 135));
    constexpr std::array<POINT, 3> fold = {{{9, 1}, {9, 4}, {12, 4}}};
    fillPolygon(context, fold, RGB(214, 224, 240), RGB(110, 120, 135));
    HPEN const pen = CreatePen(PS_SOLID, 1, RGB(70, 110, 190));
    HGDIOBJ const old = SelectObject(context, pen);
    for (const int y : {6, 8, 10, 12}) {
        MoveToEx(context, 5, y, nullptr);
        LineTo(context, y == 12 ? 9 : 11, y);
    }
    SelectObject(context, old);
    DeleteObject(pen);
}

} // namespace

HIMAGELIST makeTreeImages() {
    HIMAGELIST const list = ImageList_Create(side, side, ILC_COLOR24 | ILC_MASK, 3, 0);
    HDC const screen = GetDC(nullptr);
    HDC const context = CreateCompatibleDC(screen);
    for (void (*const draw)(HDC) : {drawClosedFolder, drawOpenFolder, drawFile}) {
        HBITMAP const bitmap = CreateCompatibleBitmap(screen, side, side);
        HGDIOBJ const old = SelectObject(context, bitmap);
        HBRUSH const background = CreateSolidBrush(transparent);
        constexpr RECT all = {0, 0, side, side};
        FillRect(context, &all, background);
        DeleteObject(background);
        draw(context);
        SelectObject(context, old);
        ImageList_AddMasked(list, bitmap, transparent);
        DeleteObject(bitmap);
    }
    DeleteDC(context);
    ReleaseDC(nullptr, screen);
    return list;
}

} // namespace tavrel
