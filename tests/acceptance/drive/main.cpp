// drive.exe: uses a running Tavrel as its user would, from the command line. Exit codes: 0 done, 1 the
// program said no, 2 it did not come to the awaited state in time, 3 wrong use.
#include "app/command_table.h"
#include "app/resource.h"
#include "tests/acceptance/drive/input.h"
#include "tests/acceptance/drive/remote.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <Scintilla.h>

namespace tavrel::drive {
namespace {

struct TimedOut : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    std::vector<std::string> words; ///< verb and its arguments
    DWORD timeout = 60'000;         ///< milliseconds
    bool key = false;               ///< press the shortcut instead of choosing from the menu
    bool time = false;              ///< print how long it took
    bool autoexec = false;          ///< check the box of the New Project dialog
};

/// Asks again and again until the condition holds or the time is over.
void waitUntil(const Options& options, const char* what, const std::function<bool()>& condition) {
    const ULONGLONG end = GetTickCount64() + options.timeout;
    while (!condition()) {
        if (GetTickCount64() > end)
            throw TimedOut(std::string("timed out waiting for ") + what);
        Sleep(20);
    }
}

HWND mainWindow(const Options& options) {
    HWND window = nullptr;
    waitUntil(options, "the main window", [&] {
        window = FindWindowA("TavrelForm1", "Tavrel");
        return window != nullptr && IsWindowVisible(window) != 0;
    });
    return window;
}

HWND progressWindow() {
    return FindWindowA("#32770", "Compilation");
}

HWND editorPane(HWND form) {
    return FindWindowExA(GetDlgItem(form, Form1_Code1), nullptr, "Scintilla", nullptr);
}

/// A message box that has not got its words yet: its window is there before what stands in it.
bool isUnfinished(HWND box) {
    HWND const words = GetDlgItem(box, 0xFFFF);
    return words == nullptr ? GetWindow(box, GW_CHILD) == nullptr : windowText(words).empty();
}

/// The message box or file dialog that is up, if any.
HWND dialogBox() {
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, "#32770", nullptr)) != nullptr) {
        if (IsWindowVisible(window) != 0 && window != progressWindow() && !isUnfinished(window))
            return window;
    }
    return nullptr;
}

std::optional<UINT> menuState(HMENU menu, UINT identifier) {
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        MENUITEMINFOA item = {};
        item.cbSize = sizeof item;
        item.fMask = MIIM_ID | MIIM_SUBMENU | MIIM_STATE;
        GetMenuItemInfoA(menu, static_cast<UINT>(i), TRUE, &item);
        if (item.wID == identifier)
            return item.fState;
        if (item.hSubMenu != nullptr) {
            if (const auto state = menuState(item.hSubMenu, identifier))
                return state;
        }
    }
    return std::nullopt;
}

const CommandRow& commandNamed(const std::string& name) {
    const CommandRow* const row = findCommand(name.c_str());
    if (row == nullptr)
        throw std::invalid_argument("no command is named " + name);
    return *row;
}

void pressKey(HWND form, const Shortcut& shortcut) {
    SetForegroundWindow(form);
    std::vector<INPUT> inputs;
    const auto add = [&](WORD key, DWORD flags) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    if (shortcut.control)
        add(VK_CONTROL, 0);
    add(shortcut.key, 0);
    add(shortcut.key, KEYEVENTF_KEYUP);
    if (shortcut.control)
        add(VK_CONTROL, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

int chooseCommand(const Options& options, const CommandRow& row) {
    HWND const form = mainWindow(options);
    // Where another process's menus cannot be read (Wine), it is left to the program to refuse.
    const auto state = menuState(GetMenu(form), row.identifier);
    if (state && (*state & MFS_DISABLED) != 0) {
        std::printf("%s is disabled\n", row.name);
        return 1;
    }
    if (options.key)
        pressKey(form, row.shortcut);
    else
        PostMessageA(form, WM_COMMAND, row.identifier, 0);
    return 0;
}

bool isOutcome(const std::string& text) {
    return !text.empty() &&
           (!text.starts_with("Compiling ") || text.find("Sucessfully compiled") != std::string::npos);
}

void printElapsed(ULONGLONG start) {
    std::printf("milliseconds: %llu\n", static_cast<unsigned long long>(GetTickCount64() - start));
}

/// Runs a command line hidden, as the program starts a build, and prints how long it took.
int timeProcess(std::string commandLine) {
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION process = {};
    const ULONGLONG start = GetTickCount64();
    if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process) == 0)
        throw std::runtime_error("cannot start " + commandLine);
    WaitForSingleObject(process.hProcess, INFINITE);
    printElapsed(start);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return 0;
}

/// Waits for what a build that runs comes to, and prints it; `start` is when it was asked for.
int reportOutcome(const Options& options, ULONGLONG start);

