// The main window in the test process, with stand-ins for the user and the world outside.
#pragma once

#include "app/command_table.h"
#include "app/form1.h"
#include "tests/app/fake_printer.h"
#include "tests/support/fakes.h"

#include <array>
#include <bit>
#include <commctrl.h>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace tavrel::test {

struct MainWindow : testing::Test {
    TemporaryFolder program;
    TemporaryFolder folder;
    FakeMessageBoxes messages;
    FakeFileDialogs dialogs;
    FakeRegistry registry;
    FakeProcessRunner processes;
    FakeShell shell;
    FakePrinter printer;
    std::unique_ptr<Form1> form;

    MainWindow() {
        Settings settings = SetDefaultSettings(program.path());
        settings.OpenNewProjectAtStart = storedFalse; // else a dialog would wait for its user
        writeSettings(program.path(), settings);
        program.makeFolder("help");
        program.makeFolder("compiler\\DOSBox-0.74");
        program.makeFolder("dsk");
        program.write("help\\autocomplete.txt", "Abs(X)\r\nWriteLn(...)\r\n");
        for (const char* const name :
             {"DOS2CASH.COM", "TP3.EXE", "RUNTIME.COM", "temp.conf", "DOSBox-0.74\\DOSBox.exe"})
            program.write(std::string("compiler\\") + name, name);
        program.write("dsk\\dsktool.exe", "dsktool.exe");
        folder.write("A.INC", "one\r\ntwo\r\n");
        folder.write("M.PAS", "program M;\r\n{$I A.INC}\r\nbegin end.\r\n");
        folder.write("M.TPJ", "Demo\r\n2E9B\r\nD200\r\nM.PAS\r\n");
    }
    void start(const std::string& argument = {}) {
        form = std::make_unique<Form1>(Form1Seams{messages, dialogs, registry, processes, shell, printer},
                                       program.path());
        form->load(argument);
        pump();
    }
    void startWithProject() { start(folder.path() + "M.TPJ"); }
    void pump() {
        try {
            pumpPendingMessages();
        } catch (const ProgramEnds&) {
            MSG message; // take WM_QUIT away, the next test has a program of its own
            PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
        }
    }
    void choose(UINT command) {
        SendMessageA(form->window(), WM_COMMAND, command, 0);
        pump();
    }
    void tick() { SendMessageA(form->window(), WM_TIMER, Form1_Timer1, 0); }
    std::string panel(int number) {
        std::string text(256, '\0');
        SendDlgItemMessageA(form->window(), Form1_StatusBar1, SB_GETTEXTA, static_cast<WPARAM>(number - 1),
                            std::bit_cast<LPARAM>(text.data()));
        return text.c_str();
    }
    RECT place(int control) {
        RECT rectangle = {};
        GetWindowRect(GetDlgItem(form->window(), control), &rectangle);
        MapWindowPoints(nullptr, form->window(), std::bit_cast<POINT*>(&rectangle), 2);
        return rectangle;
    }
    /// Sends a key press to the editor's pane with the given pane number, Ctrl or Shift held down.
    void pressInEditor(WPARAM key, int shift, int pane = 0) {
        hold(shift);
        SendMessageA(editorPane(pane), WM_KEYDOWN, key, 0);
        hold(0);
    }
    void typeInEditor(char character, int shift = 0) {
        hold(shift);
        SendMessageA(editorPane(0), WM_CHAR, static_cast<unsigned char>(character), 0);
        hold(0);
    }
    HWND editorPane(int number) {
        HWND pane = nullptr;
        for (int i = 0; i <= number; ++i)
            pane = FindWindowExA(form->Code1().window(), pane, "Scintilla", nullptr);
        return pane;
    }
    static void hold(int shift) {
        std::array<BYTE, 256> keys{};
        const auto state = [shift](int value) { return static_cast<BYTE>((shift & value) != 0 ? 0x80 : 0); };
        keys[VK_SHIFT] = state(shiftState::shift);
        keys[VK_CONTROL] = state(shiftState::control);
        keys[VK_MENU] = state(shiftState::alt);
        SetKeyboardState(keys.data());
    }
    /// Once a dialog with this caption is up, does `work` with it; the modal loop that runs then lets this
    /// in.
    void whenDialogOpens(const std::string& caption, std::function<void(HWND)> work) {
        awaited().caption = caption;
        awaited().work = std::move(work);
        constexpr UINT often = 20; // milliseconds
        awaited().timer = SetTimer(nullptr, 0, often, lookForDialog);
    }
    /// After a dialog that may not have come.
    static void stopWaitingForDialog() { KillTimer(nullptr, awaited().timer); }
    bool menuHas(UINT command) {
        return GetMenuState(GetMenu(form->window()), command, MF_BYCOMMAND) != static_cast<UINT>(-1);
    }

  private:
    struct Awaited {
        std::string caption;
        std::function<void(HWND)> work;
        UINT_PTR timer = 0;
    };
    static Awaited& awaited() {
        static Awaited one;
        return one;
    }
    static void CALLBACK lookForDialog(HWND, UINT, UINT_PTR timer, DWORD) {
        HWND const dialog = FindWindowA("#32770", awaited().caption.c_str());
        if (dialog == nullptr || IsWindowVisible(dialog) == 0)
            return;
        KillTimer(nullptr, timer);
        awaited().work(dialog);
    }
};

} // namespace tavrel::test
