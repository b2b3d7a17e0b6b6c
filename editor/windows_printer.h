#pragma once

#include "editor/print_device.h"

namespace tavrel {

/// The default printer of Windows.
class WindowsPrinter : public PrintDevice {
  public:
    WindowsPrinter() = default;
    ~WindowsPrinter() override;
    WindowsPrinter(const WindowsPrinter&) = delete;
    WindowsPrinter& operator=(const WindowsPrinter&) = delete;

    PrintStart open(const std::string& documentName) override;
    HDC context() const override { return context_; }
    void beginPage() override;
    void endPage() override;
    void close(bool whole) override;

  private:
    void release();
    HDC context_ = nullptr;
};

} // namespace tavrel
