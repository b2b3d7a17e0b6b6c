// The tree view `TV`: shows the project tree beside the editor.
#pragma once

#include "project/project_tree.h"

#include <vector>
#include <windows.h>

#include <commctrl.h>

namespace tavrel {

class TreeView : public ProjectTreeListener {
  public:
    TreeView(HWND parent, int controlIdentifier);
    ~TreeView() override;
    TreeView(const TreeView&) = delete;
    TreeView& operator=(const TreeView&) = delete;

    HWND window() const { return window_; }
    /// Shows this tree from now on; it must be empty and outlive the view.
    void attach(ProjectTree& tree);

    /// Follows a notification of the control. True when the user chose a node, which is then clickedNode().
    bool handleNotification(const NMHDR& notification);
    std::size_t clickedNode() const { return clickedNode_; }
    /// Was it chosen by a key? Then the focus stays in the tree.
    bool chosenByKey() const { return chosenByKey_; }
    /// The choice has been carried out; until then the same node is not reported again: one click is reported
    /// by the control as a click and as a new selection.
    void choiceTaken() { choicePending_ = false; }
    /// The control's handle of a node.
    HTREEITEM item(std::size_t index) const { return items_.at(index - 1); }

    void nodesCleared() override;
    void nodeAdded(std::size_t index) override;
    void nodeImageChanged(std::size_t index) override;
    void nodeTextChanged(std::size_t index) override;
    void nodeSelected(std::size_t index) override;

  private:
    void useImages();
    bool choose(std::size_t node, bool byKey = false);
    std::size_t nodeOf(HTREEITEM item) const;
    std::size_t nodeUnderMouse() const;

    HWND window_ = nullptr;
    HIMAGELIST ImageList1_ = nullptr;
    ProjectTree* tree_ = nullptr;
    std::vector<HTREEITEM> items_;
    std::size_t clickedNode_ = 0;
    bool choicePending_ = false;
    bool chosenByKey_ = false;
    bool selecting_ = false; ///< the program itself changes the selection
};

/// The three pictures of tree nodes: closed folder, open folder, file. The caller owns the list.
HIMAGELIST makeTreeImages();

} // namespace tavrel
