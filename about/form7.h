// The history window `Form7`.
#pragma once

#include "util/message_pump.h"

#include <string>
#include <windows.h>

namespace tavrel {

/// A modeless window: while it is open the main window and its shortcuts go on working.
class Form7 : private MessageFilter {
  public:
    Form7() = default;
    ~Form7() override;

    /// Shows a text over its owner, without waiting; a window that is open comes to the front.
    void show(HWND owner, const std::string& history);
    /// Null while it is closed.
    HWND window() const { return window_; }

  private:
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second);
    bool handleFirst(MSG& message) override;
    void opened(const std::string& history) const;

    HWND window_ = nullptr;
};

} // namespace tavrel
