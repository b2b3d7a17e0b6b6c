#include "util/twips.h"

#include "util/text.h"

namespace tavrel {

int ScreenScale::toPixelsX(double twips) const {
    return static_cast<int>(roundHalfToEven(twips / twipsPerPixelX()));
}

int ScreenScale::toPixelsY(double twips) const {
    return static_cast<int>(roundHalfToEven(twips / twipsPerPixelY()));
}

TwipsRectangle centredOver(const TwipsRectangle& owner, const TwipsRectangle& dialog) {
    TwipsRectangle placed = dialog;
    placed.left = owner.left + (owner.width - dialog.width) / 2;
    placed.top = owner.top + (owner.height - dialog.height) / 2;
    return placed;
}

} // namespace tavrel
