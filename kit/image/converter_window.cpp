#include "image/converter_window.h"

#include "image/command_line.h"
#include "image/picture_reader.h"
#include "image/resource.h"
#include "image/views.h"
#include "tools/palette/palette_commands.h"
#include "tools/palette/palette_source.h"
#include "tools/palette_preview.h"
#include "util/clipboard.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"

#include <array>
#include <bit>
#include <cstdio>

namespace image {

namespace {

constexpr const char* title = "MSX Image Converter";

struct ScreenChoice {
    int number;
    const char* text;
};
constexpr std::array<ScreenChoice, 6> screenChoices = {{
    {2, "2: 256 x 192, 2 colours in 8 pixels"},
    {5, "5: 256 x 212, 16 colours"},
    {6, "6: 512 x 212, 4 colours"},
    {7, "7: 512 x 212, 16 colours"},
    {8, "8: 256 x 212, 256 colours"},
    {12, "12: 256 x 212, 19268 colours (MSX2+)"},
}};
constexpr std::size_t firstScreenChoice = 1;

struct DitherChoice {
    Dither dither;
    const char* text;
};
constexpr std::array<DitherChoice, 3> ditherChoices = {
    {{Dither::errorDiffusion, "Error diffusion"}, {Dither::ordered, "Ordered"}, {Dither::none, "None"}}};

struct SizeChoice {
    Resize resize;
    const char* text;
};
constexpr std::array<SizeChoice, 3> sizeChoices = {{{Resize::fit, "Fit, with bars"},
                                                    {Resize::fill, "Fill the screen, edges cut off"},
                                                    {Resize::stretch, "Stretch to the screen"}}};

enum PaletteChoice : std::size_t { bestColours, powerOnColours, coloursOfFile };
constexpr std::array<const char*, 3> paletteChoices = {"Best colours", "MSX2 standard", "From a file..."};

template <typename Choices> void fillList(HWND list, const Choices& choices, std::size_t first) {
    for (const auto& choice : choices) {
        const char* text = nullptr;
        if constexpr (requires { choice.text; })
            text = choice.text;
        else
            text = choice;
        SendMessageA(list, CB_ADDSTRING, 0, std::bit_cast<LPARAM>(text));
    }
    SendMessageA(list, CB_SETCURSEL, first, 0);
}

/// The name without its folder and extension, in the folder where the picture came from.
std::string proposedName(const std::string& picture, const char* extension) {
    return withExtension(picture, extension);
}

} // namespace

void ConverterWindow::open(const std::string& path) {
    CreateDialogParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Converter_Dialog}), nullptr,
                       dialogProcedure, std::bit_cast<LPARAM>(this));
    if (window_ == nullptr)
        throw std::runtime_error("The window cannot be made.");
    ShowWindow(window_, SW_SHOWNORMAL);
    SetForegroundWindow(window_);
    UpdateWindow(window_);
    if (!path.empty())
        loadPicture(path);
}

void ConverterWindow::opened() {
    HICON const icon = LoadIconA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Msximg_Icon}));
    SendMessageA(window_, WM_SETICON, ICON_BIG, std::bit_cast<LPARAM>(icon));
    DragAcceptFiles(window_, TRUE);
    fillLists();
    showState();
}

void ConverterWindow::fillLists() {
    fillList(GetDlgItem(window_, Converter_Screens), screenChoices, firstScreenChoice);
    fillList(GetDlgItem(window_, Converter_Dithers), ditherChoices, 0);
    fillList(GetDlgItem(window_, Converter_Sizes), sizeChoices, 0);
    fillList(GetDlgItem(window_, Converter_Palettes), paletteChoices, paletteChoice_);
}

std::size_t ConverterWindow::chosen(int list) const {
    const LRESULT item = SendDlgItemMessageA(window_, list, CB_GETCURSEL, 0, 0);
    return item < 0 ? 0 : static_cast<std::size_t>(item);
}

void ConverterWindow::fail(const std::string& text) const {
    messages_.show(text, title, tavrel::Icon::critical, tavrel::Buttons::ok);
}

void ConverterWindow::choosePicture() {
    tavrel::OpenDialogRequest request;
    request.title = "Open picture";
    request.filter = "Pictures (*.bmp;*.png;*.jpg;*.jpeg;*.gif)|*.bmp;*.png;*.jpg;*.jpeg;*.gif|All files|*.*";
    const std::string path = dialogs_.ShowOpenDialog(request);
    if (!path.empty())
        loadPicture(path);
}

void ConverterWindow::loadPicture(const std::string& path) {
    try {
        picture_ = readPicture(path);
    } catch (const PictureError& error) {
        fail(error.what());
        return;
    }
    path_ = path;
    SetDlgItemTextA(window_, Converter_Name, path.c_str());
    convertAgain();
}

void ConverterWindow::choosePalette() {
    const std::size_t choice = chosen(Converter_Palettes);
    if (choice == coloursOfFile) {
        const std::string path = dialogs_.ShowOpenDialog(tavrel::paletteSourceRequest(""));
        const auto palette = path.empty() ? std::nullopt : tavrel::readPaletteSource(path, messages_);
        if (!palette) {
            SendDlgItemMessageA(window_, Converter_Palettes, CB_SETCURSEL, paletteChoice_, 0);
            return;
        }
        filePalette_ = tavrel::msxPalette(*palette);
    }
    paletteChoice_ = choice;
    convertAgain();
}

