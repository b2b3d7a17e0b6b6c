// A DOS program that uses everything the platform gives. `SELFTEST all` writes one line per check and a
// summary; other words make it end in the ways that a program can end. suite.sh runs it.
#include "dos/dos.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

int passed = 0;
int failed = 0;

void check(bool holds, std::string_view what) {
    (holds ? passed : failed)++;
    dos::print(holds ? "ok   " : "FAIL ");
    dos::print(what);
    dos::print("\r\n");
}

std::string decimal(std::uint64_t value) {
    std::string digits;
    do {
        digits.insert(digits.begin(), static_cast<char>('0' + value % 10));
        value /= 10;
    } while (value != 0);
    return digits;
}

struct Counted {
    explicit Counted(int start) : value(start) {}
    int value;
};
Counted global(42);
std::vector<std::string> globalTexts{"one", "two"};
char zeroed[70000];

void checkLanguage() {
    check(global.value == 42 && globalTexts.size() == 2, "global objects are constructed");
    check(std::all_of(std::begin(zeroed), std::end(zeroed), [](char c) { return c == 0; }), "zeroed data");
    volatile std::uint64_t large = 123456789012345ULL;
    volatile std::uint64_t divisor = 1000003;
    check(large / divisor == 123456418ULL && decimal(large) == "123456789012345", "64-bit division");
}

void checkContainers() {
    std::vector<int> numbers;
    for (int i = 0; i < 20000; ++i) {
        numbers.push_back((i * 7919) % 20011);
    }
    std::sort(numbers.begin(), numbers.end());
    check(std::is_sorted(numbers.begin(), numbers.end()) && numbers.size() == 20000, "vector and sort");
    std::string text;
    for (int i = 0; i < 1000; ++i) {
        text += "abc";
    }
    check(text.size() == 3000 && text.find("cab") == 2 && text.substr(2997) == "abc", "string");
    std::map<std::string, int> table;
    for (unsigned i = 0; i < 500; ++i) {
        table[decimal(i)] = static_cast<int>(i);
    }
    check(table.size() == 500 && table["321"] == 321, "map");
    const std::array<int, 3> three{1, 2, 3};
    const std::span<const int> view(three);
    const std::optional<int> some = view[2];
    const auto owner = std::make_unique<Counted>(*some);
    check(owner->value == 3 && view.size() == 3, "array, span, optional, unique_ptr");
    std::array<char, 10> bytes{'0', '1', '2', '3', '4', '5', '6', '7', '8', '9'};
    std::copy_backward(bytes.begin(), bytes.begin() + 7, bytes.begin() + 9);
    check(std::string_view(bytes.data(), 10) == "0101234569", "overlapping move up");
    std::copy(bytes.begin() + 2, bytes.end(), bytes.begin());
    check(std::string_view(bytes.data(), 10) == "0123456969", "overlapping move down");
}

void checkMemory() {
    const std::size_t before = dos::memoryFree();
    {
        std::vector<std::unique_ptr<std::string>> pieces;
        for (unsigned i = 0; i < 2000; ++i) {
            pieces.push_back(std::make_unique<std::string>(i % 90, 'x'));
        }
        for (unsigned i = 0; i < 2000; i += 2) {
            pieces[i].reset();
        }
        check(dos::memoryFree() < before, "memory is used");
    }
    check(dos::memoryFree() == before, "and given back");
    check(dos::memorySize() > 400000, "more than 400 kB of heap");
    check(dos::largestFree() > 400000, "in one piece");
    check(dos::stackLeft() > dos::stackSize - 2000 && dos::stackLeft() < dos::stackSize, "stack size");
}

