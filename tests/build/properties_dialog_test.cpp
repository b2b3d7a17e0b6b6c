// The project properties, opened from the main window.
#include "tests/app/main_window.h"

namespace tavrel {
namespace {

struct PropertiesDialog : test::MainWindow {
    PropertiesDialog() { startWithProject(); }

    void with(std::function<void(HWND)> work) {
        whenDialogOpens("Project properties", std::move(work));
        choose(mnuProp);
    }
    static void press(HWND dialog, int button) { SendDlgItemMessageA(dialog, button, BM_CLICK, 0, 0); }
    static std::string text(HWND dialog, int field) {
        std::string text(256, '\0');
        text.resize(GetDlgItemTextA(dialog, field, text.data(), static_cast<int>(text.size())));
        return text;
    }
    /// Types a text into a field and leaves it.
    static void enter(HWND dialog, int field, const char* words) {
        SetDlgItemTextA(dialog, field, words);
        SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(field, EN_KILLFOCUS),
                     std::bit_cast<LPARAM>(GetDlgItem(dialog, field)));
    }
    const Project& project() { return form->workspace().project; }
};

TEST_F(PropertiesDialog, ShowsTheProjectWithItsLabels) {
    with([](HWND dialog) {
        EXPECT_EQ(text(dialog, Form3_Text1), "Demo");
        EXPECT_EQ(text(dialog, Form3_Text3), "2E9B");
        EXPECT_EQ(text(dialog, Form3_Text4), "D200");
        std::vector<std::string> labels;
        for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr;
             child = GetWindow(child, GW_HWNDNEXT)) {
            std::string words(100, '\0');
            words.resize(static_cast<std::size_t>(GetWindowTextA(child, words.data(), 100)));
            labels.push_back(words);
        }
        EXPECT_EQ(labels, (std::vector<std::string>{
                              "Project name:", "Demo", "Proigram Start Address: (Min:  2E9B)", "2E9B",
                              "Program End Address: (Max: F93C)", "D200", "Ok", "Cancel"}));
        press(dialog, Form3_Command2);
    });
}

TEST_F(PropertiesDialog, OkTakesNameAndAddresses) {
    with([](HWND dialog) {
        enter(dialog, Form3_Text1, "New name");
        enter(dialog, Form3_Text3, "4000");
        enter(dialog, Form3_Text4, "C000");
        press(dialog, Form3_Command1);
    });
    EXPECT_EQ(project().Name, "New name");
    EXPECT_EQ(project().StartAddress, 0x4000);
    EXPECT_EQ(project().EndAddress, static_cast<std::int16_t>(0xC000));
    EXPECT_EQ(form->workspace().tree.node(1).text, "New name");
    std::string shown(100, '\0');
    TVITEMA item = {};
    item.mask = TVIF_TEXT | TVIF_HANDLE;
    item.hItem = form->TV().item(1);
    item.pszText = shown.data();
    item.cchTextMax = 100;
    SendMessageA(form->TV().window(), TVM_GETITEMA, 0, std::bit_cast<LPARAM>(&item));
    EXPECT_STREQ(item.pszText, "New name");
    EXPECT_EQ(folder.read("M.TPJ"), "Demo\r\n2E9B\r\nD200\r\nM.PAS\r\n") << "saving is another command";
}

TEST_F(PropertiesDialog, AddressesOutsideTheirRangesBecomeTheLimits) {
    const std::vector<std::array<const char*, 2>> cases = {{"0100", "FFFF"}, {"8000", "7000"}, {"zz", "xyz"}};
    for (const auto& [start, end] : cases) {
        with([&](HWND dialog) {
            enter(dialog, Form3_Text3, start);
            enter(dialog, Form3_Text4, end);
            press(dialog, Form3_Command1);
        });
        EXPECT_EQ(project().StartAddress, 0x2E9B) << start;
        EXPECT_EQ(project().EndAddress, static_cast<std::int16_t>(0xF93C)) << end;
    }
}

TEST_F(PropertiesDialog, LeavingAFieldFillsIt) {
    with([](HWND dialog) {
        enter(dialog, Form3_Text1, "");
        EXPECT_EQ(text(dialog, Form3_Text1), "Project");
        enter(dialog, Form3_Text3, "100");
        EXPECT_EQ(text(dialog, Form3_Text3), "1000") << "on the right";
        enter(dialog, Form3_Text4, "");
        EXPECT_EQ(text(dialog, Form3_Text4), "0000");
        enter(dialog, Form3_Text4, "F0000");
        EXPECT_EQ(text(dialog, Form3_Text4), "F0000");
        enter(dialog, Form3_Text3, "4");
        enter(dialog, Form3_Text4, "D");
        press(dialog, Form3_Command1);
    });
    EXPECT_EQ(project().Name, "Project");
    EXPECT_EQ(project().StartAddress, 0x4000);
    EXPECT_EQ(project().EndAddress, static_cast<std::int16_t>(0xD000));
}

TEST_F(PropertiesDialog, CancelChangesNothing) {
    with([](HWND dialog) {
        enter(dialog, Form3_Text1, "Other");
        enter(dialog, Form3_Text3, "4000");
        press(dialog, Form3_Command2);
    });
    EXPECT_EQ(project().Name, "Demo");
    EXPECT_EQ(project().StartAddress, 0x2E9B);
    EXPECT_EQ(form->workspace().tree.node(1).text, "Demo");
}

} // namespace
} // namespace tavrel