void ConverterWindow::convertAgain() {
    if (!path_.empty()) {
        HCURSOR const former = SetCursor(LoadCursorA(nullptr, std::bit_cast<LPCSTR>(IDC_WAIT)));
        Options options;
        options.screen = screenChoices.at(chosen(Converter_Screens)).number;
        options.dither = ditherChoices.at(chosen(Converter_Dithers)).dither;
        options.resize = sizeChoices.at(chosen(Converter_Sizes)).resize;
        if (paletteChoice_ == powerOnColours)
            options.palette = powerOnPalette;
        else if (paletteChoice_ == coloursOfFile)
            options.palette = filePalette_;
        conversion_ = convert(picture_, options);
        SetCursor(former);
    }
    showState();
}

void ConverterWindow::showState() {
    const bool converted = conversion_.has_value();
    const bool palette = converted && conversion_->screen->hasPalette();
    EnableWindow(GetDlgItem(window_, Converter_Save), converted ? TRUE : FALSE);
    EnableWindow(GetDlgItem(window_, Converter_SavePalette), palette ? TRUE : FALSE);
    EnableWindow(GetDlgItem(window_, Converter_Copy), palette ? TRUE : FALSE);
    const Screen& screen = *findScreen(screenChoices.at(chosen(Converter_Screens)).number);
    EnableWindow(GetDlgItem(window_, Converter_Palettes), screen.hasPalette() ? TRUE : FALSE);
    std::string status = "Open a picture, or drop one here.";
    if (converted) {
        std::array<char, 80> text{};
        std::snprintf(text.data(), text.size(), "%d x %d pixels. Mean colour difference: %.1f (CIEDE2000)",
                      picture_.width, picture_.height,
                      meanDifference(conversion_->wanted, lightOf(conversion_->preview)));
        status = text.data();
    }
    SetDlgItemTextA(window_, Converter_Status, status.c_str());
    for (const int view : {Converter_Original, Converter_Preview, Converter_Palette})
        InvalidateRect(GetDlgItem(window_, view), nullptr, TRUE);
}

void ConverterWindow::savePicture() {
    tavrel::SaveDialogRequest request;
    request.title = "Save picture";
    const std::string extension = conversion_->screen->extension;
    request.filter = "MSX picture (*" + extension + ")|*" + extension;
    request.proposedPath = proposedName(path_, conversion_->screen->extension);
    request.extension = extension.substr(1); // the system puts the point before it
    const std::string path = dialogs_.showSaveDialog(request);
    if (!path.empty())
        tavrel::writeWholeFile(path, pictureFile(conversion_->memory));
}

void ConverterWindow::savePalette() {
    tavrel::SaveDialogRequest request;
    request.title = "Save palette";
    const std::string extension = conversion_->screen->paletteExtension;
    request.filter = "MSX palette (*" + extension + ")|*" + extension + "|Pascal include file (*.inc)|*.inc";
    request.proposedPath = proposedName(path_, conversion_->screen->paletteExtension);
    request.extension = extension.substr(1);
    const std::string path = dialogs_.showSaveDialog(request);
    if (!path.empty())
        tavrel::writeWholeFile(path, paletteContent(*conversion_, holdsPascal(path)));
}

void ConverterWindow::copyLines() {
    if (!tavrel::putTextOnClipboard(window_, paletteContent(*conversion_, true)))
        fail("Another program holds the clipboard.");
}

void ConverterWindow::draw(const DRAWITEMSTRUCT& item) const {
    if (item.CtlID == Converter_Palette) {
        std::optional<tavrel::RgbPalette> palette;
        if (conversion_ && conversion_->screen->hasPalette()) {
            palette.emplace();
            for (std::size_t i = 0; i < palette->size(); ++i)
                palette->at(i) = tavrel::shownColour(conversion_->palette.at(i));
        }
        tavrel::drawPaletteAfter(item, palette);
    } else if (item.CtlID == Converter_Original) {
        drawPicture(item, picture_, 1);
    } else {
        drawPicture(item, conversion_ ? conversion_->preview : Picture(),
                    conversion_ ? conversion_->screen->pixelAspect() : 1);
    }
}

void ConverterWindow::handleCommand(WORD control, WORD notification) {
    switch (control) {
    case Converter_Open:
        choosePicture();
        break;
    case Converter_Screens:
    case Converter_Dithers:
    case Converter_Sizes:
        if (notification == CBN_SELCHANGE)
            convertAgain();
        break;
    case Converter_Palettes:
        if (notification == CBN_SELCHANGE)
            choosePalette();
        break;
    case Converter_Save:
        savePicture();
        break;
    case Converter_SavePalette:
        savePalette();
        break;
    case Converter_Copy:
        copyLines();
        break;
    case IDCANCEL:
        DestroyWindow(window_);
        break;
    default:
        break;
    }
}

INT_PTR ConverterWindow::handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_DRAWITEM:
        draw(*std::bit_cast<const DRAWITEMSTRUCT*>(second));
        return TRUE;
    case WM_COMMAND:
        try {
            handleCommand(LOWORD(first), HIWORD(first));
        } catch (const tavrel::RuntimeError& error) {
            fail(error.message());
        }
        return TRUE;
    case WM_DROPFILES: {
        auto* const dropped = std::bit_cast<HDROP>(first);
        std::array<char, MAX_PATH> path{};
        DragQueryFileA(dropped, 0, path.data(), MAX_PATH);
        DragFinish(dropped);
        loadPicture(path.data());
        return TRUE;
    }
    case WM_CLOSE:
        DestroyWindow(window_);
        return TRUE;
    case WM_DESTROY:
        window_ = nullptr;
        PostQuitMessage(0);
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CALLBACK ConverterWindow::dialogProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        auto* const converter = std::bit_cast<ConverterWindow*>(second);
        SetWindowLongPtrA(window, GWLP_USERDATA, second);
        converter->window_ = window;
        converter->opened();
        return TRUE;
    }
    auto* const converter = std::bit_cast<ConverterWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    return converter != nullptr && converter->window_ != nullptr ? converter->handle(message, first, second)
                                                                 : FALSE;
}

} // namespace image