int compileAndReport(const Options& options) {
    mainWindow(options);
    if (HWND const old = progressWindow()) {
        SendMessageA(old, WM_CLOSE, 0, 0);
        waitUntil(options, "the old progress window to close", [] { return progressWindow() == nullptr; });
    }
    if (const int refused = chooseCommand(options, commandNamed("mnuCompile")))
        return refused;
    return reportOutcome(options, GetTickCount64());
}

int reportOutcome(const Options& options, ULONGLONG start) {
    std::string text;
    waitUntil(options, "the outcome of the compilation", [&] {
        if (HWND const box = dialogBox()) {
            HWND const words = GetDlgItem(box, 0xFFFF); // the first static control may be the picture
            text = windowText(box) + ": " + windowText(words != nullptr ? words : box);
            return true;
        }
        HWND const window = progressWindow();
        text = window == nullptr ? "" : windowText(GetDlgItem(window, Form2_Text1));
        return isOutcome(text);
    });
    if (options.time)
        printElapsed(start);
    // The size lines follow the outcome at once; an unchanged text a moment later is the whole one.
    std::string before;
    waitUntil(options, "the text to stand still", [&] {
        HWND const window = progressWindow();
        if (window == nullptr || dialogBox() != nullptr || text == before)
            return true;
        before = text;
        Sleep(200);
        text = windowText(GetDlgItem(window, Form2_Text1));
        return false;
    });
    std::printf("%s\n", text.c_str());
    return text.find("No errors") != std::string::npos ? 0 : 1;
}

int printTree(const Options& options) {
    for (const TreeEntry& entry : treeEntries(GetDlgItem(mainWindow(options), Form1_TV)))
        std::printf("%*s%s%s [%d]\n", entry.depth * 2, "", entry.selected ? "*" : "", entry.text.c_str(),
                    entry.image);
    return 0;
}

int clickNode(const Options& options, const std::string& text) {
    HWND const form = mainWindow(options);
    HWND const tree = GetDlgItem(form, Form1_TV);
    for (const TreeEntry& entry : treeEntries(tree)) {
        if (entry.text != text)
            continue;
        SendMessageA(tree, TVM_ENSUREVISIBLE, 0, std::bit_cast<LPARAM>(entry.item));
        const RemoteMemory memory(tree, sizeof(RECT));
        memory.write(&entry.item, sizeof entry.item);
        SendMessageA(tree, TVM_GETITEMRECT, TRUE, memory.address());
        RECT place = {};
        memory.read(&place, sizeof place);
        const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
        PostMessageA(tree, WM_LBUTTONDOWN, MK_LBUTTON, point);
        PostMessageA(tree, WM_LBUTTONUP, 0, point);
        return 0;
    }
    std::printf("no node is called %s\n", text.c_str());
    return 1;
}

int printStatus(const Options& options) {
    HWND const bar = GetDlgItem(mainWindow(options), Form1_StatusBar1);
    for (int part = 0; part < 3; ++part)
        std::printf("%s\n", statusText(bar, part).c_str());
    return 0;
}

/// Line and column of the caret from 1, and the highlighted line from 1 or "none".
int printCaret(const Options& options) {
    HWND const pane = editorPane(mainWindow(options));
    const LRESULT position = SendMessageA(pane, SCI_GETCURRENTPOS, 0, 0);
    const LRESULT line = SendMessageA(pane, SCI_LINEFROMPOSITION, static_cast<WPARAM>(position), 0);
    const LRESULT start = SendMessageA(pane, SCI_POSITIONFROMLINE, static_cast<WPARAM>(line), 0);
    const LRESULT marked = SendMessageA(pane, SCI_MARKERNEXT, 0, 1);
    std::printf("line %ld column %ld highlighted %s\n", static_cast<long>(line + 1),
                static_cast<long>(position - start + 1),
                marked < 0 ? "none" : std::to_string(marked + 1).c_str());
    return 0;
}

int answerBox(const Options& options, const std::string& button) {
    HWND box = nullptr;
    waitUntil(options, "a message box", [&] { return (box = dialogBox()) != nullptr; });
    static const std::vector<std::pair<const char*, WPARAM>> buttons = {
        {"OK", IDOK}, {"Yes", IDYES}, {"No", IDNO}, {"Cancel", IDCANCEL}};
    for (const auto& [name, identifier] : buttons) {
        if (button != name)
            continue;
        HWND const words = GetDlgItem(box, 0xFFFF);
        std::printf("%s: %s\n", windowText(box).c_str(), words == nullptr ? "" : windowText(words).c_str());
        PostMessageA(box, WM_COMMAND, identifier, 0);
        waitUntil(options, "the box to close", [&] { return IsWindow(box) == 0; });
        return 0;
    }
    throw std::invalid_argument("no button is called " + button);
}

