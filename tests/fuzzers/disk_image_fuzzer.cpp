// Any bytes as a disk image: what is on it is listed and extracted, then a file is added and one deleted.
// Only the first sectors and the first clusters come from the bytes, since the rest is only content; the
// image is padded to the size that its boot sector tells, since a small one is tried much sooner, at most to
// 720 kB.
#include "disk/disk_image.h"
#include "fuzzer.h"

using tavrel::fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t largest = 1440;
    constexpr std::size_t sectorsAt = 19;
    const std::size_t told = size < sectorsAt + 2 ? 0 : data[sectorsAt] + data[sectorsAt + 1] * 256U;
    // Nothing told is left to the file allocation table's first byte; too much told is an image cut short.
    const std::size_t sectors = told != 0 ? told : largest;
    const std::size_t imageSize = size < sectorsAt + 2 || told > largest ? size : sectors * disk::sectorBytes;
    disk::Bytes bytes(data, data + std::min(size, imageSize));
    bytes.resize(imageSize);
    try {
        disk::DiskImage image(bytes);
        for (const disk::FileEntry& file : image.list()) {
            try {
                require(image.extract(file).size() == file.size || file.isFolder);
            } catch (const disk::DiskError&) {
            }
        }
        disk::NewFile added;
        added.name.fill('A');
        added.content.assign(3000, 0x5A);
        disk::Bytes before = image.bytes();
        try {
            image.add({added});
            const auto found = image.find(added.name);
            require(found && image.extract(*found) == added.content);
            before = image.bytes();
            image.remove({*found});
            require(!image.find(added.name));
        } catch (const disk::DiskError&) {
            require(image.bytes() == before);
        }
    } catch (const disk::DiskError&) {
    }
    return 0;
}
