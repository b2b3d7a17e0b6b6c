#include "library_machine.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <z80ex/z80ex.h>

namespace runtime_test {

namespace {

constexpr int farAway = 0x800;                  ///< bytes that no entry takes off the stack
constexpr std::uint64_t patience = 400'000'000; ///< T-states after which a routine counts as hung
constexpr std::uint8_t endOfKeys = 0x1A;

std::uint8_t low(unsigned value) {
    return static_cast<std::uint8_t>(value & 0xFFU);
}
std::uint8_t high(unsigned value) {
    return static_cast<std::uint8_t>(value >> 8U & 0xFFU);
}

void putWord(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint16_t value) {
    bytes.at(at) = low(value);
    bytes.at(at + 1) = high(value);
}

} // namespace

struct LibraryMachine::Callbacks {
    static LibraryMachine& machine(void* data) { return *static_cast<LibraryMachine*>(data); }
    static Z80EX_BYTE read(Z80EX_CONTEXT*, Z80EX_WORD at, int, void* data) {
        return machine(data).memory_[at];
    }
    static void write(Z80EX_CONTEXT*, Z80EX_WORD at, Z80EX_BYTE value, void* data) {
        machine(data).memory_[at] = value;
    }
    static Z80EX_BYTE input(Z80EX_CONTEXT*, Z80EX_WORD, void*) { return 0xFF; }
    static void output(Z80EX_CONTEXT*, Z80EX_WORD, Z80EX_BYTE, void*) {}
    static Z80EX_BYTE vector(Z80EX_CONTEXT*, void*) { return 0xFF; }
};

void LibraryMachine::ProcessorDeleter::operator()(_z80_cpu_context* processor) const {
    z80ex_destroy(processor);
}

const std::vector<std::uint8_t>& libraryFile() {
    static const std::vector<std::uint8_t> bytes = [] {
        std::ifstream file(TP3_RUNTIME_COM, std::ios::binary);
        if (!file) {
            throw std::runtime_error("RUNTIME.COM is missing");
        }
        return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(file), {});
    }();
    return bytes;
}

std::vector<std::uint8_t> programFile(const Image& image) {
    std::vector<std::uint8_t> bytes(std::max<std::size_t>(image.length, 18));
    const auto code = static_cast<std::uint16_t>(image.start + 15);
    bytes[0] = 0xC3;
    putWord(bytes, 1, code);
    putWord(bytes, 3, image.start);
    putWord(bytes, 5, image.length);
    putWord(bytes, 7, image.end);
    putWord(bytes, 9, image.stackTop);
    putWord(bytes, 11, image.heapBottom.value_or(static_cast<std::uint16_t>(image.start + image.length)));
    bytes[13] = image.flags;
    bytes[15] = 0xC3;
    putWord(bytes, 16, code);
    for (std::size_t at = 18; at < bytes.size(); ++at) {
        bytes[at] = low(static_cast<unsigned>(at * 7 + (at >> 8U)));
    }
    std::vector<std::uint8_t> file = libraryFile();
    file.insert(file.end(), bytes.begin(), bytes.end());
    return file;
}

LibraryMachine::LibraryMachine(const Image& image) : LibraryMachine(programFile(image), image.start) {}

LibraryMachine::LibraryMachine(std::span<const std::uint8_t> file)
    : LibraryMachine(std::vector<std::uint8_t>(file.begin(), file.end()), 0x2E9B) {}

