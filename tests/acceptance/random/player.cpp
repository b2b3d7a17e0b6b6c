#include "tests/acceptance/random/player.h"

#include "app/command_table.h"
#include "app/resource.h"
#include "tests/acceptance/drive/input.h"
#include "tests/acceptance/drive/remote.h"
#include "tests/acceptance/random/counts.h"

#include <algorithm>
#include <bit>
#include <cstdio>

#include <tlhelp32.h>

namespace tavrel::random {

namespace {

constexpr int aMoment = 30;       // milliseconds between two deeds of a quick user
constexpr int processesOfRun = 3; // DOSBox, the disk tool, the emulator

const std::vector<const CommandRow*>& commands() {
    static const std::vector<const CommandRow*> all = [] {
        std::vector<const CommandRow*> rows;
        for (const CommandRow& row : commandTable()) {
            if (row.handler != nullptr)
                rows.push_back(&row);
        }
        return rows;
    }();
    return all;
}

bool isBuild(UINT identifier) {
    return identifier == mnuCompile || identifier == mnuCompileCHN || identifier == mnuCompileRun;
}

/// Identifiers of the processes for which the condition holds.
template <typename Condition> std::vector<DWORD> processesThat(Condition condition) {
    std::vector<DWORD> found;
    HANDLE const snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(snapshot, &entry); more != FALSE;
         more = Process32Next(snapshot, &entry)) {
        if (condition(entry))
            found.push_back(entry.th32ProcessID);
    }
    CloseHandle(snapshot);
    return found;
}

bool hasChildren(const Program& program) {
    const DWORD parent = GetProcessId(program.process());
    return !processesThat([&](const PROCESSENTRY32& entry) {
                return entry.th32ParentProcessID == parent &&
                       std::string(&entry.szExeFile[0]) != "msximg.exe";
            }).empty();
}

/// The image converter is a program of its own; its windows would lie over those that are played with.
void endConverters() {
    for (const DWORD converter : processesThat(
             [](const PROCESSENTRY32& entry) { return std::string(&entry.szExeFile[0]) == "msximg.exe"; })) {
        HANDLE const process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, converter);
        if (process == nullptr)
            continue;
        TerminateProcess(process, 0);
        WaitForSingleObject(process, INFINITE);
        CloseHandle(process);
    }
}

bool menuIsUp() {
    return FindWindowA("#32768", nullptr) != nullptr;
}

void clickAt(HWND window, int x, int y, bool twice) {
    const LPARAM place = MAKELPARAM(x, y);
    PostMessageA(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
    PostMessageA(window, WM_LBUTTONUP, 0, place);
    if (twice) {
        PostMessageA(window, WM_LBUTTONDBLCLK, MK_LBUTTON, place);
        PostMessageA(window, WM_LBUTTONUP, 0, place);
    }
}

} // namespace

void Player::note(const std::string& what) {
    std::printf("%4d %s\n", actions_, what.c_str());
}

void Player::warmUp(Program& program, int actions) {
    mayExit_ = false;
    for (int i = 0; i < actions; ++i)
        act(program);
    mayExit_ = true;
}

void Player::act(Program& program) {
    ++actions_;
    const std::vector<HWND> dialogs = program.dialogs();
    if (!dialogs.empty() && (!program.usable() || choices_.oneIn(2))) {
        useDialog(program, dialogs.front());
        return;
    }
    if (!program.usable()) { // a dialog is on its way in or out
        Sleep(aMoment);
        return;
    }
    using Deed = void (Player::*)(const Program&);
    static const std::vector<Deed> deeds = {
        &Player::typeSomething, &Player::pressSomething, &Player::clickNode, &Player::clickEditor,
        &Player::clickRight,    &Player::resize,         &Player::openMenu};
    if (choices_.oneIn(2))
        command(program);
    else
        (this->*choices_.of(deeds))(program);
    Sleep(aMoment);
    program.requireAnswer();
}

void Player::choose(const Program& program, unsigned identifier, bool byKey) {
    const CommandRow* const row = findCommand(identifier);
    static const std::vector<unsigned> withFileDialog = {
        mnuNew, mnuNewInc, mnuOpenProject, mnuFileOpen, mnuOpenIncfile, mnuSavePrj, mnuSaveFile};
    uses_.helps += identifier == mnuRefHelp ? 1 : 0;
    uses_.fileDialogs +=
        static_cast<int>(std::count(withFileDialog.begin(), withFileDialog.end(), identifier));
    note(std::string(row->name) + (byKey ? " by its key" : ""));
    if (byKey)
        drive::pressChord(program.form(), row->shortcut.text);
    else
        PostMessageA(program.form(), WM_COMMAND, identifier, 0);
}

