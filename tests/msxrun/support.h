// What the tests of the machine share: a console that plays a script and a folder that cleans up.
#pragma once

#include "msxrun/bdos.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace msxrun::test {

/// Plays the keys given and keeps what is shown and printed.
class ScriptedConsole : public Console {
  public:
    explicit ScriptedConsole(std::string typed = "", bool person = false)
        : keys(std::move(typed)), person_(person) {}

    Key peek(bool) override {
        if (next_ == keys.size()) {
            return {.kind = Key::Kind::ended};
        }
        return {.kind = Key::Kind::code, .code = static_cast<std::uint8_t>(keys[next_])};
    }
    void take() override { next_ += next_ < keys.size() ? 1U : 0U; }
    bool interactive() const override { return person_; }
    void write(std::uint8_t character) override { screen += static_cast<char>(character); }
    void print(std::uint8_t character) override { paper += static_cast<char>(character); }

    std::string keys;
    std::string screen;
    std::string paper;

  private:
    std::size_t next_ = 0;
    bool person_;
};

/// An empty folder that goes away with everything in it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "msxrunXXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    void put(const std::string& name, std::string_view text) const {
        std::ofstream(path / name, std::ios::binary) << text;
    }
    std::string get(const std::string& name) const {
        std::ifstream file(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    bool has(const std::string& name) const { return std::filesystem::exists(path / name); }

    std::filesystem::path path;
};

/// A BDOS with everything around it, and control blocks to call it with.
class BdosBench {
  public:
    explicit BdosBench(std::string keys = "", bool person = false, std::uint64_t freeBytes = 100000)
        : console(std::move(keys), person), disk(folder.path, freeBytes),
          bdos(memory, console, disk, [this](const std::string& line) { notices.push_back(line); }) {}

    BdosAnswer call(unsigned function, unsigned de = 0, unsigned hl = 0) {
        return bdos.call({.function = static_cast<std::uint8_t>(function),
                          .de = static_cast<std::uint16_t>(de),
                          .hl = static_cast<std::uint16_t>(hl)});
    }
    /// The A that a call gives back; -1 when it gives none.
    int a(unsigned function, unsigned de = 0, unsigned hl = 0) {
        const BdosAnswer answer = call(function, de, hl);
        return answer.a ? *answer.a : -1;
    }
    /// A clean control block for the 11 characters of a name.
    void putFcb(unsigned address, std::string_view name) {
        for (unsigned i = 0; i < 37; ++i) {
            memory.setByte(address + i, 0);
        }
        putText(address + 1, name);
    }
    void putText(unsigned address, std::string_view text) {
        for (unsigned i = 0; i < text.size(); ++i) {
            memory.setByte(address + i, static_cast<unsigned char>(text[i]));
        }
    }
    std::string text(unsigned address, unsigned length) const {
        std::string found;
        for (unsigned i = 0; i < length; ++i) {
            found += static_cast<char>(memory.byte(address + i));
        }
        return found;
    }

    TemporaryFolder folder;
    Memory memory;
    ScriptedConsole console;
    Disk disk;
    std::vector<std::string> notices;
    Bdos bdos;
};

} // namespace msxrun::test
