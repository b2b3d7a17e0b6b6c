// Thousands of damaged images: whatever the bytes, every operation ends, and one that goes through leaves a
// disk that is sound.
#include "disk/disk_image.h"
#include "tests/disk/support.h"

#include <gtest/gtest.h>
#include <random>

namespace disk {
namespace {

/// A disk of a few tracks, so that thousands of copies cost little.
Bytes sampleImage() {
    constexpr unsigned sectors = 120;
    Bytes bytes = DiskImage().bytes();
    bytes.resize(sectors * sectorBytes);
    writeWord(bytes, 0x13, sectors);
    DiskImage image(bytes);
    for (unsigned i = 0; i < 12; ++i)
        test::add(image, "F" + std::to_string(i) + ".DAT", test::pattern(i * 300, i));
    image.remove({*image.find(test::name("F5.DAT")), *image.find(test::name("F8.DAT"))});
    return image.bytes();
}

class Mutator {
  public:
    explicit Mutator(unsigned seed) : random_(seed) {}

    unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

    /// Changes a few bytes, mostly where the structure of the disk is.
    void mutate(Bytes& bytes) {
        const unsigned count = 1 + below(8);
        for (unsigned i = 0; i < count; ++i) {
            switch (below(5)) {
            case 0: // boot sector
                bytes[below(32)] = interesting();
                break;
            case 1: // first allocation table, where the files are
                bytes[512 + below(60)] = interesting();
                break;
            case 2: // directory entries
                bytes[7 * 512 + below(16 * 32)] = interesting();
                break;
            case 3:
                bytes[below(14 * 512)] = interesting();
                break;
            default: { // an entry or part of a table over another
                const std::size_t from = below(14 * 16) * 32;
                const std::size_t to = below(14 * 16) * 32;
                std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), 32,
                            bytes.begin() + static_cast<std::ptrdiff_t>(to));
            }
            }
        }
        if (below(20) == 0)
            bytes.resize(below(bytes.size()));
    }

  private:
    std::uint8_t interesting() {
        static constexpr std::uint8_t values[] = {0x00, 0x01, 0x02, 0x05, 0x0F, 0x10,
                                                  0x7F, 0x80, 0xE5, 0xF7, 0xF8, 0xFF};
        const unsigned choice = below(24);
        return choice < std::size(values) ? values[choice] : static_cast<std::uint8_t>(below(256));
    }

    std::minstd_rand random_;
};

/// Uses an image in every way. Counts how often it could be read and changed.
void exercise(const Bytes& bytes, unsigned& read, unsigned& written) {
    try {
        DiskImage image(bytes);
        ++read;
        for (const FileEntry& file : image.list()) {
            try {
                EXPECT_EQ(image.extract(file).size(), file.size);
            } catch (const DiskError&) {
            }
        }
        const bool sound = image.faults().empty();
        try {
            test::add(image, "NEW.DAT", test::pattern(5000, 99));
            EXPECT_TRUE(sound);
            EXPECT_EQ(test::contentOf(image, "NEW.DAT"), test::pattern(5000, 99));
            EXPECT_TRUE(image.faults().empty());
            if (const auto former = image.find(test::name("F3.DAT")); former && !former->isFolder) {
                image.remove({*former});
                EXPECT_TRUE(image.faults().empty());
            }
            ++written;
        } catch (const DiskError&) {
            EXPECT_EQ(image.bytes(), bytes) << "a failure changes nothing";
        }
    } catch (const DiskError&) {
    }
}

TEST(Mutation, NoImageHangsOrCrashes) {
    const Bytes sample = sampleImage();
    unsigned read = 0;
    unsigned written = 0;
    for (unsigned seed = 1; seed <= 8000; ++seed) {
        SCOPED_TRACE(seed);
        Bytes bytes = sample;
        Mutator(seed).mutate(bytes);
        exercise(bytes, read, written);
    }
    // The damage must be of every kind, or the test shows nothing.
    EXPECT_GT(read, 3000U);
    EXPECT_LT(read, 7900U);
    EXPECT_GT(written, 1000U);
    EXPECT_LT(written, read - 1000);
}

TEST(Mutation, NoiseIsNoDisk) {
    unsigned read = 0;
    unsigned written = 0;
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        Bytes bytes = test::pattern(seed * 37, seed);
        if (seed % 2 == 0 && bytes.size() > 32) { // with parameters that make some sense
            const Bytes start = DiskImage().bytes();
            for (std::size_t at = 0x0B; at < 0x1B; ++at)
                bytes[at] = start[at];
            bytes[0x13] = static_cast<std::uint8_t>(bytes.size() / 512);
            bytes[0x14] = 0;
        }
        exercise(bytes, read, written);
    }
    EXPECT_GT(read, 10U);
}

} // namespace
} // namespace disk