/// Presses the button with this caption in the dialog that is up.
int clickButton(const Options& options, const std::string& caption) {
    HWND button = nullptr;
    waitUntil(options, "a dialog with this button", [&] {
        HWND const dialog = dialogBox();
        button = dialog == nullptr ? nullptr : FindWindowExA(dialog, nullptr, "Button", caption.c_str());
        return button != nullptr;
    });
    PostMessageA(button, BM_CLICK, 0, 0);
    return 0;
}

/// A control of the dialog that is up, by its number.
HWND dialogControl(const Options& options, int identifier) {
    HWND found = nullptr;
    waitUntil(options, "a dialog with this control", [&] {
        HWND const dialog = dialogBox();
        found = dialog == nullptr ? nullptr : GetDlgItem(dialog, identifier);
        return found != nullptr;
    });
    return found;
}

/// Writes into a field, or with no text prints what stands in it.
int useField(const Options& options, int identifier, const std::string* text) {
    HWND const field = dialogControl(options, identifier);
    if (text == nullptr)
        std::printf("%s\n", windowText(field).c_str());
    else
        SendMessageA(field, WM_SETTEXT, 0, std::bit_cast<LPARAM>(text->c_str()));
    return 0;
}

int typeText(const Options& options, const std::string& text) {
    HWND const pane = editorPane(mainWindow(options));
    for (const char c : text)
        SendMessageA(pane, WM_CHAR, static_cast<unsigned char>(c), 0);
    return 0;
}

/// Selects a template in the New Project dialog by its name and presses Open.
int chooseTemplate(const Options& options, const std::string& name) {
    HWND dialog = nullptr;
    waitUntil(options, "the New Project dialog", [&] {
        dialog = FindWindowA("#32770", "New Project");
        return dialog != nullptr && IsWindowVisible(dialog) != 0;
    });
    if (options.autoexec)
        SendDlgItemMessageA(dialog, Form5_Check1, BM_CLICK, 0, 0);
    if (!selectListItem(GetDlgItem(dialog, Form5_LVProjects), name)) {
        std::printf("no template is called %s\n", name.c_str());
        return 1;
    }
    PostMessageA(dialog, WM_COMMAND, Form5_Command1, 0);
    return 0;
}

BOOL CALLBACK findNameField(HWND control, LPARAM found) {
    constexpr std::array<int, 2> nameFields = {0x480, 0x47C}; // edt1 and cmb13 of the system's dialogs
    const int identifier = GetDlgCtrlID(control);
    if (std::find(nameFields.begin(), nameFields.end(), identifier) == nameFields.end())
        return TRUE;
    *std::bit_cast<HWND*>(found) = control;
    return FALSE;
}

/// The field for the file's name in the file dialog that is up, if any.
HWND fileNameField() {
    HWND dialog = nullptr;
    while ((dialog = FindWindowExA(nullptr, dialog, "#32770", nullptr)) != nullptr) {
        HWND field = nullptr;
        if (IsWindowVisible(dialog) != 0)
            EnumChildWindows(dialog, findNameField, std::bit_cast<LPARAM>(&field));
        if (field != nullptr)
            return field;
    }
    return nullptr;
}

/// Gives a file dialog a path and presses its first button. Prints the dialog's title.
int nameFile(const Options& options, const std::string& path) {
    HWND field = nullptr;
    waitUntil(options, "a file dialog", [&] { return (field = fileNameField()) != nullptr; });
    HWND const dialog = GetAncestor(field, GA_ROOT);
    std::printf("%s\n", windowText(dialog).c_str());
    SendMessageA(field, WM_SETTEXT, 0, std::bit_cast<LPARAM>(path.c_str()));
    PostMessageA(GetParent(field), WM_COMMAND, IDOK, 0);
    waitUntil(options, "the file dialog to close", [&] { return IsWindow(dialog) == 0; });
    return 0;
}

/// Presses Esc in the progress window of a build that runs, and waits for the window to go.
int escapeProgress(const Options& options) {
    HWND window = nullptr;
    waitUntil(options, "the progress window", [&] { return (window = progressWindow()) != nullptr; });
    PostMessageA(GetDlgItem(window, Form2_Text1), WM_KEYDOWN, VK_ESCAPE, 0);
    waitUntil(options, "the progress window to close", [&] { return IsWindow(window) == 0; });
    return 0;
}

/// Puts the caret at the start of a line, counted from 1.
int goToLine(const Options& options, int line) {
    SendMessageA(editorPane(mainWindow(options)), SCI_GOTOLINE, static_cast<WPARAM>(line - 1), 0);
    return 0;
}

/// The button goes down on the first line's text; waits for a menu.
int rightClick(const Options& options) {
    HWND const form = mainWindow(options);
    clickRight(editorPane(form), {85, 8});
    waitUntil(options, "a menu", [] { return FindWindowA("#32768", nullptr) != nullptr; });
    return 0;
}

