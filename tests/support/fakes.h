// Stand-ins for the user and for the world outside.
#pragma once

#include "project/workspace.h"
#include "tests/support/temporary_folder.h"
#include "util/process_runner.h"
#include "util/shell.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavrel::test {

/// Remembers what was shown and answers in order; without an answer left it says Ok.
class FakeMessageBoxes : public MessageBoxes {
  public:
    struct Shown {
        std::string text;
        std::string title;
        Icon icon;
        Buttons buttons;
    };
    std::vector<Shown> shown;
    std::deque<Answer> answers;

    Answer show(const std::string& text, const std::string& title, Icon icon, Buttons buttons) override {
        shown.push_back({text, title, icon, buttons});
        if (answers.empty())
            return Answer::ok;
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

class FakeFileDialogs : public FileDialogs {
  public:
    std::string answer;                    ///< what the user chooses; "" is Cancel
    std::optional<std::string> saveAnswer; ///< in the save dialog, when it is another
    std::vector<OpenDialogRequest> opened;
    std::vector<SaveDialogRequest> saved;

    std::string ShowOpenDialog(const OpenDialogRequest& request) override {
        opened.push_back(request);
        return answer;
    }
    std::string showSaveDialog(const SaveDialogRequest& request) override {
        saved.push_back(request);
        return saveAnswer.value_or(answer);
    }
    std::string BrowseForFolder(const std::string&) override { return answer; }
};

class FakeRegistry : public ClassesRegistry {
  public:
    struct Written {
        std::string key;
        std::string valueName;
        std::string text;
        bool operator==(const Written&) const = default;
    };
    std::vector<Written> written;
    bool refuses = false;

    std::string readText(const std::string&, const std::string&) override { return {}; }
    bool createKey(const std::string&) override { return !refuses; }
    void writeText(const std::string& key, const std::string& valueName, const std::string& text) override {
        written.push_back({key, valueName, text});
    }
};

/// Runs a function where a process would be started.
class FakeProcessRunner : public ProcessRunner {
  public:
    struct Run {
        std::string commandLine;
        bool showWindow;
        bool wait;
    };
    std::vector<Run> runs;
    std::function<void()> work = [] {};
    bool starts = true; ///< whether programs can be started
    int brokenOff = 0;

    bool started() const override { return starts; }
    void breakOff() override { ++brokenOff; }
    void ShellAndWait(const std::string& commandLine, bool showWindow, bool wait) override {
        runs.push_back({commandLine, showWindow, wait});
        work();
    }
};

class FakeShell : public Shell {
  public:
    struct Execution {
        void* owner;
        ShellRequest request;
    };
    std::vector<Execution> executed;
    std::vector<std::string> helpShown;

    void execute(void* owner, const ShellRequest& request) override { executed.push_back({owner, request}); }
    void showHelp(const std::string& path) override { helpShown.push_back(path); }
};

class FakeDisplay : public MainWindowDisplay {
  public:
    std::map<StatusPanel, std::string> panels;
    int projectCommandsEnabled = 0;
    int recentFilesShown = 0;
    bool waitPointer = false;

    void setPanel(StatusPanel panel, const std::string& text) override { panels[panel] = text; }
    void enableProjectCommands() override { ++projectCommandsEnabled; }
    void showRecentFiles() override { ++recentFilesShown; }
    void setWaitPointer(bool wait) override { waitPointer = wait; }
};

/// An editor without a window: text, caret, flags.
class FakeEditor : public SourceEditor {
  public:
    std::string content;
    EditorPosition caretPosition;
    bool changed = false;
    long highlighted = -1;
    int focused = 0;
    std::vector<bool> undoCleared; ///< by each save

    std::string text() const override { return content; }
    void setText(std::string_view text) override {
        content = text;
        changed = true;
        highlighted = -1;
        caretPosition = {};
    }
    void insertFile(const std::string& path, EditorPosition) override {
        content = readWholeFile(path) + content;
        changed = true;
    }
    void saveFile(const std::string& path, bool clearUndo) override {
        writeWholeFile(path, content);
        changed = false;
        undoCleared.push_back(clearUndo);
    }
    void insertText(std::string_view text, EditorPosition position) override {
        std::size_t start = 0;
        for (long i = 0; i < position.line; ++i)
            start = content.find('\n', start) + 1;
        content.insert(start + static_cast<std::size_t>(position.column), text);
        changed = true;
    }
    bool modified() const override { return changed; }
    void setModified(bool modified) override { changed = modified; }
    long lineCount() const override {
        long lines = 1;
        for (const char c : content)
            lines += c == '\n' ? 1 : 0;
        return lines;
    }
    std::string lineText(long line) const override {
        std::size_t start = 0;
        for (long i = 0; i < line; ++i) {
            start = content.find('\n', start);
            if (start == std::string::npos)
                return {};
            ++start;
        }
        std::string text = content.substr(start, content.find('\n', start) - start);
        if (!text.empty() && text.back() == '\r')
            text.pop_back();
        return text;
    }
    EditorSelection selection() const override { return {caretPosition, caretPosition}; }
    EditorPosition caret() const override { return caretPosition; }
    void setCaret(EditorPosition position) override { caretPosition = position; }
    std::string wordAtCaret() const override { return {}; }
    long highlightedLine() const override { return highlighted; }
    void setHighlightedLine(long line) override { highlighted = line; }
    bool canUndo() const override { return false; }
    bool canRedo() const override { return false; }
    bool canCut() const override { return false; }
    bool canCopy() const override { return false; }
    bool canPaste() const override { return false; }
    void undo() override {}
    void redo() override {}
    void cut() override {}
    void copy() override {}
    void paste() override {}
    void deleteSelection() override {}
    void giveFocus() override { ++focused; }
};

/// A workspace over all the stand-ins, with a program folder and a project folder of its own.
struct TestWorkspace {
    TemporaryFolder program;
    TemporaryFolder folder;
    FakeEditor editor;
    FakeDisplay display;
    FakeMessageBoxes messages;
    FakeFileDialogs dialogs;
    FakeRegistry registry;
    FakeProcessRunner processes;
    Workspace workspace{editor, display, messages, dialogs, registry, program.path(), program.path()};

    TestWorkspace() { workspace.settings = SetDefaultSettings(program.path()); }
};

} // namespace tavrel::test