LibraryMachine::LibraryMachine(std::vector<std::uint8_t> file, std::uint16_t stopAt)
    : processor_(z80ex_create(Callbacks::read, this, Callbacks::write, this, Callbacks::input, this,
                              Callbacks::output, this, Callbacks::vector, this)) {
    // Whatever was in memory before: nothing may count on zeros.
    std::generate(memory_.begin(), memory_.end(), [this] { return low(noise()); });
    std::copy(file.begin(), file.end(), memory_.begin() + 0x100);
    memory_[5] = 0xC3;
    setWord(6, tpaTop);
    memory_[0x80] = 0;
    memory_[tpaTop] = 0xC9;
    z80ex_set_reg(processor_.get(), regSP, tpaTop - 2);
    z80ex_set_reg(processor_.get(), regPC, 0x100);
    runTo(stopAt);
    programCounter = z80ex_get_reg(processor_.get(), regPC);
    startStack = z80ex_get_reg(processor_.get(), regSP);
}

LibraryMachine::~LibraryMachine() = default;

std::uint16_t LibraryMachine::address(tp3::RuntimeEntry entry) {
    return tp3::runtimeAddresses[static_cast<std::size_t>(entry)];
}

std::uint16_t LibraryMachine::word(std::uint16_t at) const {
    return static_cast<std::uint16_t>(memory_[at] | memory_[static_cast<std::uint16_t>(at + 1)] << 8U);
}

void LibraryMachine::setWord(std::uint16_t at, std::uint16_t value) {
    memory_[at] = low(value);
    memory_[static_cast<std::uint16_t>(at + 1)] = high(value);
}

std::string LibraryMachine::text(std::uint16_t at, std::size_t count) const {
    std::string result;
    for (std::size_t index = 0; index < count; ++index) {
        result += static_cast<char>(memory_[static_cast<std::uint16_t>(at + index)]);
    }
    return result;
}

void LibraryMachine::setText(std::uint16_t at, std::string_view characters) {
    for (const char character : characters) {
        memory_[at++] = static_cast<std::uint8_t>(character);
    }
}

void LibraryMachine::setString(std::uint16_t at, std::string_view characters) {
    memory_[at] = low(static_cast<unsigned>(characters.size()));
    setText(static_cast<std::uint16_t>(at + 1), characters);
}

Registers LibraryMachine::call(tp3::RuntimeEntry entry, const Registers& in, unsigned skipped) {
    const std::uint16_t target = address(entry);
    memory_[callSite] = 0xCD;
    setWord(callSite + 1, target);
    setWord(stackPointer - 2, callSite + 3);
    Z80EX_CONTEXT* const cpu = processor_.get();
    z80ex_set_reg(cpu, regSP, stackPointer - 2);
    z80ex_set_reg(cpu, regPC, target);
    z80ex_set_reg(cpu, regAF, static_cast<std::uint16_t>(in.a << 8U | low(noise())));
    z80ex_set_reg(cpu, regBC, in.bc);
    z80ex_set_reg(cpu, regDE, in.de);
    z80ex_set_reg(cpu, regHL, in.hl);
    constexpr std::array others{regAF_, regBC_, regDE_, regHL_, regIX, regIY};
    std::array<std::uint16_t, others.size()> before{};
    for (std::size_t index = 0; index < others.size(); ++index) {
        before.at(index) = noise();
        z80ex_set_reg(cpu, others.at(index), before.at(index));
    }
    runTo(static_cast<std::uint16_t>(callSite + 3 + skipped));
    if (stackDepth_ > deepestCall) {
        throw std::runtime_error("the entry takes more of the stack than the margin allows for");
    }
    otherRegistersKept = true;
    for (std::size_t index = 0; index < others.size(); ++index) {
        otherRegistersKept = otherRegistersKept && z80ex_get_reg(cpu, others.at(index)) == before.at(index);
    }
    if (!ended && z80ex_get_reg(cpu, regSP) != stackPointer) {
        throw std::runtime_error("stack pointer differs after the call");
    }
    const std::uint16_t af = z80ex_get_reg(cpu, regAF);
    return {high(af), z80ex_get_reg(cpu, regBC), z80ex_get_reg(cpu, regDE), z80ex_get_reg(cpu, regHL),
            low(af)};
}

