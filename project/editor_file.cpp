#include "project/editor_file.h"

#include "project/workspace.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/text.h"

#include <optional>
#include <stdexcept>

namespace tavrel {

namespace {

bool isSamePath(const std::string& first, const std::string& second) {
    return upperCase(first) == upperCase(second);
}

/// Nothing when the file is not there or cannot be read.
std::optional<std::string> contentOf(const std::string& path) {
    try {
        if (FileExists(path))
            return readWholeFile(path);
    } catch (const RuntimeError&) {
        // Who writes it next hears of that.
    }
    return std::nullopt;
}

RescueCopies& rescueCopies(Workspace& workspace) {
    if (!workspace.rescue.hasFolders())
        workspace.rescue.setFolders({workspace.AppDir + "rescued\\"});
    return workspace.rescue;
}

std::string ownName(const Workspace& workspace) {
    const std::string name = GetFileName(workspace.editorFile.path);
    return name.empty() ? "Unnamed.pas" : name;
}

void say(Workspace& workspace, const std::string& text) {
    workspace.display.setPanel(StatusPanel::message, text);
}

/// Keeps what the file holds unless it is `text` or, with `known`, what it held when it was loaded or saved.
/// Gives back the copy's path, "" when none was made.
std::string rescueContent(Workspace& workspace, const std::string& path, std::string_view text,
                          const EditorFile* known) {
    const std::optional<std::string> content = contentOf(path);
    if (!content || content->empty() || *content == text)
        return {};
    if (known != nullptr && digestOf(*content) == known->digest)
        return {};
    return rescueCopies(workspace).keep(GetFileName(path), *content);
}

} // namespace

std::uint64_t digestOf(std::string_view bytes) {
    std::uint64_t digest = 0xCBF29CE484222325; // FNV-1a
    for (const char byte : bytes)
        digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    return digest;
}

void loadIntoEditor(Workspace& workspace, const std::string& path) {
    SourceEditor& editor = workspace.editor;
    const std::string former = editor.text();
    const bool modified = editor.modified();
    editor.setText("");
    try {
        editor.insertFile(path, {0, 0});
    } catch (const RuntimeError&) {
        editor.setText(former);
        editor.setModified(modified);
        throw;
    }
    editor.setModified(false);
    workspace.editorFile = {path, digestOf(editor.text())};
    rescueCopies(workspace).dropTypingCopy(); // of the text before, which was saved, kept or given up
}

void leaveEditorFile(Workspace& workspace) {
    workspace.editor.setText("");
    workspace.editor.setModified(false);
    workspace.editorFile = {};
    rescueCopies(workspace).dropTypingCopy();
}

void saveEditorText(Workspace& workspace, const std::string& path, bool clearUndo) {
    EditorFile& own = workspace.editorFile;
    const bool isOwn = isSamePath(path, own.path);
    const bool mayBeOwn =
        isOwn || GetFilePath(path).empty(); // a bare name, in whatever folder is the current one
    const std::string text = workspace.editor.text();
    const std::string former = rescueContent(workspace, path, text, mayBeOwn ? &own : nullptr);
    workspace.editor.saveFile(path, clearUndo);
    std::string copy;
    if (isOwn || own.path.empty()) {
        own = {path, digestOf(text)};
        rescueCopies(workspace).dropTypingCopy();
    } else if (contentOf(own.path) == text) {
        own.digest = digestOf(text);
        rescueCopies(workspace).dropTypingCopy();
    } else {
        copy = rescueCopies(workspace).keep(ownName(workspace), text); // its own file has not got it
    }
    say(workspace, "Saved " + GetFileName(path) +
                       (former.empty() ? std::string() : "; what it held before is in " + former) +
                       (copy.empty() ? std::string() : "; the text is also in " + copy));
}

bool rescueEditorText(Workspace& workspace) {
    if (!workspace.editor.modified())
        return true;
    const std::string text = workspace.editor.text();
    if (text.empty())
        return true;
    const std::string copy = rescueCopies(workspace).keep(ownName(workspace), text);
    if (copy.empty()) {
        say(workspace, "The unsaved text could not be kept: no folder takes a copy");
        return false;
    }
    workspace.rescue.dropTypingCopy();
    say(workspace, "The unsaved text is kept in " + copy);
    return true;
}

void rescueEditorTextOrStop(Workspace& workspace) {
    if (!rescueEditorText(workspace))
        throw std::runtime_error(
            "The text in the editor has not been saved, and a copy of it cannot be written."
            "\r\nSave it first (Ctrl+S).");
}

void copyTypedText(Workspace& workspace) {
    const std::string text = workspace.editor.text();
    if (!text.empty())
        rescueCopies(workspace).keepWhileTyping(ownName(workspace), text);
}

void replaceFile(Workspace& workspace, const std::string& path, std::string_view bytes) {
    const std::string copy = rescueContent(workspace, path, bytes, nullptr);
    writeWholeFile(path, bytes);
    if (!copy.empty())
        say(workspace, "What " + GetFileName(path) + " held before is in " + copy);
}

DiskChange changeOnDisk(const Workspace& workspace) {
    const EditorFile& own = workspace.editorFile;
    if (own.path.empty())
        return DiskChange::none;
    if (!FileExists(own.path))
        return DiskChange::gone;
    const std::optional<std::string> content = contentOf(own.path);
    return !content || digestOf(*content) == own.digest ? DiskChange::none : DiskChange::changed;
}

std::string diskChangeNotice(const Workspace& workspace) {
    switch (changeOnDisk(workspace)) {
    case DiskChange::changed:
        return ownName(workspace) + " was changed by another program; Ctrl+R loads it";
    case DiskChange::gone:
        return ownName(workspace) + " is no longer on the disk; Ctrl+S writes it";
    case DiskChange::none:
        break;
    }
    return {};
}

void reloadEditorFile(Workspace& workspace) {
    const std::string path = workspace.editorFile.path;
    if (path.empty())
        return;
    const EditorPosition caret = workspace.editor.caret();
    if (!FileExists(path))
        throw RuntimeError(RuntimeErrorNumber::fileNotFound, path);
    const bool modified = workspace.editor.modified();
    rescueEditorTextOrStop(workspace);
    loadIntoEditor(workspace, path);
    workspace.editor.setCaret(caret);
    if (!modified)
        say(workspace, "Loaded " + GetFileName(path) + " again");
}

} // namespace tavrel
