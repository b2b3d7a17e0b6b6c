#include "project/tree_view.h"

#include <bit>
#include <stdexcept>

#include <windowsx.h>

namespace tavrel {

namespace {

/// Pictures count from 1 in the tree and from 0 in an image list.
int imageIndex(TreeImage image) {
    return static_cast<int>(image) - 1;
}

} // namespace

TreeView::TreeView(HWND parent, int controlIdentifier) {
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                            TVS_LINESATROOT | TVS_SHOWSELALWAYS;
    // Its text is shown nowhere; it is the name that a screen reader says.
    window_ = CreateWindowExA(WS_EX_CLIENTEDGE, WC_TREEVIEWA, "Project tree", style, 0, 0, 0, 0, parent,
                              std::bit_cast<HMENU>(static_cast<INT_PTR>(controlIdentifier)),
                              GetModuleHandleA(nullptr), nullptr);
    if (window_ == nullptr)
        throw std::runtime_error("The project tree cannot be made.");
}

TreeView::~TreeView() {
    if (tree_ != nullptr)
        tree_->setListener(nullptr);
    if (ImageList1_ != nullptr)
        ImageList_Destroy(ImageList1_);
}

void TreeView::attach(ProjectTree& tree) {
    tree_ = &tree;
    tree.setListener(this);
}

void TreeView::nodesCleared() {
    items_.clear();
    choicePending_ = false;
    selecting_ = true;
    SendMessageA(window_, TVM_DELETEITEM, 0, std::bit_cast<LPARAM>(TVI_ROOT));
    selecting_ = false;
}

/// Draws the pictures, once there are nodes to show them: the program starts without.
void TreeView::useImages() {
    if (ImageList1_ != nullptr)
        return;
    ImageList1_ = makeTreeImages();
    SendMessageA(window_, TVM_SETIMAGELIST, TVSIL_NORMAL, std::bit_cast<LPARAM>(ImageList1_));
}

void TreeView::nodeAdded(std::size_t index) {
    useImages();
    const TreeNode& node = tree_->node(index);
    std::string text = node.text;
    TVINSERTSTRUCTA insertion = {};
    insertion.hParent = node.parent == 0 ? TVI_ROOT : item(node.parent);
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
    insertion.item.pszText = text.data();
    insertion.item.iImage = imageIndex(node.image);
    insertion.item.iSelectedImage = insertion.item.iImage;
    insertion.item.lParam = static_cast<LPARAM>(index);
    items_.push_back(std::bit_cast<HTREEITEM>(
        SendMessageA(window_, TVM_INSERTITEMA, 0, std::bit_cast<LPARAM>(&insertion))));
    if (node.parent == 0)
        return;
    // Includes come up in sight. The control reports the user's expanding only.
    SendMessageA(window_, TVM_EXPAND, TVE_EXPAND, std::bit_cast<LPARAM>(item(node.parent)));
    tree_->expand(node.parent);
}

void TreeView::nodeImageChanged(std::size_t index) {
    TVITEMA change = {};
    change.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    change.hItem = item(index);
    change.iImage = imageIndex(tree_->node(index).image);
    change.iSelectedImage = change.iImage;
    SendMessageA(window_, TVM_SETITEMA, 0, std::bit_cast<LPARAM>(&change));
}

void TreeView::nodeTextChanged(std::size_t index) {
    std::string text = tree_->node(index).text;
    TVITEMA change = {};
    change.mask = TVIF_TEXT;
    change.hItem = item(index);
    change.pszText = text.data();
    SendMessageA(window_, TVM_SETITEMA, 0, std::bit_cast<LPARAM>(&change));
}

void TreeView::nodeSelected(std::size_t index) {
    selecting_ = true;
    SendMessageA(window_, TVM_SELECTITEM, TVGN_CARET, std::bit_cast<LPARAM>(item(index)));
    selecting_ = false;
}

std::size_t TreeView::nodeOf(HTREEITEM item) const {
    TVITEMA wanted = {};
    wanted.mask = TVIF_PARAM | TVIF_HANDLE;
    wanted.hItem = item;
    if (item == nullptr || SendMessageA(window_, TVM_GETITEMA, 0, std::bit_cast<LPARAM>(&wanted)) == 0)
        return 0;
    return static_cast<std::size_t>(wanted.lParam);
}

std::size_t TreeView::nodeUnderMouse() const {
    const DWORD place = GetMessagePos();
    TVHITTESTINFO hit = {};
    hit.pt = {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
    ScreenToClient(window_, &hit.pt);
    SendMessageA(window_, TVM_HITTEST, 0, std::bit_cast<LPARAM>(&hit));
    return (hit.flags & TVHT_ONITEM) != 0 ? nodeOf(hit.hItem) : 0;
}

bool TreeView::choose(std::size_t node, bool byKey) {
    if (node < 1 || node > tree_->count())
        return false;
    tree_->selectedByUser(node);
    if (choicePending_ && clickedNode_ == node)
        return false;
    clickedNode_ = node;
    chosenByKey_ = byKey;
    choicePending_ = true;
    return true;
}

bool TreeView::handleNotification(const NMHDR& notification) {
    if (notification.hwndFrom != window_ || tree_ == nullptr)
        return false;
    const auto& details = *std::bit_cast<const NMTREEVIEWA*>(&notification);
    const auto node = [&] { return static_cast<std::size_t>(details.itemNew.lParam); };
    switch (notification.code) {
    case NM_CLICK: // a click on the node that is selected already makes no new selection
        return choose(nodeUnderMouse());
    case TVN_SELCHANGEDA:
    case TVN_SELCHANGEDW:
        return !selecting_ && choose(node(), details.action == TVC_BYKEYBOARD);
    case TVN_ITEMEXPANDEDA:
    case TVN_ITEMEXPANDEDW:
        if (node() < 1 || node() > tree_->count())
            return false;
        if ((details.action & TVE_TOGGLE) == TVE_EXPAND) {
            tree_->expand(node());
            return false;
        }
        tree_->collapse(node());
        // The control then selects this node in place of the one that is out of sight now, under some systems
        // without a word. The editor must follow: what is selected is what a save writes to.
        return tree_->isBelow(tree_->selected(), node()) && choose(node());
    default:
        return false;
    }
}

} // namespace tavrel