void LibraryMachine::runProgram() {
    watchesHeap_ = true;
    constexpr std::uint16_t nowhere = 4; // below the BDOS's entry, where no program goes
    runTo(nowhere);
}

void LibraryMachine::runTo(std::uint16_t stopAt) {
    Z80EX_CONTEXT* const cpu = processor_.get();
    tStates = 0;
    ended = false;
    stackDepth_ = 0;
    while (true) {
        const std::uint16_t pc = z80ex_get_reg(cpu, regPC);
        if (pc == stopAt) {
            return;
        }
        if (pc == 0) {
            ended = true;
            return;
        }
        if (pc == tpaTop) {
            serveBdos();
        }
        do {
            tStates += static_cast<std::uint64_t>(z80ex_step(cpu));
        } while (z80ex_last_op_type(cpu) != 0);
        const int depth = stackPointer - int{z80ex_get_reg(cpu, regSP)};
        if (depth < farAway) { // a program that takes over has a stack elsewhere
            stackDepth_ = std::max(stackDepth_, depth);
        }
        if (watchesHeap_) {
            leastGap = std::min(leastGap, int{z80ex_get_reg(cpu, regSP)} -
                                              int{word(address(tp3::RuntimeEntry::heapPtr))});
        }
        if (tStates > patience) {
            throw std::runtime_error("the routine does not come back");
        }
    }
}

std::uint8_t LibraryMachine::nextKey() {
    if (keys.empty()) {
        return endOfKeys;
    }
    const auto key = static_cast<std::uint8_t>(keys.front());
    keys.erase(0, 1);
    return key;
}

// Only what the library uses; names stand for clusters, and nothing is cut when it is not closed.
std::pair<std::uint8_t, std::uint16_t> LibraryMachine::serveFile(std::uint8_t function, std::uint16_t block,
                                                                 std::uint16_t count) {
    const auto nameAt = [this](unsigned at) {
        std::string stem = text(static_cast<std::uint16_t>(at), 8);
        std::string type = text(static_cast<std::uint16_t>(at + 8), 3);
        stem.erase(stem.find_last_not_of(' ') + 1);
        type.erase(type.find_last_not_of(' ') + 1);
        return type.empty() ? stem : stem + "." + type;
    };
    const std::string name = nameAt(block + 1U);
    const auto size = static_cast<std::uint16_t>(block + 16);
    const auto missing = std::pair<std::uint8_t, std::uint16_t>{0xFF, noise()};
    if (name.empty() || (function == 0x16 && files.size() >= 112)) {
        return missing;
    }
    if (function == 0x16) {
        files[name].clear();
    }
    const auto file = files.find(name);
    if (file == files.end()) {
        return missing;
    }
    if (function == 0x13) {
        files.erase(file);
    } else if (function == 0x17) {
        const std::string newName = nameAt(block + 17U);
        if (files.contains(newName)) {
            return missing;
        }
        files[newName] = file->second;
        files.erase(name);
    } else if (function == 0x26 || function == 0x27) {
        const std::uint8_t result = transferBlock(file->second, block, count, function == 0x26);
        setWord(size, static_cast<std::uint16_t>(file->second.size()));
        return {result, count};
    } else if (function != 0x10) {
        setWord(size, static_cast<std::uint16_t>(file->second.size()));
        setWord(static_cast<std::uint16_t>(size + 2), static_cast<std::uint16_t>(file->second.size() >> 16U));
    }
    return {0, noise()};
}