void checkFiles() {
    std::string content;
    for (unsigned i = 0; i < 6000; ++i) {
        content += decimal(i) + "\r\n";
    }
    dos::File file;
    check(file.create("TEST.TMP") && file.write(content) && file.close(), "writes more than the buffer");
    check(file.open("test.tmp") && file.size() == content.size(), "opens, in any case, and tells the size");
    std::string back(content.size() + 10, '?');
    const std::size_t count = file.read(std::span(back.data(), back.size()));
    back.resize(count);
    check(back == content && file.error() == dos::Error::none, "reads it back to the end");
    std::array<char, 3> few{};
    check(file.seek(3) && file.read(few) == 3 && few[0] == '1', "seeks");
    dos::File other = std::move(file);
    check(!file.isOpen() && other.isOpen() && other.close(), "moves");
    check(!other.open("MISSING.TMP") && other.error() == dos::Error::fileNotFound, "a missing file");
    check(dos::rename("TEST.TMP", "TEST2.TMP") == dos::Error::none && other.open("TEST2.TMP"), "renames");
    other.close();
    check(dos::remove("TEST2.TMP") == dos::Error::none && dos::remove("TEST2.TMP") != dos::Error::none,
          "deletes");
    check(!other.create(std::string(200, 'x')) && other.error() == dos::Error::nameTooLong,
          "a name too long");
    check(!other.write("x") && other.error() == dos::Error::invalidHandle, "no file open");
}

/// Goes down with frames like a parser's until little stack is left; the depth that it reached.
unsigned descend(unsigned depth) {
    volatile char room[160] = {};
    room[depth % 160] = 1;
    const unsigned reached = dos::stackLeft() < 4096 ? depth : descend(depth + 1);
    return room[depth % 160] == 1 ? reached : 0;
}

/// Passes the end of the stack by less than the guard and what free heap lies below it.
unsigned overrunStack() {
    volatile char room[300] = {}; // volatile, and used after the call, lest the recursion become a loop
    const unsigned below = dos::stackLeft() > 0 ? overrunStack() : 0;
    room[0] = 1;
    return below + static_cast<unsigned>(room[0]);
}

[[noreturn]] void memoryIsOut() {
    dos::print("my own handler\r\n");
    dos::exit(77);
}

void eatMemory() {
    for (;;) {
        // Volatile, or the compiler leaves out an allocation that nobody looks at.
        char* volatile piece = new char[5000];
        piece[0] = 1;
    }
}

} // namespace

int dosMain() {
    const std::string_view command = dos::commandLine();
    if (command == "memory") {
        eatMemory();
    } else if (command == "handler") {
        dos::setOutOfMemoryHandler(memoryIsOut);
        eatMemory();
    } else if (command == "stack") {
        overrunStack();
        dos::print("not to be seen\r\n");
    } else if (command == "divide") {
        volatile int zero = 0;
        return 5 / zero;
    } else if (command == "at") {
        return std::vector<int>{1, 2, 3}.at(5);
    } else if (command == "depth") {
        return descend(0) > 300 ? 1 : 0;
    } else if (command == "heap") {
        // Every byte of it is memory of its own.
        const std::size_t size = dos::largestFree();
        std::vector<std::uint32_t> words(size / sizeof(std::uint32_t) - 1000);
        for (std::size_t i = 0; i < words.size(); ++i) {
            words[i] = static_cast<std::uint32_t>(i * 2654435761U);
        }
        bool whole = true;
        for (std::size_t i = 0; i < words.size(); ++i) {
            whole = whole && words[i] == static_cast<std::uint32_t>(i * 2654435761U);
        }
        dos::print(decimal(size / 1024) + (whole ? " kB whole\r\n" : " kB broken\r\n"));
        return 0;
    } else if (command == "exit 9") {
        return 9;
    } else if (command == "all") {
        checkLanguage();
        checkContainers();
        checkMemory();
        checkFiles();
        dos::print(decimal(static_cast<unsigned>(passed)) + " passed, " +
                   decimal(static_cast<unsigned>(failed)) + " failed\r\n");
        return failed == 0 ? 0 : 1;
    }
    return 200;
}
