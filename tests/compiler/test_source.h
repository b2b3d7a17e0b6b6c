#pragma once

#include "parser.h"
#include "tree_dump.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

namespace tp3::test {

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Source files that lie in memory.
class MemoryHost : public Host {
  public:
    std::map<std::string, std::string, std::less<>> files;
    std::size_t chunk = 100000; ///< most bytes that one read gives
    std::size_t stack = 100000;

    std::unique_ptr<SourceReader> openSource(std::string_view name) override {
        const auto found = files.find(name);
        if (found == files.end())
            return nullptr;
        return std::make_unique<Reader>(found->second, chunk);
    }
    void progress(int, std::uint32_t) override {}
    std::size_t stackLeft() override { return stack; }

  private:
    class Reader : public SourceReader {
      public:
        Reader(const std::string& text, std::size_t chunk) : text_(text), chunk_(chunk) {}
        std::size_t read(char* buffer, std::size_t capacity) override {
            const std::size_t count = std::min({capacity, chunk_, text_.size() - next_});
            std::memcpy(buffer, text_.data() + next_, count);
            next_ += count;
            return count;
        }

      private:
        const std::string& text_;
        std::size_t chunk_;
        std::size_t next_ = 0;
    };
};

/// Writes down everything that the parser hands over.
class DumpConsumer : public BodyConsumer {
  public:
    std::string text;
    std::string constants;

    void enterRoutine(Routine&) override {}
    void globalVariable(Symbol&) override {}
    void typedConstant(Symbol& constant) override {
        constants += std::string(constant.name->text) + " =";
        for (std::size_t i = 0; i < constant.type->size; ++i) {
            constexpr const char* digits = "0123456789ABCDEF";
            const auto byte = static_cast<unsigned char>(constant.text[i]);
            constants += std::string(" ") + digits[byte >> 4] + digits[byte & 15];
        }
        constants += "\n";
    }
    void body(Routine& routine, Stmt* statements, Arena::Mark) override {
        text += routine.symbol == nullptr ? "program\n" : std::string(routine.symbol->name->text) + "\n";
        text += dumpStatements(statements->body, 1);
    }
};

/// The language with all its parts, whatever the shipped compiler lets in.
inline constexpr Features allFeatures{true, true, true, true};

/// One program, parsed.
struct Parsed {
    bool ok = false;
    std::string text;
    std::string constants;
    Diagnostic diagnostic;
    std::vector<VariableFacts> facts;
    std::vector<std::vector<std::uint16_t>> callees;
    std::uint32_t lines = 0;

    /// Such as "44 5:12", with the file in between when it is not the main one.
    [[nodiscard]] std::string error() const {
        if (diagnostic.error == Error::none)
            return "none";
        const std::string file = diagnostic.position.file == 0 ? "" : diagnostic.file + " ";
        return std::to_string(static_cast<int>(diagnostic.error)) + " " + file +
               std::to_string(diagnostic.position.line) + ":" + std::to_string(diagnostic.position.column);
    }
};

inline Parsed parse(MemoryHost& host, Features features = shippedFeatures) {
    Arena arena;
    DumpConsumer consumer;
    ParserOptions options;
    options.mainFile = "MAIN.PAS";
    options.features = features;
    Parser parser(host, arena, options, consumer);
    Parsed result;
    result.ok = parser.run();
    result.text = consumer.text;
    result.constants = consumer.constants;
    result.diagnostic = parser.diagnostic();
    result.facts = parser.variableFacts();
    result.callees = parser.callees();
    result.lines = parser.lineCount();
    return result;
}

inline Parsed parse(std::string_view source, Features features = shippedFeatures) {
    MemoryHost host;
    host.files["MAIN.PAS"] = source;
    return parse(host, features);
}

} // namespace tp3::test
