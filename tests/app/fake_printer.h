// A printer whose pages can be read: what is drawn goes into a metafile.
#pragma once

#include "editor/print_device.h"

#include <bit>
#include <stdexcept>
#include <string>
#include <vector>

namespace tavrel::test {

class FakePrinter : public PrintDevice {
  public:
    PrintStart answer = PrintStart::printing;
    int failAtPage = 0; ///< the printer stops at this page; 0 for never
    std::vector<std::string> documents;
    int pages = 0;
    bool whole = false;
    std::vector<std::string> texts; ///< every piece of text that was drawn, once the document is closed

    ~FakePrinter() override {
        if (context_ != nullptr)
            DeleteEnhMetaFile(CloseEnhMetaFile(context_));
    }
    PrintStart open(const std::string& documentName) override {
        documents.push_back(documentName);
        pages = 0;
        texts.clear();
        if (answer == PrintStart::printing)
            context_ = CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr);
        return answer;
    }
    HDC context() const override { return context_; }
    void beginPage() override {
        if (++pages == failAtPage)
            throw std::runtime_error("out of paper");
    }
    void endPage() override {}
    void close(bool isWhole) override {
        whole = isWhole;
        HENHMETAFILE const drawn = CloseEnhMetaFile(context_);
        context_ = nullptr;
        EnumEnhMetaFile(nullptr, drawn, readRecord, this, nullptr);
        DeleteEnhMetaFile(drawn);
    }

  private:
    static int CALLBACK readRecord(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM printer) {
        if (record->iType != EMR_EXTTEXTOUTW)
            return 1;
        const auto* const output = std::bit_cast<const EMREXTTEXTOUTW*>(record);
        const auto* const characters =
            std::bit_cast<const WCHAR*>(std::bit_cast<const BYTE*>(record) + output->emrtext.offString);
        std::string text;
        for (UINT i = 0; i < output->emrtext.nChars; ++i)
            text += static_cast<char>(characters[i]);
        std::bit_cast<FakePrinter*>(printer)->texts.push_back(text);
        return 1;
    }
    HDC context_ = nullptr;
};

} // namespace tavrel::test