void Player::command(Program& program) {
    const CommandRow& row = *choices_.of(commands());
    if (row.identifier == mnuExit && (!mayExit_ || !choices_.oneIn(6)))
        return command(program);
    if (isBuild(row.identifier)) {
        build(program);
        return;
    }
    const bool hasKey = row.shortcut.key != 0;
    choose(program, row.identifier, row.kind == RowKind::key || (hasKey && choices_.oneIn(2)));
    if (row.identifier == mnuImgConv)
        endConverters();
    if (row.identifier == mnuExit)
        await("the program's end", [&] {
            for (HWND const dialog : program.dialogs())
                refuse(dialog);
            return !program.alive();
        });
}

void Player::build(Program& program) {
    static const std::vector<unsigned> kinds = {mnuCompile, mnuCompileCHN, mnuCompileRun};
    const unsigned kind = choices_.of(kinds);
    ++uses_.builds;
    uses_.processes += kind == mnuCompileRun ? processesOfRun : 1;
    choose(program, kind, choices_.oneIn(2));
    Sleep(aMoment);
    if (!choices_.oneIn(3)) // else the play goes on while the build runs
        awaitBuild(program);
}

void Player::awaitBuild(const Program& program) {
    program.requireAnswer();
    await("the build's end", [&] { return !program.alive() || !hasChildren(program); });
}

void Player::typeSomething(const Program& program) {
    static const std::vector<std::string> pieces = {"begin",
                                                    " end;",
                                                    "writeln(",
                                                    "'text'",
                                                    ");",
                                                    "x = [1,2]",
                                                    "{ a remark }",
                                                    "\r",
                                                    "\r\r",
                                                    "{$I A.INC}",
                                                    "procedure P;",
                                                    "if x then y",
                                                    "{$i nowhere.inc}\r",
                                                    "program Random;\r"};
    const std::string& text = choices_.of(pieces);
    note("types " + text.substr(0, text.find('\r')));
    drive::typeKeys(program.form(), text);
}

void Player::pressSomething(const Program& program) {
    static const std::vector<std::string> keys = {
        "Up",       "Down",   "Left",     "Right",      "Home",
        "End",      "PageUp", "PageDown", "Delete",     "Back",
        "Tab",      "Enter",  "Esc",      "Ctrl+A",     "Ctrl+C",
        "Ctrl+X",   "Ctrl+V", "Ctrl+Z",   "Ctrl+Y",     "Ctrl+Tab",
        "Ctrl+L",   "Ctrl+D", "Ctrl+S",   "Shift+Down", "Ctrl+Shift+Tab",
        "Shift+End"};
    const std::string& chord = choices_.of(keys);
    note("presses " + chord);
    uses_.fileDialogs += chord == "Ctrl+S" ? 1 : 0; // a project without a name
    drive::pressChord(program.form(), chord);
}

void Player::clickNode(const Program& program) {
    HWND const tree = program.tree();
    const auto entries = drive::treeEntries(tree);
    if (entries.empty())
        return;
    const auto& entry = choices_.of(entries);
    note("clicks node " + entry.text);
    RECT place = {};
    {
        const drive::RemoteMemory memory(tree, sizeof(RECT));
        memory.write(&entry.item, sizeof entry.item);
        SendMessageA(tree, TVM_GETITEMRECT, TRUE, memory.address());
        memory.read(&place, sizeof place);
    }
    clickAt(tree, (place.left + place.right) / 2, (place.top + place.bottom) / 2, choices_.oneIn(4));
}

void Player::clickEditor(const Program& program) {
    const std::vector<HWND> panes = program.panes();
    if (panes.empty())
        return;
    HWND const pane = choices_.of(panes);
    RECT client = {};
    GetClientRect(pane, &client);
    const auto inside = [this](LONG length) {
        return static_cast<int>(choices_.below(static_cast<std::size_t>(std::max<LONG>(length, 1))));
    };
    const int x = inside(client.right);
    const int y = inside(client.bottom);
    note("clicks the editor at " + std::to_string(x) + ", " + std::to_string(y));
    clickAt(pane, x, y, choices_.oneIn(4));
}

void Player::clickRight(const Program& program) {
    if (program.editor() == nullptr)
        return;
    const std::size_t entry = choices_.below(12);
    note("clicks right, entry " + std::to_string(entry));
    SetForegroundWindow(program.form());
    drive::clickRight(program.editor(), {85, 8});
    Sleep(5 * aMoment);
    for (std::size_t i = 0; i < entry && menuIsUp(); ++i)
        drive::pressChord(program.form(), "Down");
    if (menuIsUp())
        drive::pressChord(program.form(), entry % 2 == 0 ? "Enter" : "Esc");
}

