#include "project/project_tree.h"

namespace tavrel {

void ProjectTree::clear() {
    nodes_.clear();
    selected_ = 0;
    if (listener_ != nullptr)
        listener_->nodesCleared();
}

std::size_t ProjectTree::add(std::size_t parent, const std::string& key, const std::string& text,
                             TreeImage image) {
    nodes_.push_back({key, text, image, parent});
    if (listener_ != nullptr)
        listener_->nodeAdded(nodes_.size());
    return nodes_.size();
}

std::vector<std::string> ProjectTree::texts() const {
    std::vector<std::string> texts;
    for (const TreeNode& node : nodes_)
        texts.push_back(node.text);
    return texts;
}

std::size_t ProjectTree::find(const std::string& key) const {
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        if (nodes_[i].key == key)
            return i + 1;
    }
    return 0;
}

bool ProjectTree::isBelow(std::size_t index, std::size_t upper) const {
    while (index != 0) {
        index = node(index).parent;
        if (index == upper)
            return index != 0;
    }
    return false;
}

void ProjectTree::setImage(std::size_t index, TreeImage image) {
    nodes_.at(index - 1).image = image;
    if (listener_ != nullptr)
        listener_->nodeImageChanged(index);
}

void ProjectTree::setText(std::size_t index, const std::string& text) {
    nodes_.at(index - 1).text = text;
    if (listener_ != nullptr)
        listener_->nodeTextChanged(index);
}

std::string ProjectTree::selectedText() const {
    return selected_ == 0 ? std::string() : node(selected_).text;
}

void ProjectTree::select(std::size_t index) {
    selected_ = index;
    if (listener_ != nullptr)
        listener_->nodeSelected(index);
}

void ProjectTree::collapse(std::size_t index) {
    if (node(index).image == TreeImage::expanded)
        setImage(index, TreeImage::collapsed);
}

void ProjectTree::expand(std::size_t index) {
    if (node(index).image == TreeImage::collapsed)
        setImage(index, TreeImage::expanded);
}

} // namespace tavrel
