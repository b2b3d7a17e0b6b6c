#include "msxrun/fcb.h"

#include <string_view>

namespace msxrun {

namespace {

constexpr unsigned blockLength = 37;
/// Below this record size a file can hold more than 2^24 records.
constexpr unsigned fourByteRecordSize = 64;

} // namespace

Device deviceNamed(const Name83& name) {
    const std::string_view stem(name.data(), 8);
    if (stem == "CON     ") {
        return Device::con;
    }
    if (stem == "AUX     ") {
        return Device::aux;
    }
    if (stem == "NUL     ") {
        return Device::nul;
    }
    if (stem == "LST     ") {
        return Device::lst;
    }
    if (stem == "PRN     ") {
        return Device::prn;
    }
    return Device::none;
}

bool Fcb::hiddenByDiskRom() const {
    return address_ + blockLength > 0x4000U && address_ < 0x8000U;
}

Name83 Fcb::nameAt(unsigned offset) const {
    Name83 name;
    for (unsigned i = 0; i < name.size(); ++i) {
        name[i] = upperCase(static_cast<char>(memory_.byte(at(offset + i))));
    }
    return name;
}

void Fcb::setStamp(std::uint16_t date, std::uint16_t time) {
    memory_.setWord(at(20), date);
    memory_.setWord(at(22), time);
}

void Fcb::setFirstCluster(unsigned cluster) {
    memory_.setWord(at(26), cluster);
    memory_.setWord(at(28), cluster); // the cluster last used, and its place in the file
    memory_.setWord(at(30), 0);
}

void Fcb::setSequentialRecord(std::uint32_t record) {
    memory_.setWord(at(12), record / 128U);
    memory_.setByte(at(32), record % 128U);
}

void Fcb::setRandomRecord(std::uint32_t record) {
    memory_.setWord(at(33), record & 0xFFFFU);
    memory_.setByte(at(35), record >> 16U & 0xFFU);
}

std::uint32_t Fcb::blockRecord() const {
    return recordSize() < fourByteRecordSize ? memory_.doubleWord(at(33)) : randomRecord();
}

void Fcb::setBlockRecord(std::uint32_t record) {
    setRandomRecord(record);
    if (recordSize() < fourByteRecordSize) {
        memory_.setByte(at(36), record >> 24U);
    }
}

} // namespace msxrun
