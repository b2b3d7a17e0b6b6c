// The project tree as data: the tree view `TV` shows it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tavrel {

/// Pictures of a node, numbered as in the tree's image list (from 1).
enum class TreeImage { collapsed = 1, expanded = 2, includeFile = 3 };

struct TreeNode {
    std::string key;
    std::string text;
    TreeImage image = TreeImage::collapsed;
    std::size_t parent = 0; ///< index of the parent, 0 for the root
};

/// Told of each change, so that a window can follow.
class ProjectTreeListener {
  public:
    virtual ~ProjectTreeListener() = default;
    virtual void nodesCleared() = 0;
    virtual void nodeAdded(std::size_t index) = 0;
    virtual void nodeImageChanged(std::size_t index) = 0;
    virtual void nodeTextChanged(std::size_t index) = 0;
    virtual void nodeSelected(std::size_t index) = 0;
};

/// Nodes are numbered from 1 in the order they were added: 1 is the root, 2 the main file, 3 up the includes.
class ProjectTree {
  public:
    void setListener(ProjectTreeListener* listener) { listener_ = listener; }

    void clear();
    /// Adds a child of `parent` (0 for a root) and gives back its index.
    std::size_t add(std::size_t parent, const std::string& key, const std::string& text, TreeImage image);

    std::size_t count() const { return nodes_.size(); }
    /// `index` from 1 to count().
    const TreeNode& node(std::size_t index) const { return nodes_.at(index - 1); }
    std::vector<std::string> texts() const;
    /// Index of the first node with this key, 0 when there is none.
    std::size_t find(const std::string& key) const;

    /// Does a node lie below another one, at any depth?
    bool isBelow(std::size_t index, std::size_t upper) const;

    void setImage(std::size_t index, TreeImage image);
    void setText(std::size_t index, const std::string& text);

    /// 0 when nothing is selected.
    std::size_t selected() const { return selected_; }
    /// Text of the selected node, "" when there is none.
    std::string selectedText() const;
    void select(std::size_t index);
    /// The user selected a node in the window, which shows that already.
    void selectedByUser(std::size_t index) { selected_ = index; }

    /// The node was collapsed or expanded in the window: swaps the pictures 1 and 2, leaves any other alone.
    void collapse(std::size_t index);
    void expand(std::size_t index);

  private:
    std::vector<TreeNode> nodes_;
    std::size_t selected_ = 0;
    ProjectTreeListener* listener_ = nullptr;
};

} // namespace tavrel
