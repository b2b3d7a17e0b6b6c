// Settings files that are cut, spoilt, or cannot be written.
#include "tests/support/fakes.h"
#include "util/runtime_error.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

namespace tavrel {
namespace {

/// A record in which no field has its default and every text a length of its own.
Settings fullSettings() {
    Settings settings;
    settings.EmulatorPath = "C:\\Program Files\\emulator\\emulator.exe";
    settings.EmulatorArgs = "-diska %dsk -msx2 -romtype \x80\xFF";
    settings.Recent = {"C:\\ONE.TPJ", "C:\\TWO\\TWO.TPJ", "D:\\3.PAS", "E:\\FOUR\\4.TPJ", "F:\\5.PAS"};
    settings.DiskImageDir = "D:\\disk images\\";
    settings.RegisterTpj = storedTrue;
    settings.AutoSave = storedTrue;
    settings.OpenNewProjectAtStart = storedTrue;
    settings.UseTooltips = storedTrue;
    settings.FontSize = 0x1234;
    settings.FontName = "Courier New";
    return settings;
}

std::vector<std::string> texts(const Settings& settings) {
    std::vector<std::string> all = {settings.EmulatorPath, settings.EmulatorArgs};
    all.insert(all.end(), settings.Recent.begin(), settings.Recent.end());
    all.push_back(settings.DiskImageDir);
    all.push_back(settings.FontName);
    return all;
}

std::vector<std::int16_t> numbers(const Settings& settings) {
    return {settings.RegisterTpj, settings.AutoSave, settings.OpenNewProjectAtStart, settings.UseTooltips,
            settings.FontSize};
}

TEST(SettingsRobustness, AFileOfEveryLengthKeepsWholeFieldsAndNothingOfTheOthers) {
    const Settings full = fullSettings();
    const std::string record = encodeSettings(full);
    // Where each field ends, in file order.
    std::vector<std::size_t> textEnds;
    std::size_t end = 0;
    const std::vector<std::string> fullTexts = texts(full);
    for (const std::string& text : fullTexts) {
        const bool last = &text == &fullTexts.back();
        end += (last ? 10 : 0) + 2 + text.size(); // the numbers stand before the last text
        textEnds.push_back(end);
    }
    ASSERT_EQ(end, record.size());
    const std::size_t firstNumberEnd = textEnds[7] + 2;
    for (std::size_t length = 0; length <= record.size(); ++length) {
        const Settings cut = decodeSettings(std::string_view(record).substr(0, length));
        for (std::size_t i = 0; i < fullTexts.size(); ++i)
            ASSERT_EQ(texts(cut)[i], textEnds[i] <= length ? fullTexts[i] : "") << length << " text " << i;
        for (std::size_t i = 0; i < 5; ++i) {
            const bool whole = firstNumberEnd + 2 * i <= length;
            ASSERT_EQ(numbers(cut)[i], whole ? numbers(full)[i] : 0) << length << " number " << i;
        }
    }
}

TEST(SettingsRobustness, FilesOfEveryLengthAreReadFromTheDisk) {
    const test::TemporaryFolder folder;
    const std::string record = encodeSettings(fullSettings());
    for (std::size_t length = 0; length <= record.size(); ++length) {
        folder.write("config.cfg", record.substr(0, length));
        ASSERT_EQ(readSettings(folder.path()), decodeSettings(std::string_view(record).substr(0, length)));
    }
}

TEST(SettingsRobustness, TenThousandSpoiltFilesAreRead) {
    std::mt19937 random(7); // the same files on every run
    const std::string record = encodeSettings(fullSettings());
    for (int round = 0; round < 10'000; ++round) {
        std::string bytes = record;
        for (auto changes = 1 + random() % 8; changes > 0; --changes) {
            const std::size_t place = random() % (bytes.size() + 1);
            switch (random() % 4) {
            case 0:
                bytes.insert(place, 1 + random() % 40, static_cast<char>(random()));
                break;
            case 1:
                bytes.erase(place, random() % 40);
                break;
            case 2:
                bytes.resize(place);
                break;
            default:
                if (place < bytes.size())
                    bytes[place] = static_cast<char>(random());
            }
        }
        const Settings settings = decodeSettings(bytes);
        std::size_t room = 0;
        for (const std::string& text : texts(settings))
            room += text.size();
        ASSERT_LE(room, bytes.size()) << "no text is longer than what the file holds";
        ASSERT_EQ(decodeSettings(encodeSettings(settings)), settings);
    }
}

TEST(SettingsRobustness, ATextTooLongForItsLengthFieldIsCut) {
    Settings settings = fullSettings();
    settings.EmulatorArgs = std::string(70'000, 'x');
    const Settings stored = decodeSettings(encodeSettings(settings));
    EXPECT_EQ(stored.EmulatorArgs.size(), 65'535U);
    EXPECT_EQ(stored.FontName, settings.FontName) << "what follows stays in its place";
}

TEST(SettingsRobustness, AFileThatCannotBeWrittenStopsTheOperation) {
    test::TestWorkspace test;
    test.program.write("config.cfg", encodeSettings(fullSettings()));
    test.workspace.settings.RegisterTpj = storedTrue;
    const auto file = test.program.native() / "config.cfg";
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    EXPECT_THROW(AddRecentFile(test.workspace, "C:\\NEW.TPJ"), RuntimeError);
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    EXPECT_EQ(test.display.recentFilesShown, 0) << "what comes behind the saving is not done any more";
    EXPECT_TRUE(test.registry.written.empty());
    EXPECT_EQ(readSettings(test.program.path()), fullSettings());
}

#ifndef _WIN32
TEST(SettingsRobustness, ADiskThatFillsUpAtAnyByteLeavesTheOldRecordWhole) {
    test::TestWorkspace test;
    const std::string old = encodeSettings(fullSettings()) + "tail of an older record";
    test.program.write("config.cfg", old);
    test.workspace.settings.Recent[0] = "C:\\FRESH.TPJ";
    std::signal(SIGXFSZ, SIG_IGN); // else the first byte too many would end the test
    rlimit former = {};
    getrlimit(RLIMIT_FSIZE, &former);
    for (std::size_t room = 0; room < old.size(); ++room) {
        rlimit limited = former;
        limited.rlim_cur = room;
        setrlimit(RLIMIT_FSIZE, &limited);
        bool failed = false;
        try {
            SaveSettings(test.workspace);
        } catch (const RuntimeError&) {
            failed = true;
        }
        setrlimit(RLIMIT_FSIZE, &former);
        ASSERT_TRUE(failed) << room;
        ASSERT_EQ(test.program.read("config.cfg"), old) << room;
        ASSERT_EQ(listFolder(test.program.path(), "*.*").size(), 1U) << "half a file stayed behind";
    }
    std::signal(SIGXFSZ, SIG_DFL);
    SaveSettings(test.workspace);
    EXPECT_EQ(readSettings(test.program.path()).Recent[0], "C:\\FRESH.TPJ");
    EXPECT_EQ(test.program.read("config.cfg").size(), old.size()) << "the tail stays";
}
#endif

} // namespace
} // namespace tavrel
