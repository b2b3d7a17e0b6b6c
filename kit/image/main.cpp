// msximg.exe: with a window, or on the command line.
#include "image/command_line.h"
#include "image/converter_window.h"
#include "image/picture_reader.h"
#include "tools/palette/palette_source.h"
#include "util/files.h"
#include "util/runtime_error.h"
#include "util/windows_dialogs.h"

#include <commctrl.h>
#include <shellapi.h>

namespace {

enum ExitCode { done = 0, failed = 1, wrongUse = 2 };

std::vector<std::string> arguments() {
    std::vector<std::string> result;
    int count = 0;
    LPWSTR* const words = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; words != nullptr && i < count; ++i) {
        const int size = WideCharToMultiByte(CP_ACP, 0, words[i], -1, nullptr, 0, nullptr, nullptr);
        std::string text(static_cast<std::size_t>(size), '\0');
        WideCharToMultiByte(CP_ACP, 0, words[i], -1, text.data(), size, nullptr, nullptr);
        text.resize(text.find('\0'));
        result.push_back(text);
    }
    LocalFree(words);
    return result;
}

/// Writes to a standard handle; a program with windows has those of its console only when it asks for them.
void print(DWORD which, std::string_view text) {
    HANDLE handle = GetStdHandle(which);
    if ((handle == nullptr || handle == INVALID_HANDLE_VALUE) && AttachConsole(ATTACH_PARENT_PROCESS) != 0)
        handle = GetStdHandle(which);
    DWORD written = 0;
    WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

/// On the command line messages go there too.
struct PrintedMessages : tavrel::MessageBoxes {
    tavrel::Answer show(const std::string& text, const std::string&, tavrel::Icon, tavrel::Buttons) override {
        print(STD_ERROR_HANDLE, "msximg: " + text + "\n");
        return tavrel::Answer::ok;
    }
};

int convertFile(image::CommandLine line) {
    if (line.palette == image::PaletteKind::file) {
        PrintedMessages messages;
        const auto palette = tavrel::readPaletteSource(line.paletteFile, messages);
        if (!palette) {
            print(STD_ERROR_HANDLE, "msximg: no palette in " + line.paletteFile + "\n");
            return failed;
        }
        line.options.palette = tavrel::msxPalette(*palette);
    }
    const image::Conversion conversion = image::convert(image::readPicture(line.input), line.options);
    tavrel::writeWholeFile(line.output, image::pictureFile(conversion.memory));
    if (!line.paletteOutput.empty())
        tavrel::writeWholeFile(line.paletteOutput,
                               image::paletteContent(conversion, image::holdsPascal(line.paletteOutput)));
    if (!line.previewOutput.empty())
        tavrel::writeWholeFile(line.previewOutput, image::bmpFile(conversion.preview));
    return done;
}

int showWindow(const std::string& path) {
    constexpr INITCOMMONCONTROLSEX controls = {sizeof(INITCOMMONCONTROLSEX),
                                               ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    tavrel::WindowsFileDialogs dialogs;
    tavrel::WindowsMessageBoxes messages;
    image::ConverterWindow window(dialogs, messages);
    window.open(path);
    dialogs.setOwner(window.window());
    messages.setOwner(window.window());
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (window.window() != nullptr && IsDialogMessageA(window.window(), &message) != 0)
            continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return done;
}

int run() {
    const image::CommandLine line = image::parseCommandLine(arguments());
    if (line.help) {
        print(STD_OUTPUT_HANDLE, image::helpText);
        return done;
    }
    return line.window ? showWindow(line.input) : convertFile(line);
}

int fail(std::string_view text, ExitCode code) {
    print(STD_ERROR_HANDLE, "msximg: " + std::string(text) + "\n");
    return code;
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    CoInitialize(nullptr);
    try {
        return run();
    } catch (const image::UsageError& error) {
        return fail(error.what(), wrongUse);
    } catch (const tavrel::RuntimeError& error) {
        return fail(error.message(), failed);
    } catch (const std::exception& error) {
        return fail(error.what(), failed);
    }
}
