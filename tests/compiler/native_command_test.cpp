// The command line of tp3 and the files that it makes.
#include "files/host_files.h"
#include "native_command.h"
#include "native_files.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace tp3 {
namespace {

namespace fs = std::filesystem;

struct NativeCommand : testing::Test {
    tavrel::test::TemporaryFolder folder;
    Report report;

    std::string path(const std::string& name) const { return (folder.native() / name).string(); }
    std::string put(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder.native() / name, std::ios::binary) << bytes;
        return path(name);
    }
    std::string content(const std::string& name) const {
        return files::readWholeFile(folder.native() / name);
    }
    bool has(const std::string& name) const { return fs::exists(folder.native() / name); }
    int command(std::vector<std::string> words) {
        report = {};
        return run(words, report);
    }
    /// Where the image begins that the compiler wrote behind the library.
    static std::size_t librarySize() { return fs::file_size(RUNTIME_PATH); }
};

TEST_F(NativeCommand, HelpIsPrintedWhateverElseIsAsked) {
    EXPECT_EQ(command({"--help"}), 0);
    EXPECT_TRUE(report.output.starts_with("tp3: compiles a Turbo Pascal 3 program"));
    EXPECT_EQ(command({"GAME.PAS", "--help", "-o", "X.COM"}), 0);
    EXPECT_TRUE(report.output.starts_with("tp3: "));
}

TEST_F(NativeCommand, AWrongCommandLineIsRefusedAndNamed) {
    struct Wrong {
        std::vector<std::string> words;
        const char* message;
    };
    const std::string source = put("A.PAS", "begin end.");
    for (const Wrong& wrong : {Wrong{{}, "no source file"},
                               {{source, "-o"}, "-o needs a value"},
                               {{source, "--errors"}, "--errors needs a value"},
                               {{source, "--start", "xyz"}, "'xyz' is not a hexadecimal address"},
                               {{source, "--start", ""}, "'' is not a hexadecimal address"},
                               {{source, "--start", "12345"}, "'12345' is not a hexadecimal address"},
                               {{source, "--end", "-1"}, "'-1' is not a hexadecimal address"},
                               {{source, "/S12G4"}, "'12G4' is not a hexadecimal address"},
                               {{source, "--what"}, "unknown option --what"},
                               {{source, source}, "more than one source file"},
                               {{source, "/H1"}, "more than one source file"},
                               {{source, "/X"}, "more than one source file"},
                               {{source, "--start", "2E9A"}, "the start address must be 2E9B or more"},
                               {{source, "--end", "2E9B"}, "and the end address above it"}}) {
        EXPECT_EQ(command(wrong.words), 2) << wrong.message;
        EXPECT_NE(report.errors.find(wrong.message), std::string::npos) << report.errors;
        EXPECT_EQ(report.output, "");
    }
    EXPECT_FALSE(has("A.COM"));
}

TEST_F(NativeCommand, AProgramIsTheLibraryWithTheImageBehindIt) {
    put("game.pas", "begin WriteLn(1) end.");
    EXPECT_EQ(command({path("game"), "--chn", "-o", path("X.CHN")}), 0)
        << "the name gets .PAS, and letter case does not count";
    ASSERT_EQ(command({path("game.pas"), "--runtime", RUNTIME_PATH}), 0) << report.errors;
    EXPECT_NE(report.output.find("Code: "), std::string::npos);
    ASSERT_EQ(command({path("game.pas"), "--chn"}), 0);
    const std::string program = content("game.com");
    EXPECT_EQ(program.substr(librarySize()), content("game.chn")) << "in the case of the source's own name";
    EXPECT_EQ(program.substr(0, librarySize()), files::readWholeFile(RUNTIME_PATH));
}

TEST_F(NativeCommand, TheFormOfDosMakesAChainImage) {
    put("GAME.PAS", "begin end.");
    ASSERT_EQ(command({path("GAME"), "/h", "/s4000", "/EC000", "/R" + path("E.TXT")}), 0) << report.errors;
    ASSERT_EQ(command({path("GAME.PAS"), "--chn", "--start", "4000", "--end", "C000", "-o", path("X.CHN")}),
              0);
    EXPECT_EQ(content("GAME.CHN"), content("X.CHN"));
    EXPECT_FALSE(has("E.TXT"));
    ASSERT_EQ(command({path("GAME.PAS"), "--chn", "-o", path("Y.CHN")}), 0);
    EXPECT_NE(content("X.CHN"), content("Y.CHN"));
}

