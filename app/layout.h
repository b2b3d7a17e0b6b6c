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

/// Splitter position in pixels that halves an editor of this height.
int centredSplitter(double editorHeight, double twipsPerPixelY);

} // namespace tavrel
