// load_bench.exe [ROUNDS]: what loading a project costs beyond reading its files and showing the main one. In
// turn, in one run: the floor, which reads the files and puts the main one into a bare Scintilla; and
// LoadProject in the real main window. Prints a line for each size of the main file.
#include "app/form1.h"
#include "project/project_loading.h"
#include "settings/settings.h"
#include "tests/app/fake_printer.h"
#include "tests/support/fakes.h"
#include "util/files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <Scintilla.h>

namespace tavrel {
namespace {

constexpr int includes = 30;
constexpr int linesOfInclude = 300;

std::string source(int lines, bool includesOthers) {
    std::string text = "program Bench;\r\n";
    for (int i = 0; includesOthers && i < includes; ++i)
        text += "{$I PART" + std::to_string(i) + ".INC}\r\n";
    const int done = includesOthers ? includes + 1 : 1;
    for (int line = done; line < lines; ++line) {
        if (line % 40 == 0)
            text += "procedure Step" + std::to_string(line) + "(Value: integer; var Result: real);\r\n";
        else
            text += "  if Counter" + std::to_string(line % 97) +
                    " > Limit then Total := Total + Table[Counter]; { x }\r\n";
    }
    return text;
}

double milliseconds(const std::function<void()>& work) {
    LARGE_INTEGER frequency;
    LARGE_INTEGER start;
    LARGE_INTEGER end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    work();
    QueryPerformanceCounter(&end);
    return 1000.0 * static_cast<double>(end.QuadPart - start.QuadPart) /
           static_cast<double>(frequency.QuadPart);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

class Bench {
  public:
    Bench() {
        Settings settings = SetDefaultSettings(program_.path());
        settings.OpenNewProjectAtStart = storedFalse;
        writeSettings(program_.path(), settings);
        program_.makeFolder("help");
        program_.write("help\\autocomplete.txt", "Abs(X)\r\n");
        for (int i = 0; i < includes; ++i)
            folder_.write("PART" + std::to_string(i) + ".INC", source(linesOfInclude, false));
        form_ = std::make_unique<Form1>(
            Form1Seams{messages_, dialogs_, registry_, processes_, shell_, printer_}, program_.path());
        form_->load("");
        bare_ = CreateWindowExA(0, "Scintilla", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 700, 500, nullptr,
                                nullptr, GetModuleHandleA(nullptr), nullptr);
        if (bare_ == nullptr)
            throw std::runtime_error("there is no bare Scintilla");
    }
    ~Bench() { DestroyWindow(bare_); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    void measure(int lines, int rounds) {
        const std::string path = folder_.write("MAIN.PAS", source(lines, true));
        std::vector<double> floors;
        std::vector<double> loads;
        std::vector<double> ratios;
        for (int round = -1; round < rounds; ++round) { // the first one fills the caches
            const double floor = milliseconds([&] { readAndShow(path); });
            const double load = milliseconds([&] { LoadProject(form_->workspace(), path); });
            if (form_->workspace().tree.count() != includes + 2 || !messages_.shown.empty())
                throw std::runtime_error("the project was not loaded");
            if (round < 0)
                continue;
            floors.push_back(floor);
            loads.push_back(load);
            ratios.push_back(load / floor);
        }
        const double load = median(loads);
        std::printf("| project of %d lines and %d includes loaded, %.1f ms a thousand lines | its files "
                    "read, the main one in bare "
                    "Scintilla %.0f ms | %.0f ms | %.2f |\n",
                    lines, includes, load * 1000 / (lines + includes * linesOfInclude), median(floors), load,
                    median(ratios));
    }

  private:
    void readAndShow(const std::string& path) {
        const std::string main = readWholeFile(path);
        for (int i = 0; i < includes; ++i)
            readWholeFile(folder_.path() + "PART" + std::to_string(i) + ".INC");
        SendMessageA(bare_, SCI_CLEARALL, 0, 0);
        SendMessageA(bare_, SCI_EMPTYUNDOBUFFER, 0, 0);
        SendMessageA(bare_, SCI_ADDTEXT, main.size(), std::bit_cast<LPARAM>(main.data()));
    }

    test::TemporaryFolder program_;
    test::TemporaryFolder folder_;
    test::FakeMessageBoxes messages_;
    test::FakeFileDialogs dialogs_;
    test::FakeRegistry registry_;
    test::FakeProcessRunner processes_;
    test::FakeShell shell_;
    test::FakePrinter printer_;
    std::unique_ptr<Form1> form_;
    HWND bare_ = nullptr;
};

} // namespace
} // namespace tavrel

int main(int count, char** arguments) {
    try {
        const int rounds = count > 1 ? std::atoi(arguments[1]) : 15;
        tavrel::Bench bench;
        for (const int lines : {20'000, 50'000, 100'000, 200'000})
            bench.measure(lines, std::max(rounds, 1));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "load_bench: %s\n", error.what());
        return 1;
    }
}
