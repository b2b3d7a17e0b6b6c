// Stands in for openmsx.exe in tests of the starter: takes the control connection, writes down what it was
// started with and what it is told, and holds its disk open as the real one does. FAKE_LOG names the file for
// that. It ends at "exit", or with 0 as soon as there is a file of that name and ".close", the user's click
// on the window's corner.
//
// FAKE_MODE: "no start" ends with a reason before it connects; "refuse" answers the first command with an
// error; "crash" ends with code 3 after it.
#include "emulator/request.h"
#include "emulator/wide_text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <process.h>
#include <thread>
#include <windows.h>

namespace {

std::string variable(const wchar_t* name) {
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return emulator::narrow(value);
}

void note(const std::string& line) {
    std::FILE* const file = _wfopen(emulator::wide(variable(L"FAKE_LOG")).c_str(), L"ab");
    if (file == nullptr)
        std::exit(9);
    std::fprintf(file, "%s\n", line.c_str());
    std::fclose(file);
}

/// The disk, as openMSX opens it: others may read it, nobody may replace it.
class Drive {
  public:
    bool insert(const std::string& image) {
        if (file_ != INVALID_HANDLE_VALUE)
            CloseHandle(file_);
        file_ = CreateFileW(emulator::wide(image).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                            nullptr, OPEN_EXISTING, 0, nullptr);
        char first[64] = {};
        DWORD count = 0;
        if (file_ != INVALID_HANDLE_VALUE)
            ReadFile(file_, first, sizeof first - 1, &count, nullptr);
        note("disk " + image + " holds " + std::string(first, std::find(first, first + count, '\n')));
        return file_ != INVALID_HANDLE_VALUE;
    }

  private:
    HANDLE file_ = INVALID_HANDLE_VALUE;
};

[[noreturn]] void end(int code) {
    std::fflush(stdout);
    _exit(code);
}

void endWhenClosed() {
    const std::wstring sign = emulator::wide(variable(L"FAKE_LOG") + ".close");
    while (GetFileAttributesW(sign.c_str()) == INVALID_FILE_ATTRIBUTES)
        Sleep(20);
    end(0);
}

/// What a Tcl word in quotes stands for.
std::string unquoted(const std::string& word) {
    std::string text;
    for (std::size_t i = 1; i + 1 < word.size(); ++i)
        text += word[i] == '\\' ? word[++i] : word[i];
    return text;
}

void obey(const std::string& command, Drive& drive) {
    note("command " + command);
    const std::string mode = variable(L"FAKE_MODE");
    bool done = mode != "refuse";
    if (command == "exit")
        end(0);
    if (command.starts_with("tavrel_insert "))
        done = drive.insert(unquoted(command.substr(14)));
    std::printf("<reply result=\"%s\">%s</reply>\n", done ? "ok" : "nok",
                done ? "" : "no &lt;OpenGL&gt; here");
    std::fflush(stdout);
    if (mode == "crash")
        end(3);
}

void serve(const std::string& pipeName, Drive& drive) {
    std::FILE* const pipe = _wfopen(emulator::wide("\\\\.\\pipe\\" + pipeName).c_str(), L"rb");
    if (pipe == nullptr)
        end(8);
    std::puts("<openmsx-output>");
    std::string line;
    for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe)) {
        if (character != '\n') {
            line += static_cast<char>(character);
            continue;
        }
        constexpr std::size_t opening = 9; // <command>
        if (line.starts_with("<command>"))
            obey(line.substr(opening, line.rfind("</command>") - opening), drive);
        line.clear();
    }
    note("the connection is closed");
}

} // namespace

int wmain(int count, wchar_t** words) {
    std::string pipeName;
    Drive drive;
    std::wstring folder(32768, L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    note("started " + std::to_string(GetCurrentProcessId()) + " in " + emulator::narrow(folder) + " home " +
         variable(L"OPENMSX_HOME"));
    if (variable(L"FAKE_MODE") == "no start") {
        std::fputs("Fatal error: there is no sound\n", stderr);
        return 1;
    }
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string option = emulator::narrow(words[i]);
        const std::string value = emulator::narrow(words[i + 1]);
        note("argument " + option + " " + (option == "-control" ? "..." : value));
        if (option == "-control")
            pipeName = value.substr(5); // pipe:
        if (option == "-diska" && !drive.insert(value))
            return 7;
    }
    std::thread(endWhenClosed).detach();
    serve(pipeName, drive);
    Sleep(INFINITE); // openMSX lives on without its controller
    return 0;
}
