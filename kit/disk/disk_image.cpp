#include "disk/disk_image.h"

#include <algorithm>
#include <set>

namespace disk {

namespace {

// Offsets in a directory entry.
constexpr std::size_t attributes = 11;
constexpr std::size_t writtenTime = 22;
constexpr std::size_t writtenDate = 24;
constexpr std::size_t firstCluster = 26;
constexpr std::size_t fileSize = 28;

constexpr std::uint8_t neverUsed = 0x00; // in place of a name's first character; ends the directory
constexpr std::uint8_t deleted = 0xE5;   // likewise
constexpr std::uint8_t standsForE5 = 0x05;

constexpr std::uint8_t volumeName = 0x08;
constexpr std::uint8_t folder = 0x10;
constexpr std::uint8_t longName = 0x0F; // all of read-only, hidden, system, volume name
constexpr std::uint8_t attributeBits = 0x3F;

// Values in the file allocation table.
constexpr unsigned freeCluster = 0;
constexpr unsigned firstEndMark = 0xFF8; // this and all above
constexpr unsigned endMark = 0xFFF;

bool isLongName(std::span<const std::uint8_t> entry) {
    return (entry[attributes] & attributeBits) == longName;
}

FileEntry entryOf(std::span<const std::uint8_t> entry, unsigned slot) {
    FileEntry file;
    std::copy_n(entry.begin(), file.name.size(), file.name.begin());
    if (entry[0] == standsForE5)
        file.name[0] = static_cast<char>(deleted);
    file.isFolder = (entry[attributes] & folder) != 0;
    file.size = readLong(entry, fileSize);
    file.written.time = static_cast<std::uint16_t>(readWord(entry, writtenTime));
    file.written.date = static_cast<std::uint16_t>(readWord(entry, writtenDate));
    file.firstCluster = readWord(entry, firstCluster);
    file.slot = slot;
    return file;
}

std::string quoted(const Name83& name) {
    std::string text = msxrun::nameForHost(name);
    for (char& character : text) {
        if (character < ' ' || character > '~')
            character = '?';
    }
    return text;
}

} // namespace

DiskImage::DiskImage() : bytes_(geometry_.totalSectors * sectorBytes) {
    writeBootSector(bytes_, geometry_);
    for (unsigned copy = 0; copy < geometry_.fatCount; ++copy) {
        const std::size_t start = geometry_.fatOffset() + copy * geometry_.fatBytes();
        bytes_[start] = geometry_.media;
        bytes_[start + 1] = 0xFF;
        bytes_[start + 2] = 0xFF;
    }
}

DiskImage::DiskImage(Bytes bytes) : geometry_(readGeometry(bytes)), bytes_(std::move(bytes)) {}

std::span<std::uint8_t> DiskImage::slot(unsigned index) {
    return std::span(bytes_).subspan(geometry_.rootOffset() + index * directoryEntryBytes,
                                     directoryEntryBytes);
}

std::span<const std::uint8_t> DiskImage::slot(unsigned index) const {
    return std::span(bytes_).subspan(geometry_.rootOffset() + index * directoryEntryBytes,
                                     directoryEntryBytes);
}

unsigned DiskImage::fatEntry(unsigned cluster) const {
    const unsigned pair = readWord(bytes_, geometry_.fatOffset() + cluster + cluster / 2);
    return cluster % 2 == 0 ? pair & 0xFFF : pair >> 4;
}

void DiskImage::setFatEntry(unsigned cluster, unsigned value) {
    const std::size_t offset = geometry_.fatOffset() + cluster + cluster / 2;
    const unsigned pair = readWord(bytes_, offset);
    writeWord(bytes_, offset, cluster % 2 == 0 ? (pair & 0xF000) | value : (pair & 0x000F) | value << 4);
}

std::size_t DiskImage::freeClusters() const {
    std::size_t count = 0;
    for (unsigned cluster = 2; isCluster(cluster); ++cluster)
        count += fatEntry(cluster) == freeCluster ? 1U : 0U;
    return count;
}

std::size_t DiskImage::clustersFor(std::size_t size) const {
    return (size + geometry_.clusterBytes() - 1) / geometry_.clusterBytes();
}

std::vector<FileEntry> DiskImage::list() const {
    std::vector<FileEntry> files;
    for (unsigned index = 0; index < geometry_.rootEntries; ++index) {
        const auto entry = slot(index);
        if (entry[0] == neverUsed)
            break;
        // A long name counts as a volume name too.
        if (entry[0] != deleted && (entry[attributes] & volumeName) == 0)
            files.push_back(entryOf(entry, index));
    }
    return files;
}

std::optional<FileEntry> DiskImage::find(const Name83& name) const {
    for (const FileEntry& file : list()) {
        if (file.name == name)
            return file;
    }
    return std::nullopt;
}

/// Empty when the file is sound. Marks its clusters, so that one that two files claim, or one file twice, is
/// found; that also ends a walk in a circle.
std::string DiskImage::faultOf(const FileEntry& file, std::vector<bool>& used) const {
    std::size_t count = 0;
    unsigned cluster = file.firstCluster;
    if (cluster != 0 || file.isFolder) {
        while (cluster < firstEndMark || count == 0) {
            if (!isCluster(cluster))
                return quoted(file.name) + " leads to a place that the disk does not have";
            if (used[cluster])
                return quoted(file.name) + " runs into itself or another file";
            used[cluster] = true;
            ++count;
            cluster = fatEntry(cluster);
        }
    }
    if (!file.isFolder && count < clustersFor(file.size))
        return quoted(file.name) + " is shorter than the directory says";
    return {};
}

std::vector<std::string> DiskImage::faults() const {
    std::vector<std::string> found;
    std::vector<bool> used(geometry_.clusterCount() + 2);
    std::set<Name83> names;
    for (const FileEntry& file : list()) {
        if (!names.insert(file.name).second)
            found.push_back(quoted(file.name) + " stands in the directory twice");
        if (std::string fault = faultOf(file, used); !fault.empty())
            found.push_back(std::move(fault));
    }
    return found;
}

Bytes DiskImage::extract(const FileEntry& file) const {
    if (file.isFolder)
        throw DiskError(quoted(file.name) + " is a folder");
    std::vector<bool> used(geometry_.clusterCount() + 2);
    if (const std::string fault = faultOf(file, used); !fault.empty())
        throw DiskError(fault);
    Bytes content;
    content.reserve(file.size);
    for (unsigned cluster = file.firstCluster; content.size() < file.size; cluster = fatEntry(cluster)) {
        const auto from = bytes_.begin() + static_cast<std::ptrdiff_t>(geometry_.clusterOffset(cluster));
        const std::size_t count = std::min<std::size_t>(geometry_.clusterBytes(), file.size - content.size());
        content.insert(content.end(), from, from + static_cast<std::ptrdiff_t>(count));
    }
    return content;
}

/// On a damaged disk, what one file gives up may belong to another.
void DiskImage::requireSound() const {
    const auto found = faults();
    if (!found.empty())
        throw DiskError("the disk is damaged: " + found.front());
}

void DiskImage::release(const FileEntry& file) {
    unsigned cluster = file.firstCluster;
    while (isCluster(cluster)) {
        const unsigned next = fatEntry(cluster);
        setFatEntry(cluster, freeCluster);
        cluster = next;
    }
    const auto entry = slot(file.slot);
    writeWord(entry, firstCluster, 0);
    writeLong(entry, fileSize, 0);
}

/// Empties the files that will be replaced and makes sure that the new ones fit.
void DiskImage::makeRoom(const std::vector<NewFile>& files) {
    std::size_t newClusters = 0;
    std::size_t newEntries = 0;
    for (const NewFile& file : files) {
        newClusters += clustersFor(file.content.size());
        const auto former = find(file.name);
        if (!former)
            ++newEntries;
        else if (former->isFolder)
            throw DiskError("the disk has a folder named " + quoted(file.name));
        else
            release(*former);
    }
    if (const std::size_t room = freeClusters(); newClusters > room) {
        const std::size_t lacking = (newClusters - room) * geometry_.clusterBytes();
        throw DiskError("the disk is full: " + std::to_string(lacking) + " bytes more would be needed");
    }
    std::size_t freeEntries = 0;
    bool ended = false;
    for (unsigned index = 0; index < geometry_.rootEntries; ++index) {
        ended = ended || slot(index)[0] == neverUsed;
        freeEntries += ended || slot(index)[0] == deleted ? 1U : 0U;
    }
    if (newEntries > freeEntries)
        throw DiskError("the directory of the disk is full: it takes " +
                        std::to_string(geometry_.rootEntries) + " files");
}

unsigned DiskImage::freeSlot() const {
    unsigned index = 0;
    while (slot(index)[0] != neverUsed && slot(index)[0] != deleted)
        ++index; // makeRoom has seen that there is one
    return index;
}

/// Clears a slot. The mark that ended the directory there moves on: what lies behind it may be anything.
void DiskImage::takeSlot(unsigned index) {
    if (slot(index)[0] == neverUsed && index + 1 < geometry_.rootEntries)
        slot(index + 1)[0] = neverUsed;
    std::ranges::fill(slot(index), std::uint8_t{0});
}

/// Puts bytes into free clusters. @return the first of them, 0 for no bytes
unsigned DiskImage::store(const Bytes& content) {
    unsigned first = 0;
    unsigned previous = 0;
    std::size_t done = 0;
    for (unsigned cluster = 2; done < content.size(); ++cluster) {
        if (fatEntry(cluster) != freeCluster)
            continue;
        const std::size_t count = std::min(geometry_.clusterBytes(), content.size() - done);
        const auto from = content.begin() + static_cast<std::ptrdiff_t>(done);
        const auto to = bytes_.begin() + static_cast<std::ptrdiff_t>(geometry_.clusterOffset(cluster));
        const auto end = std::copy_n(from, count, to);
        std::fill_n(end, geometry_.clusterBytes() - count, std::uint8_t{0});
        setFatEntry(cluster, endMark);
        if (previous == 0)
            first = cluster;
        else
            setFatEntry(previous, cluster);
        previous = cluster;
        done += count;
    }
    return first;
}

void DiskImage::put(const NewFile& file) {
    const auto former = find(file.name);
    const unsigned index = former ? former->slot : freeSlot();
    if (!former)
        takeSlot(index);
    const auto entry = slot(index);
    std::copy(file.name.begin(), file.name.end(), entry.begin());
    if (entry[0] == deleted)
        entry[0] = standsForE5;
    entry[attributes] = 0; // hidden ones the MSX would not find
    writeWord(entry, writtenTime, file.written.time);
    writeWord(entry, writtenDate, file.written.date);
    writeWord(entry, firstCluster, store(file.content));
    writeLong(entry, fileSize, static_cast<std::uint32_t>(file.content.size()));
}

/// The other copies of the file allocation table follow the first.
void DiskImage::finish() {
    const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(geometry_.fatOffset());
    const auto length = static_cast<std::ptrdiff_t>(geometry_.fatBytes());
    for (unsigned copy = 1; copy < geometry_.fatCount; ++copy)
        std::copy_n(first, length, first + length * static_cast<std::ptrdiff_t>(copy));
}

void DiskImage::add(const std::vector<NewFile>& files) {
    requireSound();
    DiskImage changed = *this;
    changed.makeRoom(files);
    for (const NewFile& file : files)
        changed.put(file);
    changed.finish();
    *this = std::move(changed);
}

void DiskImage::remove(const std::vector<FileEntry>& files) {
    requireSound();
    DiskImage changed = *this;
    for (const FileEntry& file : files) {
        if (file.isFolder)
            throw DiskError(quoted(file.name) + " is a folder");
        changed.release(file);
        changed.slot(file.slot)[0] = deleted;
        for (unsigned before = file.slot;
             before > 0 && isLongName(changed.slot(before - 1)) && changed.slot(before - 1)[0] != deleted;
             --before)
            changed.slot(before - 1)[0] = deleted;
    }
    changed.finish();
    *this = std::move(changed);
}

} // namespace disk