TEST_F(NativeCommand, AnErrorIsToldWithItsPlaceAndWrittenAsARecord) {
    put("GAME.PAS", "begin\r\n  x := 1\r\nend.");
    EXPECT_EQ(command({path("GAME.PAS"), "--errors", path("E.TXT")}), 1);
    EXPECT_TRUE(report.errors.starts_with("GAME.PAS(2,3): Error 41: ")) << report.errors;
    EXPECT_TRUE(content("E.TXT").starts_with("\"GAME.PAS\",2,3,41,")) << content("E.TXT");
    EXPECT_EQ(report.output, "");
    EXPECT_FALSE(has("GAME.COM"));
    EXPECT_EQ(command({path("MISSING.PAS")}), 1);
    EXPECT_TRUE(report.errors.starts_with("MISSING.PAS(0,0): Error 90: ")) << report.errors;
}

TEST_F(NativeCommand, AnOutputThatCannotBeWrittenIsAnErrorOfItsOwn) {
    put("GAME.PAS", "begin end.");
    fs::create_directory(folder.native() / "GAME.CHN");
    EXPECT_EQ(command({path("GAME.PAS"), "--chn", "--errors", path("E.TXT")}), 1);
    EXPECT_TRUE(report.errors.starts_with("GAME.PAS(1,1): Error 94: Cannot write the output file: "))
        << report.errors;
    EXPECT_TRUE(content("E.TXT").starts_with("\"GAME.PAS\",1,1,94,\"Cannot write the output file: "))
        << content("E.TXT");
    EXPECT_TRUE(content("E.TXT").ends_with("GAME.CHN: this is a folder\"\r\n")) << content("E.TXT");
}

TEST_F(NativeCommand, TheRecordNamesAFileThatTheTreeShowsAndTheMessageTheOneInError) {
    put("GAME.PAS", "begin\r\n{$I PART}\r\nend.");
    put("PART.PAS", "\r\n\r\n  wrong");
    EXPECT_EQ(command({path("GAME.PAS"), "--errors", path("E.TXT")}), 1);
    EXPECT_TRUE(report.errors.starts_with("PART.PAS(3,3): Error 41: ")) << report.errors;
    EXPECT_EQ(content("E.TXT"), "\"GAME.PAS\",2,3,41,\"Unknown identifier or syntax error: WRONG in "
                                "PART.PAS, line 3, column 3\"\r\n");
}

TEST_F(NativeCommand, AnAddressLeadsBackToItsLine) {
    put("GAME.PAS", "{$I PART.INC}\r\nbegin\r\n  Say;\r\n  WriteLn(2)\r\nend.");
    put("part.inc", "procedure Say;\r\nbegin\r\n  WriteLn(1)\r\nend;\r\n");
    std::string lines;
    for (int address = 0x2E9B; address < 0x2F40; ++address) {
        constexpr std::string_view digits = "0123456789abcdef";
        std::string text;
        for (int shift = 12; shift >= 0; shift -= 4)
            text += digits[static_cast<std::size_t>(address >> shift & 0xF)];
        if (command({"--find", text, path("GAME.PAS")}) == 0 && !lines.ends_with(report.output))
            lines += report.output;
    }
    EXPECT_NE(lines.find("PART.INC(3)\n"), std::string::npos) << lines;
    EXPECT_NE(lines.find("GAME.PAS(3)\nGAME.PAS(4)\n"), std::string::npos) << lines;
    EXPECT_EQ(command({"--find", "1000", path("GAME.PAS")}), 1);
    EXPECT_EQ(report.errors, "tp3: no code of this program lies at 1000\n");
    EXPECT_EQ(command({"--find", "CFFF", path("GAME.PAS")}), 1);
    EXPECT_EQ(report.errors, "tp3: no code of this program lies at CFFF\n");
    EXPECT_FALSE(has("GAME.COM")) << "finding writes nothing";
}

TEST_F(NativeCommand, AnotherLibraryIsRefused) {
    put("GAME.PAS", "begin end.");
    EXPECT_EQ(command({path("GAME.PAS"), "--runtime", put("OTHER.COM", "no library")}), 1);
    EXPECT_NE(report.errors.find("is not the run-time library that this compiler was built with"),
              std::string::npos);
    std::string damaged = files::readWholeFile(RUNTIME_PATH);
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    EXPECT_EQ(command({path("GAME.PAS"), "--runtime", put("OTHER.COM", damaged)}), 1);
    EXPECT_EQ(command({path("GAME.PAS"), "--runtime", path("NONE.COM")}), 1);
    EXPECT_NE(report.errors.find("NONE.COM: there is no such file"), std::string::npos) << report.errors;
    EXPECT_EQ(command({path("GAME.PAS")}), 1) << "there is none beside this test";
    EXPECT_FALSE(has("GAME.COM"));
}

