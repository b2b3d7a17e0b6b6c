// Thousands of damaged palettes: whatever the bytes, a reader ends with a whole palette, a message or the
// runtime's own error.
#include "tests/support/fakes.h"
#include "tests/tools/palette_samples.h"
#include "tools/palette/palette_source.h"
#include "util/runtime_error.h"
#include "util/text_input.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <random>

namespace tavrel {
namespace {

constexpr int cases = 10000;

class Mutator {
  public:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    /// Changes, doubles, takes out or adds some bytes; now and then cuts the end off.
    void mutate(std::string& bytes, const std::string& likely) {
        const std::size_t count = 1 + below(4);
        for (std::size_t i = 0; i < count && !bytes.empty(); ++i) {
            const std::size_t at = below(bytes.size());
            const std::size_t length = std::min(bytes.size() - at, 1 + below(20));
            const char byte = below(3) == 0 ? static_cast<char>(below(256)) : likely[below(likely.size())];
            switch (below(5)) {
            case 0:
                bytes.insert(at, bytes.substr(at, length));
                break;
            case 1:
                bytes.erase(at, length);
                break;
            case 2:
                bytes.insert(at, 1, byte);
                break;
            default:
                bytes[at] = byte;
            }
        }
        if (below(8) == 0)
            bytes.resize(below(bytes.size() + 1));
    }

  private:
    std::minstd_rand random_{20261121};
};

struct Outcomes {
    int palettes = 0;
    int messages = 0;
    int errors = 0;
};

/// `read` gives a palette or nothing and adds to the messages, or throws.
template <typename Read>
Outcomes readMutated(const std::string& whole, const std::string& likely, Read read) {
    Mutator mutator;
    Outcomes outcomes;
    for (int i = 0; i < cases; ++i) {
        std::string bytes = whole;
        mutator.mutate(bytes, likely);
        try {
            const std::optional<RgbPalette> palette = read(bytes, outcomes);
            if (palette) {
                EXPECT_EQ(paletteFile(msxPalette(*palette)).size(), 39U);
                EXPECT_EQ(setPaletteLines(msxPalette(*palette)).size(), 16U * 23);
                ++outcomes.palettes;
            }
        } catch (const PaletteFormatError&) {
            ++outcomes.messages;
        } catch (const RuntimeError&) {
            ++outcomes.errors;
        }
    }
    return outcomes;
}

// The damage must be of every kind, or these tests show nothing.
TEST(PaletteMutation, NoJascPaletteHangsOrCrashes) {
    const Outcomes outcomes =
        readMutated(test::jascText("\r\n"),
                    " \r\n\x1A"
                    "0123456789-.&HeE\t",
                    [](const std::string& bytes, Outcomes&) -> std::optional<RgbPalette> {
                        TextInput text(bytes);
                        return readJascPalette(text);
                    });
    EXPECT_GT(outcomes.palettes, 500);
    EXPECT_GT(outcomes.messages, 500);
    EXPECT_GT(outcomes.errors, 2000);
}

TEST(PaletteMutation, NoBmpHangsOrCrashes) {
    const std::string zeros("\0\1\4\x08\x18\xFF", 6);
    const test::TemporaryFolder folder;
    const Outcomes outcomes =
        readMutated(test::bmpFile(4), zeros, [&](const std::string& bytes, Outcomes& sofar) {
            // Not the safe writing of the program: its flush to the disk takes most of the time.
            std::ofstream(folder.native() / "a.bmp", std::ios::binary) << bytes;
            test::FakeMessageBoxes messages;
            const auto palette = readPaletteSource(folder.path() + "a.bmp", messages);
            EXPECT_TRUE(!palette || messages.shown.empty());
            sofar.messages += static_cast<int>(messages.shown.size());
            return palette;
        });
    EXPECT_GT(outcomes.palettes, 3000);
    EXPECT_GT(outcomes.messages, 500);
    EXPECT_LT(outcomes.palettes + outcomes.messages, cases - 200) << "some are too short";
    EXPECT_EQ(outcomes.errors, 0);
}

} // namespace
} // namespace tavrel
