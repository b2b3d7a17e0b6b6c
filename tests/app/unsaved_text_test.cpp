// Text that nobody saved, on every path that takes it: a copy stays.
#include "tests/app/main_window.h"

#include <cstring>
#include <shlobj.h>
#include <vector>

namespace tavrel {
namespace {

struct UnsavedText : test::MainWindow {
    /// The texts of the rescue copies.
    std::vector<std::string> rescued() {
        std::vector<std::string> texts;
        for (const FolderEntry& entry : listFolder(program.path() + "rescued\\", "*"))
            texts.push_back(program.read("rescued\\" + entry.name));
        return texts;
    }
    void type(const std::string& text) { form->Code1().insertText(text, {0, 0}); }
    std::string typedText() { return "typed" + folder.read("M.PAS"); }
    void drop(const std::string& path) {
        HGLOBAL const memory = GlobalAlloc(GHND, sizeof(DROPFILES) + path.size() + 2);
        auto* const bytes = static_cast<char*>(GlobalLock(memory));
        DROPFILES header = {};
        header.pFiles = sizeof header;
        std::memcpy(bytes, &header, sizeof header);
        path.copy(bytes + sizeof header, path.size());
        GlobalUnlock(memory);
        SendMessageA(form->window(), WM_DROPFILES, std::bit_cast<WPARAM>(memory), 0);
        pump();
    }
};

using Texts = std::vector<std::string>;

TEST_F(UnsavedText, IsKeptWhenTheProgramEnds) {
    for (const bool byMenu : {true, false}) {
        startWithProject();
        type("typed");
        const std::string text = form->Code1().text();
        HWND const window = form->window();
        if (byMenu)
            choose(mnuExit);
        else
            SendMessageA(window, WM_CLOSE, 0, 0);
        pump();
        EXPECT_FALSE(IsWindow(window));
        EXPECT_TRUE(messages.shown.empty()) << "the end asks nothing";
        EXPECT_EQ(rescued(), Texts{text});
        form.reset();
        std::filesystem::remove_all(program.native() / "rescued");
    }
}

TEST_F(UnsavedText, IsKeptWhenWindowsEnds) {
    startWithProject();
    type("typed");
    EXPECT_NE(SendMessageA(form->window(), WM_QUERYENDSESSION, 0, 0), 0);
    SendMessageA(form->window(), WM_ENDSESSION, FALSE, 0);
    EXPECT_TRUE(rescued().empty()) << "it goes on after all";
    SendMessageA(form->window(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(rescued(), Texts{typedText()});
}

TEST_F(UnsavedText, IsKeptWhenAnotherFileIsOpened) {
    startWithProject();
    type("typed");
    const std::string text = typedText();
    choose(mnurecent_0);
    EXPECT_EQ(rescued(), Texts{text});
    EXPECT_NE(panel(3).find("rescued\\"), std::string::npos) << panel(3);
    EXPECT_EQ(form->Code1().text(), folder.read("M.PAS"));
}

TEST_F(UnsavedText, IsKeptWhenTheEditorIsCleared) {
    startWithProject();
    type("typed");
    choose(mnuClear);
    EXPECT_EQ(rescued(), Texts{typedText()});
}

TEST_F(UnsavedText, ADropAsks) {
    startWithProject();
    type("typed");
    messages.answers = {Answer::cancel};
    drop(folder.path() + "M.PAS");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text, "This file has changed. Save it?");
    EXPECT_EQ(form->Code1().text(), typedText());
    messages.answers = {Answer::yes};
    const std::string text = typedText();
    drop(folder.path() + "M.PAS");
    EXPECT_EQ(folder.read("M.PAS"), text);
    type("more");
    messages.answers = {Answer::no};
    drop(folder.path() + "M.PAS");
    EXPECT_EQ(form->Code1().text(), text);
    EXPECT_EQ(rescued(), Texts{"more" + text});
}

TEST_F(UnsavedText, HasACopyWhileItIsTyped) {
    startWithProject();
    tick();
    EXPECT_TRUE(rescued().empty()) << "nothing was typed";
    type("typed");
    tick();
    EXPECT_EQ(rescued(), Texts{typedText()});
    type("more");
    tick();
    EXPECT_EQ(rescued(), Texts{typedText()}) << "the next one is due ten seconds later";
    choose(mnuSaveFile);
    EXPECT_TRUE(rescued().empty()) << "a saved text needs none";
}

TEST_F(UnsavedText, ChangedLinesAreMarked) {
    startWithProject();
    form->Code1().insertText("x", {1, 0});
    choose(mnuSplit);
    EXPECT_NE(SendMessageA(editorPane(0), SCI_GETMARGINWIDTHN, 1, 0), 0);
    EXPECT_NE(SendMessageA(editorPane(0), SCI_GETMARGINMASKN, 1, 0) & (1 << SC_MARKNUM_HISTORY_MODIFIED), 0);
    for (const int pane : {0, 1})
        EXPECT_EQ(SendMessageA(editorPane(pane), SCI_GETCHANGEHISTORY, 0, 0),
                  static_cast<LRESULT>(showChanges));
    choose(mnuSaveFile);
    choose(mnurecent_0);
    EXPECT_EQ(SendMessageA(editorPane(0), SCI_GETCHANGEHISTORY, 0, 0), static_cast<LRESULT>(showChanges));
}

TEST_F(UnsavedText, AnotherProgramsChangeIsSaidOnActivationAndLoadedByAKey) {
    startWithProject();
    folder.write("M.PAS", "from elsewhere\r\n");
    SendMessageA(form->window(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(panel(3), "M.PAS was changed by another program; Ctrl+R loads it");
    EXPECT_TRUE(messages.shown.empty());
    choose(keyReload);
    EXPECT_EQ(form->Code1().text(), "from elsewhere\r\n");
    SendMessageA(form->window(), WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(panel(3), "");
}

TEST_F(UnsavedText, UndoStopsAtTheLastSaveWhateverTheKey) {
    startWithProject();
    type("typed");
    choose(mnuSaveFile);
    const std::string text = form->Code1().text();
    for (const int pane : {0, 1}) {
        hold(shiftState::alt);
        SendMessageA(editorPane(pane), WM_SYSKEYDOWN, VK_BACK, 0);
        hold(0);
        choose(keyUndo);
        EXPECT_EQ(form->Code1().text(), text);
        if (pane == 0)
            choose(mnuSplit);
    }
    type("more");
    choose(keyUndo);
    EXPECT_EQ(form->Code1().text(), text);
}

} // namespace
} // namespace tavrel
