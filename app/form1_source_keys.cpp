// Keys for the source: where a name is declared, a text in all files, comments, lines, blocks.
#include "app/form1.h"
#include "editor/project_search.h"
#include "editor/source_words.h"
#include "project/file_switching.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"

namespace tavrel {

namespace {

/// Positions that a jump came from; more than these nobody goes back.
constexpr std::size_t keptJumps = 50;

} // namespace

/// The texts of the project's files in the order of the tree; the file in the editor as it stands there. A
/// file that cannot be read has none.
std::vector<std::string> Form1::projectTexts() const {
    const ProjectTree& tree = workspace_->tree;
    const std::size_t shown = tree.find(workspace_->project.SelectedKey);
    std::vector<std::string> texts;
    for (std::size_t node = 2; node <= tree.count(); ++node) {
        std::string text;
        try {
            text = node == shown
                       ? Code1_->text()
                       : readWholeFile(AddBackslash(workspace_->project.Folder) + tree.node(node).text);
        } catch (const RuntimeError&) {
            // It was in the tree and is gone; the others can be searched all the same.
        }
        texts.push_back(std::move(text));
    }
    return texts;
}

/// The index among projectTexts() of the file in the editor.
std::size_t Form1::shownFile() const {
    const std::size_t node = workspace_->tree.find(workspace_->project.SelectedKey);
    return node >= 2 ? node - 2 : 0;
}

/// Brings a file up as a click on its node does, with its question. False when the user stayed.
bool Form1::showFile(std::size_t file) {
    const std::size_t node = file + 2;
    if (file == shownFile())
        return true;
    if (node > workspace_->tree.count())
        return false;
    workspace_->tree.select(node);
    switchToNode(*workspace_, node);
    return shownFile() == file;
}

void Form1::goToDefinitionCommand() {
    const std::string name = Code1_->wordAtCaret();
    const std::vector<std::string> texts = projectTexts();
    if (name.empty() || texts.empty())
        return;
    const std::size_t shown = shownFile();
    for (std::size_t step = 0; step < texts.size(); ++step) {
        const std::size_t file = (shown + step) % texts.size(); // the nearest one first
        const auto line = declarationLine(texts[file], name);
        if (!line)
            continue;
        const Jump from = {workspace_->project.SelectedKey, Code1_->caret()};
        if (!showFile(file))
            return;
        jumps_.push_back(from);
        if (jumps_.size() > keptJumps)
            jumps_.erase(jumps_.begin());
        Code1_->setCaret({static_cast<long>(*line), 0});
        return;
    }
    setPanel(StatusPanel::message, "No declaration of " + name + " in the project");
}

void Form1::goBackCommand() {
    if (jumps_.empty())
        return;
    const Jump jump = jumps_.back();
    jumps_.pop_back();
    const std::size_t node = workspace_->tree.find(jump.key); // another project may be open by now
    if (node >= 2 && showFile(node - 2))
        Code1_->setCaret(jump.caret);
}

void Form1::findInProjectCommand() {
    const std::string selected = Code1_->selectedText();
    const std::string wanted = selected.empty() ? Code1_->wordAtCaret() : selected;
    const auto found = findInTexts(projectTexts(), wanted, {shownFile(), Code1_->selectionEnd()});
    if (!found) {
        setPanel(StatusPanel::message, wanted.empty() ? "Put the caret on a word to find it in all files"
                                                      : "Not found in the project");
        return;
    }
    if (!showFile(found->place.file))
        return;
    Code1_->select(found->place.offset, found->place.offset + wanted.size());
    setPanel(StatusPanel::message, "Place " + std::to_string(found->number) + " of " +
                                       std::to_string(found->count) + " in the project");
}

void Form1::toggleCommentsCommand() {
    Code1_->replaceSelectedLines(toggleComments);
}

void Form1::duplicateCommand() {
    Code1_->duplicateLines();
}

void Form1::moveLineUpCommand() {
    Code1_->moveLines(-1);
}

void Form1::moveLineDownCommand() {
    Code1_->moveLines(1);
}

void Form1::markWordCommand() {
    const long count = Code1_->markOccurrences(Code1_->wordAtCaret());
    if (count > 0)
        setPanel(StatusPanel::message, "The word is there " + std::to_string(count) + " times");
}

void Form1::matchingWordCommand() {
    if (const auto partner = matchingWord(Code1_->text(), Code1_->selectionEnd()))
        Code1_->select(*partner, *partner);
}

void Form1::foldCommand() {
    Code1_->toggleFold();
}

} // namespace tavrel
