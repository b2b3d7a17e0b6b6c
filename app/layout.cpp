#include "app/layout.h"

#include "util/text.h"

#include <algorithm>

namespace tavrel {

namespace {

/// Room left above the status bar for editor and tree; negative when there is none.
double heightAboveStatusBar(const FormMeasures& measures) {
    constexpr double gap = 70;
    return measures.clientHeight - measures.statusBarHeight - gap;
}

} // namespace

FormLayout firstLayout(const FormLayout& current, const FormMeasures& measures) {
    FormLayout layout = current;
    if (measures.clientWidth - measures.treeWidth > 0)
        layout.editorWidth = measures.clientWidth - measures.treeWidth;
    if (heightAboveStatusBar(measures) > -1) {
        layout.editorHeight = heightAboveStatusBar(measures);
        layout.treeHeight = layout.editorHeight;
    }
    return layout;
}

FormLayout resizedLayout(const FormLayout& current, const FormMeasures& measures, bool treeShown) {
    if (treeShown) {
        FormLayout layout = firstLayout(current, measures);
        layout.treeVisible = true;
        layout.editorLeft = editorLeftBesideTree;
        return layout;
    }
    constexpr double border = 10;
    FormLayout layout = current;
    layout.treeVisible = false;
    if (measures.clientWidth >= border)
        layout.editorWidth = measures.clientWidth - border;
    layout.editorLeft = 0;
    if (heightAboveStatusBar(measures) > -1)
        layout.editorHeight = heightAboveStatusBar(measures);
    return layout;
}

PixelArea fittedInto(const PixelArea& workArea, const PixelArea& window) {
    PixelArea fitted = window;
    fitted.width = std::min(window.width, workArea.width);
    fitted.height = std::min(window.height, workArea.height);
    fitted.left = std::clamp(window.left, workArea.left, workArea.left + workArea.width - fitted.width);
    fitted.top = std::clamp(window.top, workArea.top, workArea.top + workArea.height - fitted.height);
    return fitted;
}

int centredSplitter(double editorHeight, double twipsPerPixelY) {
    return static_cast<int>(roundHalfToEven(editorHeight / twipsPerPixelY / 2));
}

} // namespace tavrel
