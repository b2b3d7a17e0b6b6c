// Where editor and tree lie in the main window, in twips.
#pragma once

namespace tavrel {

/// Left edge of the editor beside the tree. Fixed: it does not follow the tree's width.
constexpr double editorLeftBesideTree = 2400;

struct FormLayout {
    double editorLeft = editorLeftBesideTree;
    double editorWidth = 0;
    double editorHeight = 0;
    double treeHeight = 0;
    bool treeVisible = true;
};

struct FormMeasures {
    double clientWidth = 0;
    double clientHeight = 0;
    double treeWidth = 2400;
    double statusBarHeight = 0;
};

/// At start-up: sizes only, no left edge.
FormLayout firstLayout(const FormLayout& current, const FormMeasures& measures);

/// After a resize, or after the tree was shown or hidden. A window too small for a rule leaves that size as
/// it was.
FormLayout resizedLayout(const FormLayout& current, const FormMeasures& measures, bool treeShown);

/// A window and the part of the screen that windows may cover, in pixels.
struct PixelArea {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const PixelArea&) const = default;
};

/// The window, made smaller and moved so far that all of it lies in the work area.
PixelArea fittedInto(const PixelArea& workArea, const PixelArea& window);

/// Splitter position in pixels that halves an editor of this height.
int centredSplitter(double editorHeight, double twipsPerPixelY);

} // namespace tavrel
