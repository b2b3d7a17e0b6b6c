// Any text as a source: an image or a numbered error, always the same. Two files lie beside it: MORE.INC,
// which is the part of the text behind the first NUL, and SELF.INC, which includes itself.
#include "compiler.h"
#include "fuzzer.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

using tavrel::fuzzing::require;

namespace {

class TextReader : public tp3::SourceReader {
  public:
    explicit TextReader(std::string_view text) : text_(text) {}
    std::size_t read(char* buffer, std::size_t capacity) override {
        const std::size_t count = std::min(capacity, text_.size());
        std::memcpy(buffer, text_.data(), count);
        text_.remove_prefix(count);
        return count;
    }

  private:
    std::string_view text_;
};

class TextHost : public tp3::Host {
  public:
    explicit TextHost(std::string_view text) : text_(text) {}
    std::unique_ptr<tp3::SourceReader> openSource(std::string_view name) override {
        const std::size_t end = std::min(text_.find('\0'), text_.size());
        if (name == "MAIN.PAS")
            return std::make_unique<TextReader>(text_.substr(0, end));
        if (name == "MORE.INC")
            return std::make_unique<TextReader>(text_.substr(std::min(end + 1, text_.size())));
        if (name == "SELF.INC")
            return std::make_unique<TextReader>("begin {$I SELF.INC} end;");
        return nullptr;
    }
    void progress(int, std::uint32_t) override {}
    std::size_t stackLeft() override { return 200000; }

  private:
    std::string_view text_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TextHost host(std::string_view(reinterpret_cast<const char*>(data), size));
    tp3::CompileOptions options;
    options.mainFile = "MAIN.PAS";
    const tp3::CompileResult result = tp3::compile(host, options);
    require(result.ok == (result.diagnostic.error == tp3::Error::none));
    require(result.ok || (result.image.empty() && result.diagnostic.position.line > 0));
    require(!result.ok || result.codeEnd <= result.dataBottom);
    return 0;
}
