// Where a text is printed page by page.
#pragma once

#include <string>
#include <windows.h>

namespace tavrel {

enum class PrintStart { printing, noPrinter, cancelled /* by the user, who was asked for a file, say */ };

/// The role of the printer; a test keeps the pages. All but open() throw std::runtime_error when the printer
/// fails.
class PrintDevice {
  public:
    virtual ~PrintDevice() = default;
    /// Begins a document on the default printer.
    virtual PrintStart open(const std::string& documentName) = 0;
    /// What pages are drawn on, from open() to close().
    virtual HDC context() const = 0;
    virtual void beginPage() = 0;
    virtual void endPage() = 0;
    /// Ends the document; one that is not `whole` is not printed.
    virtual void close(bool whole) = 0;
};

} // namespace tavrel
