// Text, typed and untyped files, and the devices.
#include "library_machine.h"

#include <algorithm>
#include <gtest/gtest.h>

using runtime_test::LibraryMachine;
using runtime_test::Registers;
using tp3::RuntimeEntry;

namespace {

constexpr std::uint16_t nameAddress = 0x9000;
constexpr std::uint16_t dataAddress = 0x9100;

class FileTest : public testing::Test {
  protected:
    Registers call(RuntimeEntry entry, unsigned hl = 0, unsigned de = 0, unsigned bc = 0, unsigned a = 0) {
        Registers in;
        in.hl = static_cast<std::uint16_t>(hl);
        in.de = static_cast<std::uint16_t>(de);
        in.bc = static_cast<std::uint16_t>(bc);
        in.a = static_cast<std::uint8_t>(a);
        return machine.call(entry, in);
    }
    void assign(const std::string& name, RuntimeEntry kind = RuntimeEntry::fileAssignText,
                unsigned at = 0xA000) {
        machine.setString(nameAddress, name);
        call(kind, at, nameAddress);
        file = at;
    }
    int result() { return call(RuntimeEntry::ioResult).hl; }
    void write(const std::string& text) {
        machine.setText(dataAddress, text);
        call(RuntimeEntry::selectOutput, file);
        call(RuntimeEntry::writeChars, dataAddress, 0, static_cast<unsigned>(text.size()));
        call(RuntimeEntry::selectStandardOutput);
    }
    std::string readString(unsigned maximum = 255) {
        machine.setString(dataAddress, "unchanged");
        call(RuntimeEntry::selectInput, file);
        call(RuntimeEntry::readString, dataAddress, 0, 0, maximum);
        return machine.string(dataAddress);
    }
    void readLine() {
        call(RuntimeEntry::selectInput, file);
        call(RuntimeEntry::readLine);
        call(RuntimeEntry::selectStandardInput);
    }
    int ask(RuntimeEntry entry) { return call(entry, file).a; }
    bool eof() { return ask(RuntimeEntry::fileEof) != 0; }

