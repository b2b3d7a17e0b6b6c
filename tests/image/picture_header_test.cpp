// The size of a picture, read before it is decoded.
#include "image/picture_header.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace image {
namespace {

using namespace std::string_literals;

std::string big(std::uint32_t value, int count) {
    std::string bytes;
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}
std::string little(std::uint32_t value, int count) {
    const std::string bytes = big(value, count);
    return {bytes.rbegin(), bytes.rend()};
}

std::string png(std::uint32_t width, std::uint32_t height) {
    return "\x89PNG\r\n\x1A\n" + big(13, 4) + "IHDR" + big(width, 4) + big(height, 4);
}
std::string bmp(std::uint32_t width, std::uint32_t height) {
    return "BM" + std::string(12, 'x') + little(40, 4) + little(width, 4) + little(height, 4);
}
std::string oldBmp(std::uint32_t width, std::uint32_t height) {
    return "BM" + std::string(12, 'x') + little(12, 4) + little(width, 2) + little(height, 2);
}
/// With a comment that looks like a frame, tables, fill bytes and a marker without a length before the frame.
std::string jpeg(std::uint32_t width, std::uint32_t height, char frame = '\xC2') {
    const std::string decoy = "\xFF\xC0\0\x11\x08\0\1\0\1"s;
    return "\xFF\xD8\xFF\xFE" + big(static_cast<std::uint32_t>(decoy.size() + 2), 2) + decoy + "\xFF\xC4" +
           big(4, 2) + "ab\xFF\xFF\xFF\x01\xFF" + frame + big(17, 2) + "\x08" + big(height, 2) +
           big(width, 2);
}
std::string gifFrame(std::uint32_t width, std::uint32_t height) {
    return "," + little(0, 4) + little(width, 2) + little(height, 2) + "\x81" + std::string(12, 't') +
           "\x02" + "\x03" + "abc" + "\x01" + "d" + "\0"s;
}
std::string gif(std::uint32_t width, std::uint32_t height) {
    return "GIF89a" + little(width, 2) + little(height, 2) + "\x80" + "\0\0"s + std::string(6, 't') +
           "!\xF9\x04" + "\0\0\0\0\0"s + gifFrame(width, height);
}

TEST(PictureHeader, EveryFormatSaysItsSize) {
    for (const std::string& file :
         {png(300, 200), bmp(300, 200), bmp(300, 0U - 200U), oldBmp(300, 200), jpeg(300, 200),
          jpeg(300, 200, '\xC0'), jpeg(300, 200, '\xCF'), gif(300, 200) + ";"}) {
        const PictureHeader header = readHeader(file);
        EXPECT_EQ(header.kind, PictureKind::known);
        EXPECT_EQ(header.width, 300U);
        EXPECT_EQ(header.height, 200U);
    }
}

TEST(PictureHeader, SizesOfBombsAreExact) {
    EXPECT_EQ(readHeader(png(0xFFFFFFFF, 0xFFFFFFFF)).pixels, 0xFFFFFFFE00000001U);
    EXPECT_EQ(readHeader(png(30'000, 30'000)).pixels, 900'000'000U);
    EXPECT_EQ(readHeader(bmp(0x7FFFFFFF, 0x80000000U)).pixels, 0x7FFFFFFFULL * 0x80000000ULL);
    EXPECT_EQ(readHeader(jpeg(65'535, 65'535)).pixels, 65'535ULL * 65'535);
    EXPECT_EQ(readHeader(oldBmp(65'535, 65'535)).pixels, 65'535ULL * 65'535);
}

TEST(PictureHeader, AllFramesOfAGifFileCount) {
    const PictureHeader header = readHeader(gif(10, 20) + gifFrame(60'000, 50'000) + gifFrame(1, 1) + ";");
    EXPECT_EQ(header.width, 10U);
    EXPECT_EQ(header.pixels, 10U * 20 + 10 * 20 + 60'000ULL * 50'000 + 1) << "the screen, then each frame";
    EXPECT_EQ(readHeader(gif(10, 20)).pixels, 400U) << "a file that is cut after its first frame is read";
}

TEST(PictureHeader, ACutOrDamagedHeaderIsDamaged) {
    for (const std::string& file : {png(300, 200), bmp(300, 200), oldBmp(300, 200), jpeg(300, 200)}) {
        for (std::size_t size = 8; size < file.size(); ++size)
            EXPECT_EQ(readHeader(file.substr(0, size)).kind, PictureKind::damaged) << size;
    }
    EXPECT_EQ(readHeader(gif(300, 200).substr(0, 20)).kind, PictureKind::damaged);
    for (const std::string& file :
         {png(0, 200), bmp(300, 0), bmp(0x80000000U, 200), jpeg(300, 0), gif(0, 200)})
        EXPECT_EQ(readHeader(file).kind, PictureKind::damaged);
    EXPECT_EQ(readHeader("\xFF\xD8\xFF\xE0\0\1"s).kind, PictureKind::damaged);
}

TEST(PictureHeader, OtherFilesAreNotJudged) {
    for (const std::string& file : {""s, "II*\0"s, "\0\0\1\0"s, "B"s, "text"s})
        EXPECT_EQ(readHeader(file).kind, PictureKind::other);
}

TEST(PictureHeader, AnyBytesAreRead) {
    std::mt19937 random(3);
    for (const std::string& file : {png(3, 2), bmp(3, 2), jpeg(3, 2), gif(3, 2)}) {
        for (int round = 0; round < 20'000; ++round) {
            std::string changed = file;
            for (int i = 0; i < 3; ++i)
                changed[random() % changed.size()] = static_cast<char>(random());
            changed.resize(random() % (changed.size() + 1));
            const PictureHeader header = readHeader(changed);
            EXPECT_TRUE(header.kind != PictureKind::known || header.pixels > 0);
        }
    }
}

} // namespace
} // namespace image
