// Saving from the main window: each failure is a message, the text stays in the editor, the old file stays
// whole.
#include "tests/app/main_window.h"
#include "tests/support/failing_files.h"
#include "util/window_placing.h"

#include <cstring>

namespace tavrel {
namespace {

struct SavingWindow : test::MainWindow {
    static constexpr const char* oldText = "program M;\r\n{$I A.INC}\r\nbegin end.\r\n";

    SavingWindow() {
        startWithProject();
        form->Code1().insertText("edited ", {0, 0});
    }
    std::string path() const { return folder.path() + "M.PAS"; }
    std::string newText() const { return std::string("edited ") + oldText; }
    void expectUnsaved(const std::string& message) {
        ASSERT_EQ(messages.shown.size(), 1U);
        EXPECT_EQ(messages.shown[0].text, message + "\r\n" + path());
        EXPECT_EQ(messages.shown[0].title, "Tavrel");
        EXPECT_EQ(messages.shown[0].icon, Icon::critical);
        EXPECT_TRUE(form->Code1().modified());
        EXPECT_EQ(form->Code1().text(), newText());
        messages.shown.clear();
    }
};

TEST_F(SavingWindow, AReadOnlyFile) {
    SetFileAttributesA(path().c_str(), FILE_ATTRIBUTE_READONLY);
    choose(mnuSaveFile);
    expectUnsaved("Path/File access error");
    EXPECT_EQ(folder.read("M.PAS"), oldText);
    SetFileAttributesA(path().c_str(), FILE_ATTRIBUTE_NORMAL);
    choose(mnuSaveFile);
    EXPECT_EQ(folder.read("M.PAS"), newText());
    EXPECT_FALSE(form->Code1().modified());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(SavingWindow, AFileThatAnotherProgramHolds) {
    for (const DWORD share : {DWORD{0}, DWORD{FILE_SHARE_READ}}) {
        HANDLE const holder = CreateFileA(path().c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_NE(holder, INVALID_HANDLE_VALUE);
        choose(mnuSaveFile);
        CloseHandle(holder);
        expectUnsaved("Permission denied");
        EXPECT_EQ(folder.read("M.PAS"), oldText);
        EXPECT_EQ(listFolder(folder.path(), "*.*").size(), 3U) << "nothing else is left in the folder";
    }
}

TEST_F(SavingWindow, AFolderThatIsGone) {
    for (const char* const name : {"M.PAS", "A.INC", "M.TPJ"})
        deleteFile(folder.path() + name);
    std::filesystem::remove(folder.native());
    choose(mnuSaveFile);
    expectUnsaved("Path not found");
    std::filesystem::create_directory(folder.native());
    choose(mnuSaveFile);
    EXPECT_EQ(folder.read("M.PAS"), newText());
}

TEST_F(SavingWindow, AnyFailingCall) {
    // The copies of typed text, which the timer makes, would be calls too; here only the save is looked at.
    form->workspace().rescue.setFolders({"?:\\none\\"});
    test::withEveryFailure([this](test::FailingFiles& files) {
        useFileSystem(nullptr);
        folder.write("M.PAS", oldText);
        form->Code1().insertText("x", {0, 0});
        const std::string text = form->Code1().text();
        useFileSystem(&files);
        messages.shown.clear();
        choose(mnuSaveFile);
        const std::string found = folder.read("M.PAS");
        EXPECT_EQ(form->Code1().text(), text);
        EXPECT_EQ(form->Code1().modified(), files.hasFailed());
        EXPECT_EQ(messages.shown.size(), files.hasFailed() ? 1U : 0U);
        EXPECT_TRUE(found == text || (files.hasFailed() && found == oldText));
        form->Code1().setText("");
        form->Code1().insertText(oldText, {0, 0});
    });
}

TEST_F(SavingWindow, TextThatCannotBeSavedKeepsItsNode) {
    form->workspace().settings.AutoSave = storedTrue;
    SetFileAttributesA(path().c_str(), FILE_ATTRIBUTE_READONLY);
    RECT place = {};
    HWND const tree = form->TV().window();
    SendMessageA(tree, TVM_ENSUREVISIBLE, 0, std::bit_cast<LPARAM>(form->TV().item(3)));
    HTREEITEM item = form->TV().item(3);
    std::memcpy(&place, &item, sizeof item);
    SendMessageA(tree, TVM_GETITEMRECT, TRUE, std::bit_cast<LPARAM>(&place));
    const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    PostMessageA(tree, WM_LBUTTONUP, 0, point);
    SendMessageA(tree, WM_LBUTTONDOWN, MK_LBUTTON, point);
    pump();
    expectUnsaved("Path/File access error");
    EXPECT_EQ(SendMessageA(tree, TVM_GETNEXTITEM, TVGN_CARET, 0), std::bit_cast<LRESULT>(form->TV().item(2)));
    EXPECT_EQ(panel(2), "Current View: M.PAS");
    SetFileAttributesA(path().c_str(), FILE_ATTRIBUTE_NORMAL);
    choose(mnuSaveFile);
    EXPECT_EQ(folder.read("M.PAS"), newText());
    EXPECT_EQ(folder.read("A.INC"), "one\r\ntwo\r\n");
}

TEST_F(SavingWindow, TheTreesPicturesFitTheScreen) {
    HIMAGELIST const list = makeTreeImages();
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(list, &width, &height);
    EXPECT_EQ(ImageList_GetImageCount(list), 3);
    EXPECT_EQ(width, MulDiv(16, screenScale().pixelsPerInchX, 96));
    EXPECT_EQ(height, width);
    ImageList_Destroy(list);
}

} // namespace
} // namespace tavrel