/// The pane with the focus (from 0) and the number of panes.
int printPane(const Options& options) {
    HWND const form = mainWindow(options);
    HWND const focused = focusOf(form);
    int count = 0;
    int active = -1;
    HWND pane = nullptr;
    while ((pane = FindWindowExA(GetDlgItem(form, Form1_Code1), pane, "Scintilla", nullptr)) != nullptr) {
        if (pane == focused)
            active = count;
        ++count;
    }
    std::printf("pane %d of %d\n", active, count);
    return 0;
}

int closeProgram(const Options& options) {
    HWND const form = mainWindow(options);
    PostMessageA(form, WM_CLOSE, 0, 0);
    waitUntil(options, "the program to end", [&] { return IsWindow(form) == 0; });
    return 0;
}

int perform(const Options& options) {
    if (options.words.empty())
        throw std::invalid_argument("which verb?");
    const std::string& verb = options.words[0];
    const auto argument = [&]() -> const std::string& {
        if (options.words.size() < 2)
            throw std::invalid_argument(verb + " needs an argument");
        return options.words[1];
    };
    if (verb == "compile-and-report")
        return compileAndReport(options);
    if (verb == "outcome")
        return reportOutcome(options, GetTickCount64());
    if (verb == "template")
        return chooseTemplate(options, argument());
    if (verb == "file")
        return nameFile(options, argument());
    if (verb == "escape")
        return escapeProgress(options);
    if (verb == "break") {
        HWND const progress = progressWindow();
        PostMessageA(progress != nullptr ? progress : mainWindow(options), WM_KEYDOWN, VK_CANCEL, 0);
        return 0;
    }
    if (verb == "go-to-line")
        return goToLine(options, std::stoi(argument()));
    if (verb == "time-process")
        return timeProcess(argument());
    if (verb == "tree")
        return printTree(options);
    if (verb == "status")
        return printStatus(options);
    if (verb == "caret")
        return printCaret(options);
    if (verb == "text")
        return std::printf("%s", windowText(editorPane(mainWindow(options))).c_str()) < 0 ? 1 : 0;
    if (verb == "type")
        return typeText(options, argument());
    if (verb == "menu")
        return chooseCommand(options, commandNamed(argument()));
    if (verb == "keys")
        return typeKeys(mainWindow(options), argument());
    if (verb == "press")
        return pressChord(mainWindow(options), argument());
    if (verb == "right-click")
        return rightClick(options);
    if (verb == "pane")
        return printPane(options);
    if (verb == "click-node")
        return clickNode(options, argument());
    if (verb == "click")
        return clickButton(options, argument());
    if (verb == "field")
        return useField(options, std::stoi(argument()), nullptr);
    if (verb == "fill" && options.words.size() == 3)
        return useField(options, std::stoi(argument()), &options.words[2]);
    if (verb == "check")
        return static_cast<int>(SendMessageA(dialogControl(options, std::stoi(argument())), BM_CLICK, 0, 0));
    if (verb == "font-size")
        return std::printf("%d\n", static_cast<int>(SendMessageA(editorPane(mainWindow(options)),
                                                                 SCI_STYLEGETSIZE, STYLE_DEFAULT, 0))) < 0
                   ? 1
                   : 0;
    if (verb == "answer")
        return answerBox(options, argument());
    if (verb == "close")
        return closeProgram(options);
    throw std::invalid_argument("unknown verb " + verb);
}

Options readOptions(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string word = arguments[i];
        if (word == "--key")
            options.key = true;
        else if (word == "--time")
            options.time = true;
        else if (word == "--autoexec")
            options.autoexec = true;
        else if (word == "--timeout" && i + 1 < count)
            options.timeout = static_cast<DWORD>(std::stod(arguments[++i]) * 1000);
        else
            options.words.push_back(word);
    }
    return options;
}

} // namespace
} // namespace tavrel::drive

int main(int count, char** arguments) {
    try {
        return tavrel::drive::perform(tavrel::drive::readOptions(count, arguments));
    } catch (const tavrel::drive::TimedOut& error) {
        std::fprintf(stderr, "drive: %s\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr,
                     "drive: %s\nusage: drive compile-and-report [--time]|outcome|escape|break|template NAME "
                     "[--autoexec]|"
                     "file PATH|go-to-line NUMBER|time-process COMMANDLINE|"
                     "tree|status|caret|text|type TEXT|keys TEXT|press KEYS|right-click|pane|menu NAME|"
                     "click-node TEXT|answer BUTTON|click CAPTION|field NUMBER|fill NUMBER TEXT|check "
                     "NUMBER|font-size|close [--timeout SECONDS] [--key]\n",
                     error.what());
        return 3;
    }
}
