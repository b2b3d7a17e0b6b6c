// The converter's window.
#pragma once

#include "image/conversion.h"
#include "util/file_dialogs.h"
#include "util/message_boxes.h"

#include <optional>
#include <string>
#include <windows.h>

namespace image {

class ConverterWindow {
  public:
    ConverterWindow(tavrel::FileDialogs& dialogs, tavrel::MessageBoxes& messages)
        : dialogs_(dialogs), messages_(messages) {}

    /// Makes the window and shows it, with the picture of this name when there is one.
    void open(const std::string& path);
    /// Null once it has been closed.
    HWND window() const { return window_; }
    const std::optional<Conversion>& conversion() const { return conversion_; }

  private:
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second);
    INT_PTR handle(UINT message, WPARAM first, LPARAM second);
    void handleCommand(WORD control, WORD notification);
    void opened();
    void fillLists();
    void choosePicture();
    void loadPicture(const std::string& path);
    void choosePalette();
    void convertAgain();
    void showState();
    void savePicture();
    void savePalette();
    void copyLines();
    void draw(const DRAWITEMSTRUCT& item) const;
    void fail(const std::string& text) const;
    std::size_t chosen(int list) const;

    tavrel::FileDialogs& dialogs_;
    tavrel::MessageBoxes& messages_;
    HWND window_ = nullptr;
    std::string path_;
    Picture picture_;
    std::size_t paletteChoice_ = 0;
    std::optional<MsxPalette> filePalette_;
    std::optional<Conversion> conversion_;
};

} // namespace image
