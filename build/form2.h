// The progress window `Form2`, captioned "Compilation".
#pragma once

#include "build/progress_window.h"
#include "util/message_pump.h"

#include <array>
#include <functional>
#include <string>
#include <windows.h>

namespace tavrel {

class Form2 : public ProgressWindow, private MessageFilter {
  public:
    /// `projectName` is asked each time the window opens.
    Form2(HWND owner, std::function<std::string()> projectName);
    ~Form2() override;

    void show() override;
    void close() override;
    std::string text() override;
    void setText(const std::string& text) override;
    void setImageVisible(int image, bool visible) override;
    void enableTimer1(bool enabled) override;
    void enableTimer2(bool enabled) override;

    /// Null while it is closed.
    HWND window() const { return window_; }
    bool imageVisible(int image) const;
    bool timer1Enabled() const { return timer1_; }
    bool timer2Enabled() const { return timer2_; }

  private:
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second);
    bool handle(UINT message, WPARAM first);
    bool handleFirst(MSG& message) override;
    void open();
    void opened();
    void unloaded();
    HWND control(int identifier) const { return GetDlgItem(window_, identifier); }
    void blink(int firstImage, int secondImage);
    void enableTimer(UINT_PTR timer, bool enabled);

    HWND owner_;
    HWND window_ = nullptr;
    std::function<std::string()> projectName_;
    std::array<HBITMAP, imageCount> pictures_{};
    std::array<bool, imageCount> visible_{};
    bool timer1_ = false;
    bool timer2_ = false;
};

/// One of the window's five pictures, `side` pixels wide and high. The caller owns the bitmap.
HBITMAP makeProgressPicture(int image, int side, COLORREF background);

} // namespace tavrel