TEST_F(NativeCommand, NamesAreFoundWhateverTheirCaseAndTheExactOneFirst) {
    fs::create_directory(folder.native() / "Lib");
    put("Lib/Part.inc", "begin WriteLn(1) end.");
    put("part.inc", "begin end.");
    EXPECT_EQ(findIgnoringCase(folder.native(), "LIB\\PART.INC"), folder.native() / "Lib/Part.inc");
    EXPECT_EQ(findIgnoringCase(folder.native() / "Lib", "..\\PART.INC"), folder.native() / "Lib/../part.inc");
    EXPECT_EQ(findIgnoringCase(folder.native(), "OTHER.INC"), "");
    put("PART.INC", "begin end.");
    EXPECT_EQ(findIgnoringCase(folder.native(), "PART.INC"), folder.native() / "PART.INC");
    EXPECT_EQ(findIgnoringCase("", "NO-SUCH-FILE.PAS"), "");
    put("GAME.PAS", "{$I LIB\\PART.INC}");
    EXPECT_EQ(command({path("GAME.PAS"), "--chn"}), 0) << report.errors;
    put("FOLDER.PAS", "{$I LIB}");
    EXPECT_EQ(command({path("FOLDER.PAS"), "--chn"}), 1) << "a folder is no source";
}

TEST_F(NativeCommand, ASourceThatCannotBeReadToItsEndIsNotCompiled) {
    // A regular file that opens and then gives an error at each read.
    fs::create_symlink("/proc/self/mem", folder.native() / "PART.INC");
    put("GAME.PAS", "{$I PART.INC}\r\nbegin end.");
    EXPECT_EQ(command({path("GAME.PAS"), "--chn"}), 1);
    EXPECT_NE(report.errors.find("PART.INC: Input/output error"), std::string::npos) << report.errors;
    EXPECT_EQ(command({path("GAME.PAS"), "--runtime", path("PART.INC")}), 1);
    EXPECT_THROW(files::readWholeFile(folder.native() / "PART.INC"), files::FileError);
}

TEST_F(NativeCommand, APlantedLinkIsNotWrittenThroughAndAUsersFileStays) {
    put("GAME.PAS", "begin end.");
    put("VICTIM.TXT", "precious");
    put("GAME.CHN.new", "the user's own");
    fs::create_symlink(folder.native() / "VICTIM.TXT", folder.native() / "GAME.CHN.tmp");
    EXPECT_EQ(command({path("GAME.PAS"), "--chn"}), 0) << report.errors;
    EXPECT_EQ(content("GAME.CHN.new"), "the user's own");
    fs::remove(folder.native() / "GAME.CHN");
    for (const char* const place : {"VICTIM.TXT", "NOWHERE.TXT"}) {
        fs::create_symlink(folder.native() / place, folder.native() / "GAME.CHN");
        EXPECT_EQ(command({path("GAME.PAS"), "--chn"}), 1);
        EXPECT_NE(report.errors.find("GAME.CHN: this is a link"), std::string::npos) << report.errors;
        fs::remove(folder.native() / "GAME.CHN");
    }
    EXPECT_EQ(content("VICTIM.TXT"), "precious");
    EXPECT_FALSE(has("NOWHERE.TXT"));
}

TEST_F(NativeCommand, ADeviceIsWrittenToAsItIs) {
    put("GAME.PAS", "begin end.");
    EXPECT_EQ(command({path("GAME.PAS"), "--chn", "-o", "/dev/null"}), 0) << report.errors;
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(command({path("GAME.PAS"), "--chn", "-o", "/dev/full"}), 1);
    EXPECT_NE(report.errors.find("/dev/full: the disk is full"), std::string::npos) << report.errors;
    EXPECT_EQ(command({path("GAME.PAS"), "--chn", "-o", path("no/folder.chn")}), 1);
    EXPECT_EQ(command({path("GAME.PAS"), "--chn", "-o", folder.native().string()}), 1)
        << "a folder is no file";
}

} // namespace
} // namespace tp3