std::uint8_t LibraryMachine::transferBlock(std::string& bytes, std::uint16_t block, std::uint16_t& count,
                                           bool writes) {
    const std::size_t record = word(static_cast<std::uint16_t>(block + 14));
    const auto random = static_cast<std::uint16_t>(block + 33);
    const std::size_t number = word(random) | std::size_t{byte(static_cast<std::uint16_t>(block + 35))}
                                                  << 16U;
    const std::size_t start = number * record;
    std::size_t done = count;
    if (writes) {
        std::size_t used = 0;
        for (const auto& [name, content] : files) {
            used += content.size();
        }
        const std::size_t end = start + count * record;
        if (end > bytes.size() && used + end - bytes.size() > diskRoom) {
            return 1;
        }
        bytes.resize(std::max(bytes.size(), end), static_cast<char>(0xE5));
        for (std::size_t index = 0; index < count * record; ++index) {
            bytes[start + index] = static_cast<char>(memory_[(transferAddress_ + index) & 0xFFFFU]);
        }
    } else {
        const std::size_t left = start < bytes.size() ? bytes.size() - start : 0;
        done = std::min<std::size_t>(count, (left + record - 1) / record);
        for (std::size_t index = 0; index < done * record; ++index) {
            memory_[(transferAddress_ + index) & 0xFFFFU] =
                start + index < bytes.size() ? static_cast<std::uint8_t>(bytes[start + index]) : 0;
        }
    }
    setWord(random, static_cast<std::uint16_t>(number + done));
    setByte(static_cast<std::uint16_t>(block + 35), static_cast<std::uint8_t>((number + done) >> 16U));
    const bool complete = done == count;
    count = static_cast<std::uint16_t>(done);
    return complete ? 0 : 1;
}

void LibraryMachine::serveBdos() {
    Z80EX_CONTEXT* const cpu = processor_.get();
    const std::uint8_t function = low(z80ex_get_reg(cpu, regBC));
    const std::uint16_t parameter = z80ex_get_reg(cpu, regDE);
    functions.push_back(function);
    std::uint16_t a = noise();
    std::uint16_t hl = noise();
    std::uint16_t de = noise();
    switch (function) {
    case 0x02:
        output += static_cast<char>(low(parameter));
        break;
    case 0x06:
        if (low(parameter) == 0xFF) {
            a = keys.empty() ? 0 : nextKey();
        } else {
            output += static_cast<char>(low(parameter));
        }
        break;
    case 0x07:
        a = nextKey();
        break;
    case 0x09:
        for (std::uint16_t at = parameter; memory_[at] != '$'; ++at) {
            output += static_cast<char>(memory_[at]);
        }
        break;
    case 0x0B:
        a = keys.empty() ? 0 : 0xFF;
        break;
    case 0x0C:
        a = 0x22;
        hl = 0x0022;
        break;
    case 0x2C:
        hl = 0x0B1E;
        de = 0x2D07;
        break;
    case 0x03:
        a = auxiliaryInput.empty() ? endOfKeys : static_cast<std::uint8_t>(auxiliaryInput.front());
        auxiliaryInput.erase(0, 1);
        break;
    case 0x04:
        auxiliary += static_cast<char>(low(parameter));
        break;
    case 0x05:
        printer += static_cast<char>(low(parameter));
        break;
    case 0x1A:
        transferAddress_ = parameter;
        break;
    case 0x0F:
    case 0x10:
    case 0x13:
    case 0x16:
    case 0x17:
    case 0x26:
    case 0x27: {
        const auto answer = serveFile(function, parameter, z80ex_get_reg(cpu, regHL));
        a = answer.first;
        hl = answer.second;
        break;
    }
    default:
        throw std::runtime_error("BDOS function " + std::to_string(function) + " is not expected");
    }
    z80ex_set_reg(cpu, regAF, static_cast<std::uint16_t>(low(a) << 8U | low(noise())));
    z80ex_set_reg(cpu, regHL, hl);
    z80ex_set_reg(cpu, regDE, de);
    for (const Z80_REG_T other : {regBC, regAF_, regBC_, regDE_, regHL_, regIX, regIY}) {
        z80ex_set_reg(cpu, other, noise());
    }
}

std::uint16_t LibraryMachine::noise() {
    noise_ = noise_ * 1664525U + 1013904223U;
    return static_cast<std::uint16_t>(noise_ >> 16U);
}

} // namespace runtime_test
