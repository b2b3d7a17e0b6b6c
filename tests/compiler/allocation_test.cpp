// Memory that runs out while a program is compiled: every request for memory fails in turn.
#include "compiler.h"
#include "test_source.h"
#include "tests/support/failing_allocation.h"

#include <gtest/gtest.h>

#include <new>

namespace tp3::test {
namespace {

constexpr const char* source = R"(program Everything;
type Color = (red, green, blue); Name = string[20];
  Link = ^Node; Node = record next: Link; case kind: Color of red: (i: Integer); green: (r: Real) end;
const primes: array[1..5] of Integer = (2, 3, 5, 7, 11); letters: set of Char = ['a'..'z'];
var first: Link; text1: Text; s: Name; i, j: Integer; a: array[0..9, 0..3] of Byte; x: Real; c: set of Color;
{$I PART.INC}
function Factorial(n: Integer): Real;
begin if n < 2 then Factorial := 1.0 else Factorial := n * Factorial(n - 1) end;
begin
  for i := 1 to 5 do for j := 0 to 3 do a[i, j] := primes[i] * j;
  New(first); with first^ do begin kind := green; r := Factorial(10) end;
  case i of 1..3: s := 'abc'; 4: s := s + 'x' else Insert('y', s, 1) end;
  c := [red, blue] - [blue]; if (red in c) and (s[1] in letters) then Twice(i);
  Assign(text1, 'A.TXT'); Rewrite(text1); WriteLn(text1, first^.r:10:2, i:4, s); Close(text1);
  x := Sqrt(2.0) + 3.5; inline($3E / 1 / $C9); repeat i := i - 1 until i < 0
end.
)";

MemoryHost exampleHost() {
    MemoryHost host;
    host.files["MAIN.PAS"] = source;
    host.files["PART.INC"] = "procedure Twice(var n: Integer); begin n := n * 2 end;";
    return host;
}

TEST(Allocation, EveryRequestMayFail) {
    MemoryHost host = exampleHost();
    CompileOptions options;
    options.mainFile = "MAIN.PAS";
    const CompileResult whole = compile(host, options);
    ASSERT_TRUE(whole.ok) << errorMessage(whole.diagnostic) << " " << whole.diagnostic.position.line;
    const long attempts = tavrel::test::withEveryFailingAllocation([&](long number, bool forEver) {
        MemoryHost fresh = exampleHost();
        bool same = true;
        try {
            const tavrel::test::FailingAllocation failing(number, forEver);
            const CompileResult result = compile(fresh, options);
            // A single failure that did not matter leaves the program as it is.
            same = !result.ok || result.image == whole.image;
        } catch (const std::bad_alloc&) {
            return true;
        }
        EXPECT_TRUE(same) << number;
        return same;
    });
    EXPECT_GT(attempts, 200) << "the compiler asks for memory more often than that";
}

} // namespace
} // namespace tp3::test
