// bench_editor ROUNDS: a source of 10 MB is loaded, typed into and saved, in bare Scintilla and in the
// program's editor, in turn. Bare, saving is a plain write over the old file, until it is on the disk.
#include "bench/figures.h"
#include "editor/code_editor.h"
#include "util/files.h"

#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include <ole2.h>

namespace {

using namespace tavrel;
using namespace tavrel::bench;

constexpr std::size_t sourceSize = 10'000'000; // bytes
constexpr int width = 900;
constexpr int height = 650;

std::string makeSource() {
    std::string source = "program Large;\r\n";
    for (int i = 0; source.size() < sourceSize; ++i) {
        const std::string number = std::to_string(i);
        source += "procedure Step" + number + "(Value: integer); { number " + number +
                  " }\r\nbegin\r\n  if Value > $" + number + " then WriteLn('Step ', Value * " + number +
                  ")\r\nend;\r\n\r\n";
    }
    return source;
}

HWND makeFrame() {
    return CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_VISIBLE, 0, 0, width,
                           height, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
}

struct Figures {
    double loading = 0; ///< milliseconds until the first page is painted
    double typing = 0;  ///< milliseconds a key, painted, on the average
    double slowest = 0; ///< the slowest of the keys
    double saving = 0;  ///< milliseconds until the text is on the disk
};

/// Goes to the middle of the text, waits until it is painted, then types there.
void typeInto(HWND pane, Figures& figures) {
    SendMessageA(pane, SCI_GOTOLINE, static_cast<WPARAM>(SendMessageA(pane, SCI_GETLINECOUNT, 0, 0) / 2), 0);
    UpdateWindow(pane);
    const std::string text = "WriteLn(Abs(X[1], 'typed'); ";
    double total = 0;
    int keys = 0;
    for (int round = 0; round < 5; ++round) {
        for (const char c : text) {
            const double start = now();
            SendMessageA(pane, WM_CHAR, static_cast<unsigned char>(c), 0);
            UpdateWindow(pane);
            const double elapsed = now() - start;
            total += elapsed;
            figures.slowest = std::max(figures.slowest, elapsed);
            ++keys;
        }
    }
    figures.typing = total / keys;
}

void writePlainly(const std::string& path, const ScintillaView& view) {
    const auto length = static_cast<DWORD>(view.call(SCI_GETLENGTH));
    const auto* text = std::bit_cast<const char*>(view.call(SCI_GETCHARACTERPOINTER));
    HANDLE const file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    const bool done = file != INVALID_HANDLE_VALUE && WriteFile(file, text, length, &written, nullptr) != 0 &&
                      written == length && FlushFileBuffers(file) != 0;
    CloseHandle(file);
    if (!done)
        throw std::runtime_error("the text has not been saved");
}

Figures bareScintilla(const std::string& path) {
    Figures figures;
    HWND const frame = makeFrame();
    const ScintillaView view(frame);
    MoveWindow(view.window(), 0, 0, width, height, TRUE);
    UpdateWindow(view.window());
    const double start = now();
    const std::string bytes = readWholeFile(path);
    view.call(SCI_SETUNDOCOLLECTION, 0);
    view.call(SCI_ADDTEXT, bytes.size(), bytes.data());
    view.call(SCI_SETUNDOCOLLECTION, 1);
    view.call(SCI_GOTOPOS, 0);
    UpdateWindow(view.window());
    figures.loading = now() - start;
    typeInto(view.window(), figures);
    const double saveStart = now();
    writePlainly(path + ".saved", view);
    figures.saving = now() - saveStart;
    DestroyWindow(frame);
    return figures;
}

Figures codeEditor(const std::string& path) {
    Figures figures;
    HWND const frame = makeFrame();
    {
        CodeEditor editor(frame, 1);
        editor.setFont("Courier New", 10);
        MoveWindow(editor.window(), 0, 0, width, height, TRUE);
        HWND const pane = FindWindowExA(editor.window(), nullptr, "Scintilla", nullptr);
        UpdateWindow(pane);
        const double start = now();
        editor.setText("");
        editor.insertFile(path, {0, 0});
        editor.setModified(false);
        UpdateWindow(pane);
        figures.loading = now() - start;
        if (editor.text().size() < sourceSize)
            throw std::runtime_error("the text has not been loaded");
        typeInto(pane, figures);
        const double saveStart = now();
        editor.saveFile(path + ".saved", false);
        figures.saving = now() - saveStart;
    }
    DestroyWindow(frame);
    return figures;
}

void run(int rounds) {
    std::array<char, MAX_PATH> folder{};
    GetTempPathA(MAX_PATH, folder.data());
    const std::string path = std::string(folder.data()) + "tavrel-bench.pas";
    writeWholeFile(path, makeSource());
    std::vector<double> bareLoading;
    std::vector<double> loading;
    std::vector<double> bareTyping;
    std::vector<double> typing;
    std::vector<double> slowest;
    std::vector<double> bareSaving;
    std::vector<double> saving;
    for (int round = 0; round <= rounds; ++round) {
        const Figures bare = bareScintilla(path);
        const Figures ours = codeEditor(path);
        if (round == 0)
            continue; // it fills the caches
        bareLoading.push_back(bare.loading);
        loading.push_back(ours.loading);
        bareTyping.push_back(bare.typing);
        typing.push_back(ours.typing);
        slowest.push_back(ours.slowest);
        bareSaving.push_back(bare.saving);
        saving.push_back(ours.saving);
    }
    deleteFile(path);
    deleteFile(path + ".saved");
    std::printf(
        "| 10 MB of Pascal opened and painted, medians of %d rounds | bare Scintilla %.1f ms | %.1f ms | "
        "%.2f |\n",
        rounds, median(bareLoading), median(loading), medianRatio(loading, bareLoading));
    std::printf("| a key in the middle of it, painted | bare Scintilla %.2f ms | %.2f ms | %.2f |\n",
                median(bareTyping), median(typing), medianRatio(typing, bareTyping));
    std::printf("| its 10 MB saved | plain write and flush %.0f ms | %.0f ms | %.2f |\n", median(bareSaving),
                median(saving), medianRatio(saving, bareSaving));
    std::printf("slowest key: %.1f ms\n", median(slowest));
}

} // namespace

int main(int count, char** arguments) {
    try {
        OleInitialize(nullptr);
        run(count > 1 ? std::atoi(arguments[1]) : 7);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_editor: %s\n", error.what());
        return 1;
    }
    return 0;
}
