#include "msxrun/bdos.h"

#include <ctime>
#include <utility>

namespace msxrun {

namespace {

constexpr std::uint8_t failure = 0xFF;

BdosAnswer inA(unsigned value) {
    return {.a = static_cast<std::uint8_t>(value)};
}

unsigned highByte(std::uint16_t word) {
    return word >> 8U;
}

unsigned lowByte(std::uint16_t word) {
    return word & 0xFFU;
}

unsigned daysOfMonth(unsigned year, unsigned month) {
    if (month == 2) {
        // From 1980 to 2079 every fourth year is a leap year.
        return year % 4 == 0 ? 29 : 28;
    }
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

} // namespace

Bdos::Bdos(Memory& memory, Console& console, Disk& disk, Notice notice)
    : memory_(memory), console_(console), disk_(disk), notice_(std::move(notice)) {}

BdosAnswer Bdos::call(const BdosCall& call) {
    if (const auto answer = callConsole(call)) {
        return *answer;
    }
    if (const auto answer = callFaultyDisk(call)) {
        return *answer;
    }
    if (const auto answer = callDirectory(call)) {
        return *answer;
    }
    if (const auto answer = callTransfer(call)) {
        return *answer;
    }
    return callSystem(call);
}

BdosAnswer Bdos::callSystem(const BdosCall& call) {
    switch (call.function) {
    case 0x00:
        return {.endsProgram = true};
    case 0x0C:
        return {.hl = std::uint16_t{0x0022}};
    case 0x0D:
        dma_ = 0x80;
        return {};
    case 0x0E: // only A: is there, so there is nothing to select; the answer is the number of drives
        return inA(1);
    case 0x18:
        return {.hl = std::uint16_t{1}};
    case 0x19:
        return inA(0);
    case 0x1A:
        dma_ = call.de;
        return {};
    case 0x1B:
        return diskInformation(lowByte(call.de));
    case 0x2A:
        return date();
    case 0x2B:
        return setDate(call);
    case 0x2C:
        return time();
    case 0x2D:
        return setTime(call);
    case 0x2E: // verify after write: the host's files need no second look
        return {};
    case 0x2F:
    case 0x30:
        notice_("absolute sectors are not available: the disk is a folder");
        return inA(1);
    case 0x1C:
    case 0x1D:
    case 0x1E:
    case 0x1F:
    case 0x20:
    case 0x25:
    case 0x29:
        return inA(0);
    default:
        notice_("undefined BDOS function " + std::to_string(call.function));
        return {};
    }
}

BdosAnswer Bdos::diskInformation(unsigned drive) {
    if (drive > 1) {
        return inA(failure);
    }
    constexpr std::uint16_t sectorBytes = 512;
    const auto free = static_cast<std::uint16_t>(
        std::min<std::uint64_t>(disk_.freeBytes() / Disk::clusterBytes, Disk::clusterCount));
    return {.a = static_cast<std::uint8_t>(Disk::clusterBytes / sectorBytes),
            .hl = free,
            .de = static_cast<std::uint16_t>(Disk::clusterCount),
            .bc = sectorBytes};
}

std::tm Bdos::now() const {
    const std::time_t moment =
        std::chrono::system_clock::to_time_t(std::chrono::system_clock::now() + clockOffset_);
    std::tm local{};
    localtime_r(&moment, &local);
    return local;
}

void Bdos::setNow(std::tm wanted) {
    wanted.tm_isdst = -1;
    // Whole seconds of both: a part of one would put the clock a second back.
    const std::time_t present = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    clockOffset_ = std::chrono::seconds(std::mktime(&wanted) - present);
}

BdosAnswer Bdos::date() const {
    const std::tm local = now();
    return {.a = static_cast<std::uint8_t>(local.tm_wday),
            .hl = static_cast<std::uint16_t>(local.tm_year + 1900),
            .de = static_cast<std::uint16_t>((local.tm_mon + 1) << 8 | local.tm_mday)};
}

BdosAnswer Bdos::time() const {
    const std::tm local = now();
    return {.hl = static_cast<std::uint16_t>(local.tm_hour << 8 | local.tm_min),
            .de = static_cast<std::uint16_t>(std::min(local.tm_sec, 59) << 8)};
}

BdosAnswer Bdos::setDate(const BdosCall& call) {
    const unsigned year = call.hl;
    const unsigned month = highByte(call.de);
    const unsigned day = lowByte(call.de);
    if (year < 1980 || year > 2079 || month < 1 || month > 12 || day < 1 || day > daysOfMonth(year, month)) {
        return inA(failure);
    }
    std::tm wanted = now();
    wanted.tm_year = static_cast<int>(year) - 1900;
    wanted.tm_mon = static_cast<int>(month) - 1;
    wanted.tm_mday = static_cast<int>(day);
    setNow(wanted);
    return inA(0);
}

BdosAnswer Bdos::setTime(const BdosCall& call) {
    const unsigned hour = highByte(call.hl);
    const unsigned minute = lowByte(call.hl);
    const unsigned second = highByte(call.de);
    if (hour > 23 || minute > 59 || second > 59) {
        return inA(failure);
    }
    std::tm wanted = now();
    wanted.tm_hour = static_cast<int>(hour);
    wanted.tm_min = static_cast<int>(minute);
    wanted.tm_sec = static_cast<int>(second);
    setNow(wanted);
    return inA(0);
}

} // namespace msxrun