    LibraryMachine machine;
    unsigned file = 0xA000;
};

TEST_F(FileTest, WritesTextByteForByte) {
    assign("a:out.txt");
    call(RuntimeEntry::fileRewrite, file, 0);
    std::string expected;
    for (int line = 0; line < 100; ++line) {
        const std::string text = "line " + std::to_string(line);
        write(text);
        call(RuntimeEntry::selectOutput, file);
        call(RuntimeEntry::writeLine);
        call(RuntimeEntry::selectStandardOutput);
        expected += text + "\r\n";
    }
    call(RuntimeEntry::writeChar, 0, 0, 0, '!');
    call(RuntimeEntry::fileClose, file);
    EXPECT_EQ(result(), 0);
    EXPECT_EQ(machine.files.at("OUT.TXT"), expected);
    EXPECT_EQ(machine.output, "!");
}

TEST_F(FileTest, ReadsLinesOfAnyLength) {
    for (const std::string end : {"", "\x1A", "\x1Agarbage", "\r\n"}) {
        machine.files["IN.TXT"] = "first\r\n\r\n" + std::string(300, 'x') + "\r\nlast" + end;
        assign("in.txt");
        call(RuntimeEntry::fileReset, file, 0);
        EXPECT_FALSE(eof());
        EXPECT_EQ(readString(), "first");
        EXPECT_EQ(ask(RuntimeEntry::fileEoln), 1);
        EXPECT_EQ(readString(), "");
        readLine();
        EXPECT_EQ(readString(), "");
        readLine();
        EXPECT_EQ(readString(3), "xxx");
        EXPECT_EQ(ask(RuntimeEntry::fileEoln), 0);
        EXPECT_EQ(readString(), std::string(255, 'x'));
        readLine();
        EXPECT_FALSE(eof());
        EXPECT_EQ(readString(), "last");
        readLine();
        EXPECT_TRUE(eof());
        EXPECT_EQ(ask(RuntimeEntry::fileEoln), 1);
        EXPECT_EQ(readString(), "");
        EXPECT_EQ(result(), 0);
        call(RuntimeEntry::fileClose, file);
    }
}

TEST_F(FileTest, ReadsNumbersAcrossLines) {
    machine.files["N"] = "  12 -7\r\n\r\n\t300\r\nx 5";
    assign("N");
    call(RuntimeEntry::fileReset, file, 0);
    call(RuntimeEntry::selectInput, file);
    for (const int expected : {12, -7, 300}) {
        call(RuntimeEntry::readInteger, dataAddress);
        EXPECT_EQ(static_cast<std::int16_t>(machine.word(dataAddress)), expected);
    }
    EXPECT_EQ(result(), 0);
    call(RuntimeEntry::readInteger, dataAddress);
    EXPECT_EQ(result(), 0x10);
    call(RuntimeEntry::readInteger, dataAddress);
    EXPECT_EQ(machine.word(dataAddress), 5);
    machine.setWord(dataAddress, 99);
    call(RuntimeEntry::readInteger, dataAddress); // nothing left
    EXPECT_EQ(machine.word(dataAddress), 99);
    EXPECT_EQ(result(), 0);
}

TEST_F(FileTest, ReadsCharactersWithTheLineEnds) {
    machine.files["C"] = "a\r\nb";
    assign("C");
    call(RuntimeEntry::fileReset, file, 0);
    call(RuntimeEntry::selectInput, file);
    std::string read;
    for (int index = 0; index < 6; ++index) {
        call(RuntimeEntry::readChar, dataAddress);
        read += static_cast<char>(machine.byte(dataAddress));
    }
    EXPECT_EQ(read, "a\r\nb\x1A\x1A");
}

TEST_F(FileTest, SeeksTheEndOverBlanks) {
    machine.files["S"] = " \t\r\n 1  \r\n  \r\n ";
    assign("S");
    call(RuntimeEntry::fileReset, file, 0);
    EXPECT_EQ(ask(RuntimeEntry::fileSeekEoln), 1);
    EXPECT_EQ(ask(RuntimeEntry::fileSeekEof), 0);
    EXPECT_EQ(ask(RuntimeEntry::fileSeekEoln), 0);
    call(RuntimeEntry::selectInput, file);
    call(RuntimeEntry::readInteger, dataAddress);
    EXPECT_EQ(ask(RuntimeEntry::fileSeekEoln), 1);
    EXPECT_EQ(ask(RuntimeEntry::fileEof), 0);
    EXPECT_EQ(ask(RuntimeEntry::fileSeekEof), 1);
    EXPECT_EQ(ask(RuntimeEntry::fileEof), 1);
}

TEST_F(FileTest, KeepsRecordsBehindAHeader) {
    for (const unsigned at : {0xA000U, 0x5000U}) { // also where the disk's ROM may be switched in
        assign("DATA.DTA", RuntimeEntry::fileAssignTyped, at);
        call(RuntimeEntry::fileRewrite, file, 6);
        for (int record = 0; record < 5; ++record) {
            machine.setText(dataAddress, "rec#" + std::to_string(record) + "|");
            call(RuntimeEntry::fileWrite, file, dataAddress);
        }
        EXPECT_EQ(call(RuntimeEntry::filePosition, file).hl, 5);
        EXPECT_EQ(call(RuntimeEntry::fileSize, file).hl, 5);
        EXPECT_TRUE(eof());
        call(RuntimeEntry::fileSeek, file, 1);
        EXPECT_FALSE(eof());
        call(RuntimeEntry::fileRead, file, dataAddress);
        EXPECT_EQ(machine.text(dataAddress, 6), "rec#1|");
        machine.setText(dataAddress, "second");
        call(RuntimeEntry::fileWrite, file, dataAddress);
        EXPECT_EQ(result(), 0);
        call(RuntimeEntry::fileSeek, file, 6);
        EXPECT_EQ(result(), 0x91);
        call(RuntimeEntry::fileSeek, file, 5);
        call(RuntimeEntry::fileRead, file, dataAddress);
        EXPECT_EQ(result(), 0x99);
        call(RuntimeEntry::fileClose, file);
        EXPECT_EQ(machine.files.at("DATA.DTA"),
                  std::string("\x05\x00\x06\x00", 4) + "rec#0|rec#1|secondrec#3|rec#4|");

        call(RuntimeEntry::fileReset, file, 6);
        EXPECT_EQ(call(RuntimeEntry::fileSize, file).hl, 5);
        call(RuntimeEntry::fileRead, file, dataAddress);
        EXPECT_EQ(machine.text(dataAddress, 6), "rec#0|");
        EXPECT_EQ(result(), 0);
        call(RuntimeEntry::fileReset, file, 8);
        EXPECT_EQ(result(), 0x90);
        EXPECT_EQ(call(RuntimeEntry::fileSize, file).hl, 0);
        EXPECT_EQ(result(), 4);
    }
}

TEST_F(FileTest, FindsRecordsFarBehind) {
    machine.files["BIG"] = std::string("\x20\x03\x00\x01", 4) + std::string(800 * 256, '.');
    machine.files["BIG"].replace(4 + 799 * 256, 4, "LAST");
    assign("BIG", RuntimeEntry::fileAssignTyped);
    call(RuntimeEntry::fileReset, file, 256);
    call(RuntimeEntry::fileSeek, file, 799);
    call(RuntimeEntry::fileRead, file, dataAddress);
    EXPECT_EQ(result(), 0);
    EXPECT_EQ(machine.text(dataAddress, 4), "LAST");
    EXPECT_TRUE(eof());
}

TEST_F(FileTest, MovesBlocks) {
    assign("B.BIN", RuntimeEntry::fileAssignUntyped);
    call(RuntimeEntry::fileRewrite, file, 128);
    for (unsigned at = 0; at < 384; ++at) {
        machine.setByte(static_cast<std::uint16_t>(dataAddress + at), static_cast<std::uint8_t>(at / 3));
    }
    EXPECT_EQ(call(RuntimeEntry::fileBlockWrite, file, dataAddress, 3).hl, 3);
    EXPECT_EQ(call(RuntimeEntry::fileSize, file).hl, 3);
    call(RuntimeEntry::fileSeek, file, 1);
    EXPECT_EQ(call(RuntimeEntry::fileBlockRead, file, 0xB000, 5).hl, 2);
    EXPECT_EQ(machine.text(0xB000, 256), machine.text(dataAddress + 128, 256));
    EXPECT_TRUE(eof());
    EXPECT_EQ(result(), 0);
    call(RuntimeEntry::fileBlockCheck, 2, 5);
    EXPECT_EQ(result(), 0x99);
    EXPECT_EQ(call(RuntimeEntry::fileBlockWrite, file, dataAddress, 0).hl, 0);
    call(RuntimeEntry::fileClose, file);
    EXPECT_EQ(machine.files.at("B.BIN").size(), 384U);
    machine.files.at("B.BIN") += "rest";
    call(RuntimeEntry::fileReset, file, 128);
    EXPECT_EQ(call(RuntimeEntry::fileSize, file).hl, 4);
}

TEST_F(FileTest, RenamesAndErases) {
    machine.files["ONE.TXT"] = "text";
    assign("ONE.TXT");
    machine.setString(nameAddress, "two.bak");
    call(RuntimeEntry::fileRename, file, nameAddress);
    EXPECT_EQ(result(), 0);
    EXPECT_EQ(machine.files.at("TWO.BAK"), "text");
    call(RuntimeEntry::fileReset, file, 0);
    EXPECT_EQ(readString(), "text");
    call(RuntimeEntry::selectStandardInput);
    call(RuntimeEntry::fileErase, file);
    EXPECT_EQ(result(), 0);
    EXPECT_TRUE(machine.files.empty());
    call(RuntimeEntry::fileErase, file);
    EXPECT_EQ(result(), 1);
    call(RuntimeEntry::fileRename, file, nameAddress);
    EXPECT_EQ(result(), 1);
}

TEST_F(FileTest, TellsIoResults) {
    assign("NONE");
    call(RuntimeEntry::fileReset, file, 0);
    EXPECT_EQ(result(), 1);
    EXPECT_EQ(result(), 0);
    call(RuntimeEntry::selectInput, file);
    EXPECT_EQ(result(), 2);
    call(RuntimeEntry::selectOutput, file);
    EXPECT_EQ(result(), 3);
    call(RuntimeEntry::fileClose, file);
    EXPECT_EQ(result(), 0);
    call(RuntimeEntry::fileReset, 0xB800, 0); // never assigned
    EXPECT_EQ(result(), 4);
    call(RuntimeEntry::fileRead, file, dataAddress);
    EXPECT_EQ(result(), 4);
    assign("LST:");
    call(RuntimeEntry::fileErase, file);
    EXPECT_EQ(result(), 0x20);
    call(RuntimeEntry::selectInput, file);
    EXPECT_EQ(result(), 2);
    for (int index = 0; index < 112; ++index) {
        machine.files["F" + std::to_string(index)] = "";
    }
    assign("MORE");
    call(RuntimeEntry::fileRewrite, file, 0);
    EXPECT_EQ(result(), 0xF1);
}

TEST_F(FileTest, TellsAFullDisk) {
    machine.diskRoom = 200;
    assign("FULL");
    call(RuntimeEntry::fileRewrite, file, 0);
    write(std::string(127, '1'));
    EXPECT_EQ(result(), 0);
    write("22");
    EXPECT_EQ(result(), 0);
    write(std::string(127, '3'));
    EXPECT_EQ(result(), 0xF0);
    call(RuntimeEntry::fileClose, file);
    result();
    EXPECT_EQ(machine.files.at("FULL").size(), 128U);
    assign("BLOCKS", RuntimeEntry::fileAssignUntyped);
    call(RuntimeEntry::fileRewrite, file, 128);
    EXPECT_EQ(call(RuntimeEntry::fileBlockWrite, file, dataAddress, 2).hl, 0);
    EXPECT_EQ(result(), 0);
    call(RuntimeEntry::fileBlockCheck, 0, 2);
    EXPECT_EQ(result(), 0xF0);
    EXPECT_EQ(call(RuntimeEntry::fileSize, file).hl, 0);
}

TEST_F(FileTest, DoesNothingWhileAResultWaits) {
    machine.files["A"] = "1";
    assign("A");
    call(RuntimeEntry::fileSeek, file, 3);
    call(RuntimeEntry::fileErase, file);
    EXPECT_TRUE(machine.files.contains("A"));
    EXPECT_EQ(result(), 4);
}

TEST_F(FileTest, KeepsFiveFilesOpenAndClosesThemAtTheEnd) {
    for (unsigned number = 0; number < 5; ++number) {
        assign("F" + std::to_string(number), RuntimeEntry::fileAssignText, 0xA000 + number * 0x100);
        call(RuntimeEntry::fileRewrite, file, 0);
    }
    for (unsigned round = 0; round < 3; ++round) {
        for (unsigned number = 0; number < 5; ++number) {
            file = 0xA000 + number * 0x100;
            write(std::to_string(number * 10 + round) + " ");
        }
    }
    call(RuntimeEntry::fileClose, 0xA200);
    machine.functions.clear();
    call(RuntimeEntry::halt);
    EXPECT_TRUE(machine.ended);
    EXPECT_EQ(machine.files.at("F0"), "0 1 2 ");
    EXPECT_EQ(machine.files.at("F2"), "20 21 22 ");
    EXPECT_EQ(machine.files.at("F4"), "40 41 42 ");
    EXPECT_EQ(std::count(machine.functions.begin(), machine.functions.end(), 0x10), 4);
}

TEST_F(FileTest, TalksToTheDevices) {
    const auto at = [](RuntimeEntry entry) { return LibraryMachine::address(entry); };
    file = at(RuntimeEntry::lstFile);
    write("printed");
    EXPECT_EQ(machine.printer, "printed");
    assign("aux:");
    call(RuntimeEntry::fileRewrite, file, 0);
    write("sent");
    EXPECT_EQ(machine.auxiliary, "sent");
    machine.auxiliaryInput = "12\r";
    EXPECT_EQ(readString(), "12");
    call(RuntimeEntry::readLine);
    call(RuntimeEntry::selectStandardInput);
    EXPECT_EQ(ask(RuntimeEntry::fileEoln), 1);
    file = at(RuntimeEntry::conFile);
    write("shown");
    file = at(RuntimeEntry::usrFile);
    write("!");
    EXPECT_EQ(machine.output, "shown!");
    machine.output.clear();
    machine.keys = "kt";
    for (const RuntimeEntry device : {RuntimeEntry::kbdFile, RuntimeEntry::trmFile}) {
        call(RuntimeEntry::selectInput, at(device));
        call(RuntimeEntry::readChar, dataAddress);
        EXPECT_EQ(machine.byte(dataAddress), device == RuntimeEntry::kbdFile ? 'k' : 't');
    }
    EXPECT_EQ(machine.output, "t"); // the keyboard is not echoed
    call(RuntimeEntry::selectStandardInput);
    machine.keys = "from a line\r";
    file = at(RuntimeEntry::conFile);
    EXPECT_EQ(readString(), "from a line");
    EXPECT_EQ(ask(RuntimeEntry::fileEoln), 1);
    EXPECT_EQ(ask(RuntimeEntry::fileEof), 0);
    EXPECT_EQ(result(), 0);
}

TEST_F(FileTest, CallsThePrograms) {
    // A driver at 9800h: LD (9900h),A / RET.
    machine.setText(0x9800, std::string("\x32\x00\x99\xC9", 4));
    machine.setWord(LibraryMachine::address(RuntimeEntry::usrOutPtr), 0x9800);
    file = LibraryMachine::address(RuntimeEntry::usrFile);
    write("u");
    EXPECT_EQ(machine.byte(0x9900), 'u');
    machine.setWord(LibraryMachine::address(RuntimeEntry::conOutPtr), 0x9800);
    call(RuntimeEntry::writeChar, 0, 0, 0, 'c');
    EXPECT_EQ(machine.byte(0x9900), 'c');
    EXPECT_EQ(machine.output, "");
}

TEST_F(FileTest, ReportsErrorsOnTheConsole) {
    assign("OUT");
    call(RuntimeEntry::fileRewrite, file, 0);
    call(RuntimeEntry::selectOutput, file);
    call(RuntimeEntry::writeChar, 0, 0, 0, 'x');
    call(RuntimeEntry::rangeError);
    EXPECT_EQ(machine.output, "\r\nRun-time error 91, PC=8000\r\nProgram aborted\r\n");
    EXPECT_EQ(machine.files.at("OUT"), "x");
}

} // namespace
