// A running Tavrel, as seen from outside.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>
#include <windows.h>

namespace tavrel::random {

/// What must not happen: a hang, a crash, a window that does not come.
struct Defect : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The seed's choices: the same on every machine.
class Choices {
  public:
    explicit Choices(std::uint32_t seed) : state_(seed) {}
    /// 0 to count - 1.
    std::size_t below(std::size_t count);
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template <typename T> const T& of(const std::vector<T>& values) {
        return values.at(below(values.size()));
    }

  private:
    std::uint64_t state_;
};

class Program {
  public:
    /// Starts the program; comes back when its main window can be used.
    Program(const std::string& executable, const std::string& argument);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    HANDLE process() const { return process_; }
    HWND form() const { return form_; }
    HWND editor() const; ///< the upper pane
    std::vector<HWND> panes() const;
    HWND tree() const;
    bool alive() const { return WaitForSingleObject(process_, 0) != WAIT_OBJECT_0; }
    bool usable() const { return IsWindow(form_) != FALSE && IsWindowEnabled(form_) != FALSE; }

    /// Throws Defect unless the program has ended by itself with code 0.
    void requireGoodEnd() const;
    /// Waits until the program looks at its messages again. Throws Defect when it does not.
    void requireAnswer() const;
    /// The visible windows besides the main one that take input, topmost first.
    std::vector<HWND> dialogs() const;
    /// The progress window, whether or not a build runs; nullptr when there is none.
    HWND progress() const;

  private:
    std::vector<HWND> visibleWindows() const;

    HANDLE process_ = nullptr;
    DWORD identifier_ = 0;
    HWND form_ = nullptr;
};

/// The class's name of a window.
std::string className(HWND window);

/// Asks again and again until the condition holds; throws Defect when it never does.
template <typename Condition> void await(const char* what, Condition condition) {
    constexpr ULONGLONG patience = 120'000; // milliseconds; far beyond what a loaded machine needs
    const ULONGLONG end = GetTickCount64() + patience;
    while (!condition()) {
        if (GetTickCount64() > end)
            throw Defect(std::string("no sign of ") + what);
        Sleep(20);
    }
}

} // namespace tavrel::random
