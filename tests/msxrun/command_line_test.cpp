#include "msxrun/command_line.h"

#include <gtest/gtest.h>
#include <vector>

namespace msxrun {
namespace {

CommandLine parse(const std::vector<std::string>& arguments) {
    return parseCommandLine(arguments);
}

TEST(CommandLine, OptionsEndAtTheProgram) {
    const CommandLine line = parse({"--disk", "d", "--limit", "5M", "--tpa-top", "c000", "--tstates",
                                    "--msx-waits", "P.COM", "one", "--help"});
    EXPECT_EQ(line.folder, "d");
    EXPECT_EQ(line.limit, 5000000U);
    EXPECT_EQ(line.settings.tpaTop, 0xC000);
    EXPECT_TRUE(line.settings.msxWaits);
    EXPECT_TRUE(line.showTStates);
    EXPECT_FALSE(line.help);
    EXPECT_EQ(line.program, "P.COM");
    EXPECT_EQ(line.tail, " one --help");
}

TEST(CommandLine, NamesTheDisksFaults) {
    EXPECT_FALSE(parse({"P.COM"}).settings.faults.readOnly);
    EXPECT_FALSE(parse({"P.COM"}).settings.faults.removedAfter.has_value());
    const CommandLine line = parse({"--read-only", "--remove-after", "7", "P.COM"});
    EXPECT_TRUE(line.settings.faults.readOnly);
    EXPECT_EQ(line.settings.faults.removedAfter, 7U);
}

TEST(CommandLine, RefusesWhatItCannotFollow) {
    const std::vector<std::vector<std::string>> wrong = {{},
                                                         {"--tstates"},
                                                         {"--nonsense", "P.COM"},
                                                         {"--limit"},
                                                         {"--remove-after", "soon", "P.COM"},
                                                         {"--limit", "x", "P.COM"},
                                                         {"--limit", "-1", "P.COM"},
                                                         {"--limit", "M", "P.COM"},
                                                         {"--limit", "99999999999999G", "P.COM"},
                                                         {"--tpa-top", "100", "P.COM"},
                                                         {"--tpa-top", "FFFF", "P.COM"},
                                                         {"--tpa-top", "D606h", "P.COM"}};
    for (const auto& arguments : wrong) {
        EXPECT_THROW(parse(arguments), UsageError);
    }
}

} // namespace
} // namespace msxrun
