// saver.exe: makes a running Tavrel save without end, for tests that kill it meanwhile. Writes a line before
// and after each save. Ends when the program does; exit code 0, or 3 for wrong use.
//
//   saver sources FIRST SECOND   two files of the open project in turn, by Save and by a click on the other
//   node (which
//                                saves when the settings say so); each text tells its version in every line
//   saver settings               the settings, by the preferences' Ok, with two font sizes; and the project
//   file
#include "app/resource.h"
#include "tests/acceptance/drive/remote.h"

#include <bit>
#include <cstdio>
#include <stdexcept>
#include <string>

#include <Scintilla.h>

namespace tavrel::saver {
namespace {

constexpr DWORD aMoment = 2; // milliseconds between two looks

/// The program has been killed, which is what this one is for.
struct ProgramGone {};

class Target {
  public:
    Target() : form_(FindWindowA("TavrelForm1", "Tavrel")) {}

    void requireLife() const {
        if (IsWindow(form_) == FALSE)
            throw ProgramGone();
    }
    template <typename Condition> void await(Condition condition) const {
        while (!condition()) {
            requireLife();
            Sleep(aMoment);
        }
    }
    void command(WPARAM identifier) const {
        SendMessageA(form_, WM_COMMAND, identifier, 0);
        requireLife();
    }
    void post(WPARAM identifier) const { PostMessageA(form_, WM_COMMAND, identifier, 0); }
    void setText(const std::string& text) const {
        HWND const pane = FindWindowExA(GetDlgItem(form_, Form1_Code1), nullptr, "Scintilla", nullptr);
        const drive::RemoteMemory memory(pane, text.size() + 1);
        memory.write(text.c_str(), text.size() + 1);
        SendMessageA(pane, SCI_SETTEXT, 0, memory.address());
        requireLife();
    }
    void clickNode(const std::string& name) const {
        HWND const tree = GetDlgItem(form_, Form1_TV);
        for (const drive::TreeEntry& entry : drive::treeEntries(tree)) {
            if (entry.text == name)
                clickEntry(tree, entry);
        }
        await([&] {
            return drive::statusText(GetDlgItem(form_, Form1_StatusBar1), 1) == "Current View: " + name;
        });
    }

  private:
    static void clickEntry(HWND tree, const drive::TreeEntry& entry) {
        const drive::RemoteMemory memory(tree, sizeof(RECT));
        memory.write(&entry.item, sizeof entry.item);
        SendMessageA(tree, TVM_GETITEMRECT, TRUE, memory.address());
        RECT place = {};
        memory.read(&place, sizeof place);
        const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
        PostMessageA(tree, WM_LBUTTONDOWN, MK_LBUTTON, point);
        PostMessageA(tree, WM_LBUTTONUP, 0, point);
    }

    HWND form_;
};

/// A text of a few to some eighty kilobytes; `file` is a main file or an include by its ending.
std::string versionOf(const std::string& file, int version) {
    const int lines = 10 + version * 397 % 2000;
    const bool isMain = file.ends_with(".PAS");
    std::string text;
    for (int line = 0; line < lines; ++line)
        text += "{ version " + std::to_string(version) + " of " + std::to_string(lines) + " lines }\r\n";
    return text + (isMain ? "{$I A.INC}\r\nbegin\r\nend.\r\n" : "{ the end }\r\n");
}

void say(const char* what, const std::string& file, int version) {
    std::printf("%s %s %d\n", what, file.c_str(), version);
}

[[noreturn]] void saveSources(const Target& target, const std::string& first, const std::string& second) {
    constexpr int savesBetweenClicks = 3;
    std::string shown = first;
    std::string other = second;
    target.clickNode(shown);
    for (int version = 1;; ++version) {
        target.setText(versionOf(shown, version));
        say("asked", shown, version);
        if (version % savesBetweenClicks != 0)
            target.command(mnuSaveFile);
        else
            target.clickNode(other);
        say("done", shown, version);
        if (version % savesBetweenClicks == 0)
            std::swap(shown, other);
    }
}

[[noreturn]] void saveSettings(const Target& target) {
    for (int version = 1;; ++version) {
        HWND dialog = nullptr;
        target.post(mnupreferences);
        target.await([&] {
            dialog = FindWindowA("#32770", "Preferences");
            return dialog != nullptr && IsWindowVisible(dialog) != FALSE;
        });
        const char* const size = version % 2 == 0 ? "10" : "12";
        SendMessageA(GetDlgItem(dialog, Form4_cmbFontSize), WM_SETTEXT, 0, std::bit_cast<LPARAM>(size));
        PostMessageA(dialog, WM_COMMAND, Form4_Command1, 0);
        target.await([&] { return IsWindow(dialog) == FALSE; });
        say("done", "settings", version);
        target.command(mnuSavePrj);
        say("done", "project", version);
    }
}

void run(int count, char** arguments) {
    const Target target;
    target.requireLife();
    const std::string what = count > 1 ? arguments[1] : "";
    if (what == "sources" && count == 4)
        saveSources(target, arguments[2], arguments[3]);
    if (what == "settings" && count == 2)
        saveSettings(target);
    throw std::invalid_argument("sources FIRST SECOND, or settings?");
}

} // namespace
} // namespace tavrel::saver

int main(int count, char** arguments) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    try {
        tavrel::saver::run(count, arguments);
    } catch (const tavrel::saver::ProgramGone&) {
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "saver: %s\n", error.what());
    }
    return 3;
}
