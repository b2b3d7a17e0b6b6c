// The dialogs, the shell and the manifest of Windows themselves, behind the seams that other tests stand in
// for.
#include "tests/app/main_window.h"
#include "util/windows_dialogs.h"
#include "util/windows_shell.h"

#include <commctrl.h>
#include <dlgs.h>
#include <shlobj.h>

namespace tavrel {
namespace {

struct SystemDialogs : test::MainWindow {
    WindowsFileDialogs system;
    std::string filter = "Pascal files (*.pas) | *.pas"; ///< of the open dialog

    SystemDialogs() {
        start();
        system.setOwner(form->window());
    }
    /// What the open dialog gives back when its user names this path; `look` sees the dialog first.
    std::string openNaming(
        const std::string& path, const std::function<void(HWND)>& look = [](HWND) {}) {
        whenDialogOpens("Open the test", [&](HWND dialog) {
            look(dialog);
            SetDlgItemTextA(dialog, GetDlgItem(dialog, edt1) != nullptr ? edt1 : cmb13, path.c_str());
            SendMessageA(dialog, WM_COMMAND, path.empty() ? IDCANCEL : IDOK, 0);
            if (IsWindow(dialog) != 0 && IsWindowVisible(dialog) != 0)
                PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0); // it did not take the name
        });
        const OpenDialogRequest request = {filter, "Open the test", folder.path()};
        const std::string answer = system.ShowOpenDialog(request);
        stopWaitingForDialog();
        return answer;
    }
    /// What the save dialog gives back when its user types this name.
    std::string saveNaming(const std::string& name, const std::string& extension) {
        whenDialogOpens("Save the test", [&](HWND dialog) {
            SetDlgItemTextA(dialog, GetDlgItem(dialog, edt1) != nullptr ? edt1 : cmb13, name.c_str());
            SendMessageA(dialog, WM_COMMAND, IDOK, 0);
            if (IsWindow(dialog) != 0 && IsWindowVisible(dialog) != 0)
                PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
        });
        const std::string answer =
            system.showSaveDialog({"All files | *.*", "Save the test", folder.path(), "", extension});
        stopWaitingForDialog();
        return answer;
    }
    std::string browse(const std::function<void(HWND)>& work) {
        whenDialogOpens("Browse for Folder", work);
        const std::string answer = system.BrowseForFolder("Select the test's folder");
        stopWaitingForDialog();
        return answer;
    }
    static std::string selectedIn(HWND dialog) {
        HWND const tree = FindWindowExA(dialog, nullptr, WC_TREEVIEWA, nullptr);
        std::string text(MAX_PATH, '\0');
        TVITEMA item = {};
        item.mask = TVIF_TEXT;
        item.hItem = TreeView_GetSelection(tree);
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        SendMessageA(tree, TVM_GETITEMA, 0, std::bit_cast<LPARAM>(&item));
        return text.c_str();
    }
    /// On a busy machine Wine's dialog may stay on the desktop when it is asked once, and finds the folder
    /// when it is asked again. A user sees what is selected before pressing OK, and so does this.
    static void selectFolder(HWND dialog, const std::string& path) {
        const std::string name = path.substr(path.rfind('\\') + 1);
        constexpr int attempts = 20;
        for (int i = 0; i < attempts && selectedIn(dialog) != name; ++i)
            SendMessageA(dialog, BFFM_SETSELECTIONA, TRUE, std::bit_cast<LPARAM>(path.c_str()));
        EXPECT_EQ(selectedIn(dialog), name);
    }
    /// Makes a file whose whole path has this many characters.
    std::string fileWithPathOf(std::size_t length) {
        const std::string deep = folder.makeFolder(std::string(100, 'd'));
        return folder.write(
            deep.substr(folder.path().size()) + std::string(length - deep.size() - 4, 'f') + ".PAS", "x");
    }
};

TEST_F(SystemDialogs, TheOpenDialogGivesTheChosenPathBack) {
    const std::string path = folder.path() + "M.PAS";
    EXPECT_EQ(openNaming(path,
                         [&](HWND dialog) {
                             EXPECT_EQ(GetWindow(dialog, GW_OWNER), form->window());
                             EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, chx1))) << "no read-only box";
                         }),
              path);
}

TEST_F(SystemDialogs, ALonePatternIsTheOneKindOfFileInTheList) {
    for (const char* const lone : {"*.exe", "M.PAS"}) {
        filter = lone;
        LRESULT kinds = 0;
        std::string kind(100, '\0');
        openNaming("", [&](HWND dialog) {
            kinds = SendDlgItemMessageA(dialog, cmb1, CB_GETCOUNT, 0, 0);
            SendDlgItemMessageA(dialog, cmb1, CB_GETLBTEXT, 0, std::bit_cast<LPARAM>(kind.data()));
        });
        EXPECT_EQ(kinds, 1) << lone;
        EXPECT_STREQ(kind.c_str(), lone);
    }
}

TEST_F(SystemDialogs, ANameThatIsSavedGetsItsEnding) {
    EXPECT_EQ(saveNaming("game", "tpj"), folder.path() + "game.tpj");
    EXPECT_EQ(saveNaming("game.xyz", "tpj"), folder.path() + "game.xyz");
    EXPECT_EQ(saveNaming("game", ""), folder.path() + "game");
}

TEST_F(SystemDialogs, CancelInTheOpenDialogGivesNothing) {
    EXPECT_EQ(openNaming(""), "");
}

TEST_F(SystemDialogs, TheLongestPathOfTheOpenDialogHas254Characters) {
    const std::string longest = fileWithPathOf(254);
    EXPECT_EQ(openNaming(longest), longest);
    EXPECT_EQ(openNaming(fileWithPathOf(255)), "");
}

TEST_F(SystemDialogs, TheFolderPickerGivesTheFolderWithoutABackslash) {
    const std::string wanted = folder.path().substr(0, folder.path().size() - 1);
    EXPECT_EQ(browse([&](HWND dialog) {
                  selectFolder(dialog, wanted);
                  SendMessageA(dialog, WM_COMMAND, IDOK, 0);
              }),
              wanted);
}

TEST_F(SystemDialogs, CancelInTheFolderPickerGivesNothing) {
    EXPECT_EQ(browse([](HWND dialog) { SendMessageA(dialog, WM_COMMAND, IDCANCEL, 0); }), "");
}

TEST_F(SystemDialogs, AProgramThatIsNotThereIsNoFailureOfTheShell) {
    WindowsShell real;
    ShellRequest request;
    request.file = folder.path() + "no.exe";
    EXPECT_NO_THROW(real.execute(nullptr, request));
}

TEST_F(SystemDialogs, TheManifestAsksForVisualStylesAndTheScaleOfEachScreen) {
    HRSRC const resource = FindResourceA(nullptr, std::bit_cast<LPCSTR>(ULONG_PTR{1}),
                                         std::bit_cast<LPCSTR>(ULONG_PTR{24})); // the program's manifest
    ASSERT_NE(resource, nullptr);
    const std::string manifest(static_cast<const char*>(LockResource(LoadResource(nullptr, resource))),
                               SizeofResource(nullptr, resource));
    EXPECT_NE(manifest.find("Microsoft.Windows.Common-Controls\" version=\"6"), std::string::npos);
    EXPECT_NE(manifest.find("PerMonitorV2"), std::string::npos);
    EXPECT_NE(manifest.find(">true</dpiAware>"), std::string::npos) << "for Windows 7 and 8";
    EXPECT_NE(manifest.find("asInvoker"), std::string::npos);
}

} // namespace
} // namespace tavrel
