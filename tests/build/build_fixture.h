// A build over stand-ins: a program folder with a kit, the loaded project "Hello" of two files.
#pragma once

#include "build/compilation.h"
#include "project/project_loading.h"
#include "tests/support/fakes.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace tavrel::test {

class FakeProgress : public ProgressWindow {
  public:
    bool shown = false;
    bool closed = false;
    std::string words;
    std::array<bool, imageCount> images{};
    bool timer1 = false;
    bool timer2 = false;

    void open() {
        if (shown)
            return;
        shown = true;
        words = "Compiling Hello...";
        images = {true, false, false, false, false};
        timer1 = true;
    }
    void show() override { open(); }
    void close() override { closed = true; }
    std::string text() override {
        open();
        return words;
    }
    void setText(const std::string& text) override {
        open();
        words = text;
    }
    void setImageVisible(int image, bool visible) override {
        open();
        images.at(static_cast<std::size_t>(image)) = visible;
    }
    void enableTimer1(bool enabled) override { timer1 = enabled; }
    void enableTimer2(bool enabled) override { timer2 = enabled; }
};

struct Build : testing::Test {
    TestWorkspace test;
    FakeProgress progress;
    BuildTools tools{progress, test.processes};

    Build() {
        test.program.makeFolder("compiler\\DOSBox-0.74");
        for (const char* const name :
             {"DOS2CASH.COM", "TP3.EXE", "RUNTIME.COM", "temp.conf", "DOSBox-0.74\\DOSBox.exe"})
            test.program.write(std::string("compiler\\") + name, name);
        test.folder.write("A.INC", "one\r\ntwo\r\nthree\r\n");
        test.workspace.project.Name = "Hello";
        LoadProject(test.workspace, test.folder.write("M.PAS", "{$I A.INC}\r\n"));
    }
    bool kitIsGone() const {
        return !test.folder.has("TP3.EXE") && !test.folder.has("DOS2CASH.COM") &&
               !test.folder.has("RUNTIME.COM") && !test.folder.has("turbopc.bat");
    }
    bool build(Output output = Output::com) { return DoCompilation(test.workspace, tools, output); }
};

} // namespace tavrel::test
