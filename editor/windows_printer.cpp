#include "editor/windows_printer.h"

#include "util/late_function.h"

#include <stdexcept>

#include <commdlg.h>

namespace tavrel {

namespace {

HDC defaultPrinter() {
    PRINTDLGA request = {};
    request.lStructSize = sizeof request;
    // Nothing is shown: neither the dialog nor Windows' own words about a missing printer.
    request.Flags = PD_RETURNDEFAULT | PD_RETURNDC | PD_NOWARNING;
    if (lateFunction<decltype(PrintDlgA)>("comdlg32.dll", "PrintDlgA")(&request) == 0)
        return nullptr;
    GlobalFree(request.hDevMode);
    GlobalFree(request.hDevNames);
    return request.hDC;
}

void require(int result) {
    if (result <= 0)
        throw std::runtime_error("The printer stopped before all was printed.");
}

} // namespace

WindowsPrinter::~WindowsPrinter() {
    release();
}

void WindowsPrinter::release() {
    if (context_ != nullptr)
        DeleteDC(context_);
    context_ = nullptr;
}

PrintStart WindowsPrinter::open(const std::string& documentName) {
    release();
    context_ = defaultPrinter();
    if (context_ == nullptr)
        return PrintStart::noPrinter;
    DOCINFOA document = {};
    document.cbSize = sizeof document;
    document.lpszDocName = documentName.c_str();
    if (StartDocA(context_, &document) > 0)
        return PrintStart::printing;
    const DWORD reason = GetLastError();
    release();
    if (reason == ERROR_CANCELLED || reason == ERROR_PRINT_CANCELLED)
        return PrintStart::cancelled;
    throw std::runtime_error("The printer does not take the document.");
}

void WindowsPrinter::beginPage() {
    require(StartPage(context_));
}

void WindowsPrinter::endPage() {
    require(EndPage(context_));
}

void WindowsPrinter::close(bool whole) {
    const int result = whole ? EndDoc(context_) : AbortDoc(context_);
    release();
    if (whole)
        require(result);
}

} // namespace tavrel
