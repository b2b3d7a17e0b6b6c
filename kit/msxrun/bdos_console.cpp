// The console, printer and auxiliary calls of the BDOS: 01h to 0Bh.
#include "msxrun/bdos.h"

namespace msxrun {

namespace {

constexpr std::uint8_t controlC = 0x03;
constexpr std::uint8_t backspace = 0x08;
constexpr std::uint8_t lineFeed = 0x0A;
constexpr std::uint8_t carriageReturn = 0x0D;
constexpr std::uint8_t controlN = 0x0E;
constexpr std::uint8_t controlP = 0x10;
constexpr std::uint8_t controlS = 0x13;
constexpr std::uint8_t controlX = 0x18;
constexpr std::uint8_t endOfFile = 0x1A;
constexpr std::uint8_t escape = 0x1B;
constexpr std::uint8_t deleteKey = 0x7F;

BdosAnswer inA(unsigned value) {
    return {.a = static_cast<std::uint8_t>(value)};
}

} // namespace

std::optional<BdosAnswer> Bdos::callConsole(const BdosCall& call) {
    const auto character = static_cast<std::uint8_t>(call.de & 0xFFU);
    switch (call.function) {
    case 0x01:
        return readKey(true);
    case 0x02:
        if (interrupted()) {
            return abortProgram();
        }
        writeConsole(character);
        return BdosAnswer{};
    case 0x03: // nothing is connected to the auxiliary device
        return inA(endOfFile);
    case 0x04:
        return BdosAnswer{};
    case 0x05:
        writePrinter(character);
        return BdosAnswer{};
    case 0x06:
        return directConsole(character);
    case 0x07:
        return readRaw();
    case 0x08:
        return readKey(false);
    case 0x09:
        return writeText(call.de);
    case 0x0A:
        return readLine(call.de);
    case 0x0B:
        return interrupted() ? abortProgram() : consoleStatus();
    default:
        return std::nullopt;
    }
}

/// Waits for a key and takes it. At the end of a script that is ^Z, for ever.
std::optional<std::uint8_t> Bdos::nextKey() {
    const Key key = console_.peek(true);
    if (key.kind != Key::Kind::code) {
        endDelivered_ = true;
        return std::nullopt;
    }
    console_.take();
    return key.code;
}

/// A ready key or, once, the end of a script: a program that waits for a key gets on, and one that empties
/// the keyboard comes to an end.
BdosAnswer Bdos::consoleStatus() {
    const Key key = console_.peek(false);
    const bool ready = key.kind == Key::Kind::code || (key.kind == Key::Kind::ended && !endDelivered_);
    return inA(ready ? 0xFF : 0);
}

BdosAnswer Bdos::readRaw() {
    return inA(nextKey().value_or(endOfFile));
}

void Bdos::writeConsole(std::uint8_t character) {
    console_.write(character);
    if (printerEcho_) {
        console_.print(character);
    }
}

BdosAnswer Bdos::abortProgram() {
    echoControl(controlC);
    console_.write(carriageReturn);
    console_.write(lineFeed);
    return {.endsProgram = true};
}

/// Looks at a key that waits while the program writes or asks for the status, and acts on the control keys:
/// ^S holds the output until another key comes, ^P and ^N switch the printer. True for ^C.
bool Bdos::interrupted() {
    if (!console_.interactive()) {
        return false;
    }
    const Key key = console_.peek(false);
    if (key.kind != Key::Kind::code) {
        return false;
    }
    if (key.code == controlC) {
        console_.take();
        return true;
    }
    if (heedControlKey(key.code)) {
        console_.take();
        return key.code == controlS && nextKey() == controlC;
    }
    return false;
}

/// True when the key is one that the system keeps for itself.
bool Bdos::heedControlKey(std::uint8_t key) {
    if (key == controlP || key == controlN) {
        printerEcho_ = key == controlP;
    }
    return key == controlP || key == controlN || key == controlS;
}

BdosAnswer Bdos::readKey(bool echo) {
    std::uint8_t key = 0;
    do {
        key = nextKey().value_or(endOfFile);
    } while (heedControlKey(key));
    if (key == controlC) {
        return abortProgram();
    }
    if (echo) {
        writeConsole(key);
    }
    return inA(key);
}

BdosAnswer Bdos::directConsole(std::uint8_t character) {
    if (character != 0xFF) {
        console_.write(character);
        return {};
    }
    return console_.peek(false).kind == Key::Kind::none ? inA(0) : readRaw();
}

BdosAnswer Bdos::writeText(std::uint16_t address) {
    // A text without its '$' ends after one turn around the memory instead of never.
    for (unsigned i = 0; i < 65536U; ++i) {
        const std::uint8_t character = memory_.byte(address + i);
        if (character == '$') {
            break;
        }
        if (interrupted()) {
            return abortProgram();
        }
        writeConsole(character);
    }
    return {};
}

/// Control characters are shown as ^ and their letter.
void Bdos::echoControl(std::uint8_t character) {
    if (character < ' ' && character != '\t') {
        writeConsole('^');
        writeConsole(static_cast<std::uint8_t>(character + '@'));
    } else {
        writeConsole(character);
    }
}

/// Line input. At `address`: the room for characters, then the count read, then the characters and a
/// carriage return where there is room for it.
BdosAnswer Bdos::readLine(std::uint16_t address) {
    const unsigned room = memory_.byte(address);
    unsigned count = 0;
    const auto eraseOne = [&] {
        --count;
        const unsigned columns = memory_.byte(address + 2U + count) < ' ' ? 2 : 1;
        for (unsigned i = 0; i < columns; ++i) {
            for (const std::uint8_t character : {backspace, std::uint8_t{' '}, backspace}) {
                writeConsole(character);
            }
        }
    };
    for (;;) {
        const auto key = nextKey();
        if (!key && count == 0 && room > 0) {
            memory_.setByte(address + 2U + count++, endOfFile);
        }
        if (!key || *key == carriageReturn) {
            break;
        }
        if (*key == controlC) {
            return abortProgram();
        }
        if (*key == backspace || *key == deleteKey) {
            if (count > 0) {
                eraseOne();
            }
        } else if (*key == controlX || *key == escape) {
            while (count > 0) {
                eraseOne();
            }
        } else if (!heedControlKey(*key) && count < room) {
            memory_.setByte(address + 2U + count++, *key);
            echoControl(*key);
        }
    }
    memory_.setByte(address + 1U, count);
    if (count < room) {
        memory_.setByte(address + 2U + count, carriageReturn);
    }
    writeConsole(carriageReturn);
    return {};
}

} // namespace msxrun
