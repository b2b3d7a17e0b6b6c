// What the tree tells the window that shows it.
#include "project/project_tree.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

class Recorder : public ProjectTreeListener {
  public:
    std::string heard;
    void nodesCleared() override { heard += "cleared;"; }
    void nodeAdded(std::size_t index) override { note("added", index); }
    void nodeImageChanged(std::size_t index) override { note("image", index); }
    void nodeTextChanged(std::size_t index) override { note("text", index); }
    void nodeSelected(std::size_t index) override { note("selected", index); }

  private:
    void note(const std::string& what, std::size_t index) { heard += what + std::to_string(index) + ";"; }
};

TEST(ProjectTree, EachChangeIsToldOnceAndWhatTheUserDidNotAtAll) {
    ProjectTree tree;
    Recorder recorder;
    tree.setListener(&recorder);
    tree.clear();
    tree.add(0, "r", "Project", TreeImage::collapsed);
    tree.add(1, "M", "M.PAS", TreeImage::collapsed);
    tree.setText(1, "Game");
    tree.select(2);
    tree.selectedByUser(1);
    EXPECT_EQ(recorder.heard, "cleared;added1;added2;text1;selected2;");
    EXPECT_EQ(tree.texts(), (std::vector<std::string>{"Game", "M.PAS"}));
    EXPECT_EQ(tree.selectedText(), "Game");
}

TEST(ProjectTree, OnlyTheTwoFoldersPicturesFollowFolding) {
    ProjectTree tree;
    Recorder recorder;
    tree.add(0, "r", "Project", TreeImage::collapsed);
    tree.add(1, "A", "A.INC", TreeImage::includeFile);
    tree.setListener(&recorder);
    for (const std::size_t node : {1U, 2U}) {
        tree.collapse(node);
        tree.expand(node);
        tree.expand(node);
    }
    EXPECT_EQ(recorder.heard, "image1;");
    EXPECT_EQ(tree.node(1).image, TreeImage::expanded);
    EXPECT_EQ(tree.node(2).image, TreeImage::includeFile);
}

TEST(ProjectTree, KnowsWhatLiesBelowANode) {
    ProjectTree tree;
    tree.add(0, "r", "Root", TreeImage::collapsed);
    tree.add(1, "m", "M.PAS", TreeImage::collapsed);
    tree.add(2, "a", "A.INC", TreeImage::includeFile);
    tree.add(3, "b", "B.INC", TreeImage::includeFile);
    EXPECT_TRUE(tree.isBelow(4, 2));
    EXPECT_TRUE(tree.isBelow(2, 1));
    EXPECT_FALSE(tree.isBelow(2, 2));
    EXPECT_FALSE(tree.isBelow(2, 4));
    EXPECT_FALSE(tree.isBelow(0, 1)) << "nothing is selected";
}

} // namespace
} // namespace tavrel
