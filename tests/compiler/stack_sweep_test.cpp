// Programs whose stack and heap meet, over sizes of frames, temporaries, saved variables, depths of calls and
// fills of the heap. Each must end in run-time error FF or be right, and its stack must never come so near to
// the heap that an interrupt would write into it.
#include "compiler.h"
#include "library_machine.h"
#include "test_source.h"

#include <gtest/gtest.h>

namespace tp3::test {
namespace {

/// What stays below the stack pointer at the worst moment, for an interrupt and the BDOS (stackMargin in the
/// run-time library's sources, without what programs and library may take of it).
constexpr int interruptRoom = 112;

struct Outcome {
    std::string output;
    int leastGap = 0;
    [[nodiscard]] bool collided() const { return output.find("Run-time error FF") != std::string::npos; }
};

Outcome run(const std::string& source) {
    MemoryHost host;
    host.files["MAIN.PAS"] = source;
    CompileOptions options;
    options.mainFile = "MAIN.PAS";
    const CompileResult compiled = compile(host, options);
    EXPECT_TRUE(compiled.ok) << errorMessage(compiled.diagnostic) << "\n" << source;
    if (!compiled.ok)
        return {};
    std::vector<std::uint8_t> file = runtime_test::libraryFile();
    file.insert(file.end(), compiled.image.begin(), compiled.image.end());
    runtime_test::LibraryMachine machine(file);
    machine.runProgram();
    EXPECT_TRUE(machine.ended);
    return {machine.output, machine.leastGap};
}

/// The program goes down until its stack meets the heap.
void expectCollision(const std::string& source, const std::string& what) {
    const Outcome result = run(source);
    EXPECT_TRUE(result.collided()) << what << ": " << result.output;
    EXPECT_GE(result.leastGap, interruptRoom) << what;
}

/// Takes all but `left` bytes of what the heap can give at all, then runs the statement, which writes
/// `wanted`, and says whether the heap is whole.
void expectWhole(const std::string& declarations, const std::string& statement, const std::string& wanted,
                 int left) {
    const std::string source = "type Bytes = array[1..30000] of Byte;\n"
                               "var block: ^Bytes; size, i: Integer; bad: Boolean;\n" +
                               declarations +
                               "begin\n"
                               "  size := StackPtr - HeapPtr - 200 - " +
                               std::to_string(left) +
                               ";\n"
                               "  GetMem(block, size);\n"
                               "  FillChar(block^, size, 85);\n" +
                               statement +
                               "  bad := False;\n"
                               "  for i := 0 to size - 1 do\n"
                               "    if Mem[Ord(block) + i] <> 85 then bad := True;\n"
                               "  if bad then WriteLn('broken') else WriteLn('whole')\n"
                               "end.\n";
    const Outcome result = run(source);
    const std::string what = statement + " with " + std::to_string(left) + " bytes left";
    EXPECT_GE(result.leastGap, interruptRoom) << what;
    if (!result.collided()) {
        EXPECT_EQ(result.output, wanted + "\r\nwhole\r\n") << what;
    }
}

TEST(StackSweep, FramesWithATemporary) {
    for (int size = 0; size <= 4000; size += size < 300 ? 23 : 119) {
        const std::string room = size == 0 ? "" : "room: array[1.." + std::to_string(size) + "] of Byte;";
        const std::string use = size == 0 ? "" : "FillChar(room, SizeOf(room), depth);";
        expectCollision("type Path = string[80];\n"
                        "var depth: Integer;\n"
                        "procedure Down(path: Path);\nvar " +
                            room + " k: Integer;\nbegin depth := depth + 1; " + use +
                            " Down(path + '/'); k := depth end;\n"
                            "begin depth := 0; Down('a') end.\n",
                        "a frame of " + std::to_string(size));
    }
}

TEST(StackSweep, HugeFrames) {
    // More than all of the stack: the pointer must not wrap around.
    for (const int size : {9000, 18000, 27000}) {
        expectCollision("var depth: Integer;\nprocedure Down;\nvar room: array[1.." + std::to_string(size) +
                            "] of Byte;\n"
                            "begin depth := depth + 1; FillChar(room, SizeOf(room), depth); Down end;\n"
                            "begin depth := 0; Down end.\n",
                        "a frame of " + std::to_string(size));
    }
}

TEST(StackSweep, FramesBelowAFilledHeap) {
    for (int size = 1; size <= 2000; size += 97) {
        expectCollision("type Bytes = array[1..30000] of Byte;\nvar block: ^Bytes; depth: Integer;\n"
                        "procedure Down;\nvar room: array[1.." +
                            std::to_string(size) +
                            "] of Byte;\n"
                            "begin depth := depth + 1; FillChar(room, SizeOf(room), 0); Down end;\n"
                            "begin depth := 0; GetMem(block, MaxAvail - 3000); Down end.\n",
                        "a frame of " + std::to_string(size));
    }
}

TEST(StackSweep, SavedVariables) {
    for (int count = 0; count <= 120; count += count < 12 ? 1 : 27) {
        std::string names;
        std::string sets;
        std::string sum;
        for (int i = 0; i < count; ++i) {
            const std::string name = "v" + std::to_string(i);
            names += name + ": Integer; ";
            sets += name + " := a + " + std::to_string(i) + "; ";
            sum += " + " + name;
        }
        for (const char* room : {"", "room: array[1..50] of Byte; "}) {
            const std::string fill = *room == '\0' ? "" : "FillChar(room, 50, 0); ";
            expectCollision(std::string("function F(a: Integer): Integer;\nvar k: Integer; ") + names + room +
                                "\nbegin k := a; " + sets + fill + "F := F(a + 1) + k" + sum +
                                " end;\nbegin WriteLn(F(1)) end.\n",
                            std::to_string(count) + " saved variables " + room);
        }
    }
}

TEST(StackSweep, StringFunctions) {
    expectCollision("type S = string[200];\nfunction F(n: Integer): S;\n"
                    "begin F := F(n + 1) + 'x' + F(n + 2) end;\nbegin WriteLn(F(1)) end.\n",
                    "a string function");
    expectCollision("type S = string[10];\nfunction F(n: Integer): S;\n"
                    "begin F := Copy(F(n + 1) + 'x', 1, 5) end;\nbegin WriteLn(F(1)) end.\n",
                    "Copy of one");
}

TEST(StackSweep, RealsAndSets) {
    expectCollision("function F(x: Real): Real;\nvar a, b: Real;\n"
                    "begin a := x + 1; b := a * 2; F := F(a) * (b + F(b) * (a + F(a + b))) end;\n"
                    "begin WriteLn(F(1)) end.\n",
                    "reals");
    expectCollision("type Chars = set of Char;\nprocedure P(c: Chars);\nvar d: Chars;\n"
                    "begin d := c + ['a'..'z']; P(d * c + ['x']); d := c end;\nbegin P([]) end.\n",
                    "sets");
}

TEST(StackSweep, MutualRecursionAndNesting) {
    expectCollision("procedure B(n: Integer); forward;\n"
                    "procedure A(n: Integer);\nvar x: array[1..33] of Integer;\n"
                    "  procedure Inner;\n  begin x[1] := x[1] + n; B(n + 1) end;\n"
                    "begin x[1] := n; Inner; x[2] := x[1] end;\n"
                    "procedure B;\nvar k: Integer;\nbegin k := n; A(n + 1); if k = n then A(k) end;\n"
                    "begin A(1) end.\n",
                    "mutual recursion");
}

TEST(StackSweep, MainProgramBesideAFullHeap) {
    const std::string strings = "var a, b: string[20];\n";
    const std::string joins = "  a := 'one'; b := 'two'; WriteLn(a + b);\n";
    for (int left = 0; left <= 1200; left += left < 320 ? 7 : 61) {
        expectWhole(strings, joins, "onetwo", left);
        expectWhole(strings, "  a := 'one'; b := 'two'; WriteLn(Copy(a + b, 2, 3) + (b + a));\n", "nettwoone",
                    left);
        expectWhole("", "  WriteLn(2.5 * 4 + Sqrt(16):5:2);\n", "14.00", left);
    }
}

TEST(StackSweep, MaxAvailLeavesRoomForAConcatenation) {
    const Outcome result = run("var p: ^Integer; a, b: string[20];\nbegin\n"
                               "  GetMem(p, MaxAvail); a := 'one'; b := 'two'; WriteLn(a + b + a)\nend.\n");
    EXPECT_EQ(result.output, "onetwoone\r\n");
}

TEST(StackSweep, DeepChainsOfCalls) {
    for (int depth = 5; depth <= 95; depth += 15) {
        std::string routines;
        for (int i = 1; i <= depth; ++i) {
            const std::string inner = i == 1 ? "sum := sum + 1" : "P" + std::to_string(i - 1);
            routines += "procedure P" + std::to_string(i) + "; begin " + inner + "; sum := sum + 1 end;\n";
        }
        for (int left = 0; left <= 200; left += 19) {
            expectWhole("var sum: Integer;\n" + routines,
                        "  sum := 0; P" + std::to_string(depth) + "; WriteLn(sum);\n",
                        std::to_string(depth + 1), left);
        }
        // The same below a recursion, from its last activation too.
        expectCollision("var sum: Integer;\n" + routines + "procedure Down(n: Integer);\nbegin P" +
                            std::to_string(depth) + "; Down(n + 1); P1 end;\nbegin sum := 0; Down(0) end.\n",
                        "a chain of " + std::to_string(depth));
    }
}

TEST(StackSweep, ArgumentsOfExternalRoutines) {
    // The routine takes the string off: LD HL,2; ADD HL,SP; LD C,(HL); LD B,0; ADD HL,BC; INC HL; POP DE; LD
    // SP,HL; EX DE,HL; JP (HL).
    expectCollision(
        "type S = string[255]; Bytes = array[1..13] of Byte;\n"
        "const code: Bytes = ($21,2,0,$39,$4E,6,0,9,$23,$D1,$F9,$EB,$E9);\nvar t: S; n: Integer;\n"
        "procedure Outside(s: S); external $D300;\n"
        "procedure Down;\nvar k: Integer;\nbegin n := n + 1; k := n; Outside(t); Down; n := k end;\n"
        "begin Move(code, Mem[$D300], 13); FillChar(t, 256, 255); n := 0; Down end.\n",
        "an external routine");
}

} // namespace
} // namespace tp3::test
