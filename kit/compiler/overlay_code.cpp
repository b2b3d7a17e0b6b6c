#include "overlay_code.h"

#include <algorithm>
#include <runtime_entries.h>

namespace tp3 {

namespace {

using Bytes = std::vector<std::uint8_t>;

void putWord(Bytes& bytes, std::size_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFFU));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8U & 0xFFU));
}

void addToWord(Bytes& bytes, std::size_t offset, std::uint32_t value) {
    const std::uint32_t sum = bytes[offset] + (std::uint32_t{bytes[offset + 1]} << 8U) + value;
    bytes[offset] = static_cast<std::uint8_t>(sum & 0xFFU);
    bytes[offset + 1] = static_cast<std::uint8_t>(sum >> 8U & 0xFFU);
}

} // namespace

void OverlayCode::begin(const Overlays& overlays, std::string_view fileName) {
    overlays_ = &overlays;
    fileName_ = fileName;
    units_.resize(overlays.units().size());
    groups_.resize(overlays.groups());
}

bool OverlayCode::add(std::uint16_t routine, const z80::Encoded& code) {
    if (!holds(routine)) {
        return false;
    }
    Unit& unit = units_[overlays_->unitOf(routine)];
    const std::size_t base = unit.bytes.size();
    if (base + code.bytes.size() > 0xFFFFU) {
        tooLarge_ = true;
        return true;
    }
    if (offsets_.size() <= routine) {
        offsets_.resize(routine + std::size_t{1});
    }
    offsets_[routine] = static_cast<std::uint16_t>(base);
    if (overlays_->units()[overlays_->unitOf(routine)].root == routine) {
        unit.rootOffset = static_cast<std::uint16_t>(base);
    }
    unit.bytes.insert(unit.bytes.end(), code.bytes.begin(), code.bytes.end());
    for (const z80::Fixup& own : code.ownAddresses) {
        const auto offset = static_cast<std::uint16_t>(base + own.offset);
        addToWord(unit.bytes, offset, static_cast<std::uint32_t>(base));
        unit.ownAddresses.push_back(offset);
    }
    for (const z80::Fixup& fixup : code.fixups) {
        unit.fixups.push_back({static_cast<std::uint16_t>(base + fixup.offset), fixup.target, fixup.index});
    }
    return true;
}

void OverlayCode::addStubs(Bytes& image, std::uint16_t start,
                           const std::function<void(std::uint16_t, std::uint16_t)>& place) {
    for (std::size_t i = 0; i < units_.size(); ++i) {
        Group& group = groups_[overlays_->units()[i].group];
        group.size = std::max(group.size, units_[i].bytes.size());
    }
    constexpr std::size_t recordSize = 15;
    constexpr std::size_t stubSize = 12;
    std::size_t area = start + image.size();
    for (const Group& group : groups_) {
        area += group.size != 0 ? recordSize : 0;
    }
    for (const Unit& unit : units_) {
        area += unit.bytes.empty() ? 0 : stubSize;
    }
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        Group& group = groups_[i];
        if (group.size == 0) {
            continue;
        }
        // A record: the unit that is loaded (the address in its stub; none yet), the area, the file's name.
        group.area = static_cast<std::uint16_t>(area);
        area += group.size;
        areaBytes_ += group.size;
        group.record = image.size();
        putWord(image, 0);
        putWord(image, group.area);
        image.insert(image.end(), fileName_.begin(), fileName_.end());
        for (const unsigned power : {100U, 10U, 1U}) {
            image.push_back(static_cast<std::uint8_t>('0' + i / power % 10));
        }
    }
    for (std::size_t i = 0; i < units_.size(); ++i) {
        const Unit& unit = units_[i];
        if (unit.bytes.empty()) {
            continue;
        }
        // A stub: CALL overlayEnter, the routine's address, its group's record, place and length in the file.
        Group& group = groups_[overlays_->units()[i].group];
        place(overlays_->units()[i].root, static_cast<std::uint16_t>(image.size()));
        image.push_back(0xCD);
        putWord(image, runtimeAddresses[static_cast<std::size_t>(RuntimeEntry::overlayEnter)]);
        putWord(image, group.area + std::size_t{unit.rootOffset});
        putWord(image, start + group.record);
        putWord(image, group.fileSize);
        image.push_back(static_cast<std::uint8_t>(group.fileSize >> 16U));
        putWord(image, unit.bytes.size());
        group.fileSize += unit.bytes.size();
    }
}

bool OverlayCode::isInside(const z80::Fixup& fixup, std::size_t unit) const {
    return fixup.target == z80::Target::routine && overlays_->unitOf(fixup.index) == unit &&
           overlays_->units()[unit].root != fixup.index;
}

void OverlayCode::resolve(const std::function<std::uint16_t(const z80::Fixup&)>& addressOf) {
    for (std::size_t i = 0; i < units_.size(); ++i) {
        Unit& unit = units_[i];
        const std::uint16_t area = groups_[overlays_->units()[i].group].area;
        for (const std::uint16_t offset : unit.ownAddresses) {
            addToWord(unit.bytes, offset, area);
        }
        for (const z80::Fixup& fixup : unit.fixups) {
            addToWord(unit.bytes, fixup.offset,
                      isInside(fixup, i) ? std::uint32_t{area} + offsets_[fixup.index] : addressOf(fixup));
        }
    }
}

std::vector<Bytes> OverlayCode::takeFiles() {
    std::vector<Bytes> files(groups_.size());
    for (std::size_t i = 0; i < units_.size(); ++i) {
        Bytes& file = files[overlays_->units()[i].group];
        file.insert(file.end(), units_[i].bytes.begin(), units_[i].bytes.end());
        units_[i].bytes = {};
    }
    return files;
}

} // namespace tp3