void Player::resize(const Program& program) {
    static const std::vector<SIZE> sizes = {{1000, 700}, {640, 480}, {200, 150}, {1280, 900}, {800, 120}};
    const SIZE size = choices_.of(sizes);
    const std::size_t kind = choices_.below(4);
    note("resizes the window");
    if (kind == 0)
        ShowWindowAsync(program.form(), SW_MAXIMIZE);
    else if (kind == 1)
        ShowWindowAsync(program.form(), SW_MINIMIZE);
    ShowWindowAsync(program.form(), kind == 0 ? SW_MAXIMIZE : SW_RESTORE);
    SetWindowPos(program.form(), nullptr, 10, 10, size.cx, size.cy, SWP_NOZORDER | SWP_ASYNCWINDOWPOS);
}

void Player::openMenu(const Program& program) {
    static const std::vector<std::string> menus = {"Alt+F", "Alt+E", "Alt+T", "Alt+W", "Alt+H"};
    const std::string& menu = choices_.of(menus);
    note("opens the menu " + menu);
    drive::pressChord(program.form(), menu);
    for (std::size_t i = choices_.below(8); i > 0 && menuIsUp(); --i)
        drive::pressChord(program.form(), choices_.oneIn(4) ? "Right" : "Down");
    for (int i = 0; i < 4 && menuIsUp(); ++i)
        drive::pressChord(program.form(), "Esc");
}

void Player::useOnce(const Program& program, const CommandRow& row) {
    if (isBuild(row.identifier)) {
        ++uses_.builds;
        uses_.processes += row.identifier == mnuCompileRun ? processesOfRun : 1;
    }
    choose(program, row.identifier, row.kind == RowKind::key);
    Sleep(2 * aMoment);
    awaitBuild(program);
    constexpr int quietLooks = 2; // a dialog may still be on its way
    for (int quiet = 0; quiet < quietLooks; ++quiet) {
        program.requireAnswer();
        for (HWND const dialog : program.dialogs()) {
            refuse(dialog);
            quiet = 0;
        }
        Sleep(aMoment);
    }
}

void Player::tour(const Program& program) {
    for (const CommandRow* const row : commands()) {
        if (row->identifier != mnuExit)
            useOnce(program, *row);
    }
}

void Player::useEach(Program& program, int times) {
    for (const CommandRow* const row : commands()) {
        if (row->identifier == mnuExit)
            continue;
        rest(program);
        const Counts before = countResources(program.process());
        for (int i = 0; i < times; ++i)
            useOnce(program, *row);
        rest(program);
        const Counts after = countResources(program.process());
        std::printf("%s, %d times: windows %+d, GDI objects %+d, USER objects %+d, handles %+d\n", row->name,
                    times, after.windows - before.windows, after.gdi - before.gdi, after.user - before.user,
                    after.handles - before.handles);
    }
}

void Player::rest(Program& program) {
    const auto calm = [&] {
        endConverters();
        if (menuIsUp())
            drive::pressChord(program.form(), "Esc");
        const std::vector<HWND> dialogs = program.dialogs();
        if (!dialogs.empty())
            refuse(dialogs.front());
        if (HWND const progress = program.progress(); progress != nullptr && !hasChildren(program))
            PostMessageA(progress, WM_CLOSE, 0, 0);
        Sleep(aMoment);
        return dialogs.empty() && program.usable() && program.progress() == nullptr && !hasChildren(program);
    };
    const auto settle = [&] {
        int quiet = 0;
        await("quiet", [&] {
            program.requireAnswer();
            quiet = calm() ? quiet + 1 : 0;
            return quiet == 5;
        });
    };
    settle();
    ShowWindowAsync(program.form(), SW_RESTORE);
    SetWindowPos(program.form(), nullptr, 10, 10, 1000, 700, SWP_NOZORDER | SWP_ASYNCWINDOWPOS);
    if (program.panes().size() > 1)
        choose(program, mnuSplit, false);
    if (IsWindowVisible(program.tree()) == FALSE)
        choose(program, mnuShowProjectTree, false);
    settle();
    choose(program, mnuOpenProject, false);
    await("the file dialog", [&] {
        for (HWND const dialog : program.dialogs()) {
            HWND const field =
                GetDlgItem(dialog, 0x47C) != nullptr ? GetDlgItem(dialog, 0x47C) : GetDlgItem(dialog, 0x480);
            if (field == nullptr)
                continue;
            SendMessageA(field, WM_SETTEXT, 0, std::bit_cast<LPARAM>(world_.project.c_str()));
            PostMessageA(dialog, WM_COMMAND, IDOK, 0);
            await("the file dialog's end", [dialog] { return IsWindow(dialog) == FALSE; });
            return true;
        }
        return false;
    });
    settle();
}

} // namespace tavrel::random
