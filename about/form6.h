// The About dialog `Form6`.
#pragma once

#include "util/message_pump.h"
#include "util/shell.h"

#include <functional>
#include <string>
#include <windows.h>

namespace tavrel {

/// The maker's web page. A placeholder: whoever publishes the program puts the address here.
inline const std::string makersWebPage = "https://example.org/tavrel";

/// A modeless dialog with a link to the maker's page, a button that opens the history and one that
/// closes it.
class Form6 : private MessageFilter {
  public:
    Form6(HWND owner, Shell& shell, std::function<void()> showHistory);
    ~Form6() override;

    /// Shows the dialog without waiting for it; one that is open comes to the front.
    void show();
    /// Null while it is closed.
    HWND window() const { return window_; }
    COLORREF linkColour() const { return linkColour_; }
    bool linkUnderlined() const { return linkUnderlined_; }

    static constexpr COLORREF restColour = 0;
    static constexpr COLORREF hoverColour = 0xFF0000; ///< blue: the low byte is red
    static constexpr COLORREF pressedColour = 255;

  private:
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second);
    static LRESULT CALLBACK linkProcedure(HWND label, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                                          DWORD_PTR form);
    bool handleFirst(MSG& message) override;
    void opened();
    void unloaded();
    INT_PTR handle(UINT message, WPARAM first, LPARAM second);
    INT_PTR colourOf(HDC context, HWND label) const;
    void setLinkLook(COLORREF colour, bool underlined);
    void checkMouse();

    HWND owner_;
    Shell& shell_;
    std::function<void()> showHistory_;
    HWND window_ = nullptr;
    HFONT plainFont_ = nullptr;
    HFONT underlinedFont_ = nullptr;
    HFONT titleFont_ = nullptr;
    COLORREF linkColour_ = restColour;
    bool linkUnderlined_ = false;
};

} // namespace tavrel
