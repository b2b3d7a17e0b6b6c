// Any bytes as the whole image of a disk, of any size: the boot sector says where things lie, and no
// operation may believe it further than the bytes reach.
#include "disk/disk_image.h"
#include "fuzzer.h"

#include <algorithm>

using tavrel::fuzzing::require;

namespace {

void readAll(const disk::DiskImage& image) {
    for (const disk::FileEntry& file : image.list()) {
        try {
            require(image.extract(file).size() == file.size || file.isFolder);
        } catch (const disk::DiskError&) {
        }
    }
}

/// What could be added can be removed, so nothing may be thrown.
void removeAgain(disk::DiskImage& image, const disk::FileEntry& file) noexcept {
    image.remove({file});
    require(!image.find(file.name) && image.faults().empty());
}

/// Adds a file that fills what is free and takes it away again.
void fillAndEmpty(disk::DiskImage& image) {
    const std::size_t space = image.freeBytes();
    require(space < image.bytes().size());
    const bool sound = image.faults().empty();
    disk::NewFile added;
    added.name.fill('Z');
    added.content.assign(space, 0x5A);
    const disk::Bytes before = image.bytes();
    try {
        image.add({added});
    } catch (const disk::DiskError&) {
        require(image.bytes() == before);
        return;
    }
    require(sound);
    const auto found = image.find(added.name);
    require(found && image.extract(*found) == added.content && image.faults().empty());
    removeAgain(image, *found);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        disk::DiskImage image(disk::Bytes(data, data + size));
        readAll(image);
        fillAndEmpty(image);
    } catch (const disk::DiskError&) {
    }
    return 0;
}
