// Memory that runs out while a program is compiled: every request for memory fails in turn.
#include "compiler.h"
#include "test_source.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr long never = std::numeric_limits<long>::max();
long requestsUntilFailure = never;
bool failsForEver = false;

void* request(std::size_t size) {
    if (requestsUntilFailure != never && --requestsUntilFailure <= 0) {
        requestsUntilFailure = failsForEver ? 1 : never;
        throw std::bad_alloc();
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

void* operator new(std::size_t size) {
    return request(size);
}
void* operator new[](std::size_t size) {
    return request(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

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

/// Compiles with the given request failing. Returns whether that many requests were made at all.
bool compileWithout(long requestNumber, bool forEver, const CompileResult& whole) {
    MemoryHost host = exampleHost();
    CompileOptions options;
    options.mainFile = "MAIN.PAS";
    failsForEver = forEver;
    requestsUntilFailure = requestNumber;
    bool failed = false;
    try {
        const CompileResult result = compile(host, options);
        // Requests of a single failure that did not matter leave the program as it is.
        failed = requestsUntilFailure == never;
        requestsUntilFailure = never;
        EXPECT_TRUE(!result.ok || result.image == whole.image);
    } catch (const std::bad_alloc&) {
        requestsUntilFailure = never;
        failed = true;
    }
    return failed;
}

TEST(Allocation, EveryRequestMayFail) {
    MemoryHost host = exampleHost();
    CompileOptions options;
    options.mainFile = "MAIN.PAS";
    const CompileResult whole = compile(host, options);
    ASSERT_TRUE(whole.ok) << errorMessage(whole.diagnostic) << " " << whole.diagnostic.position.line;
    for (const bool forEver : {false, true}) {
        long number = 1;
        while (compileWithout(number, forEver, whole))
            ++number;
        EXPECT_GT(number, 100) << "the compiler asks for memory more often than that";
    }
}

} // namespace
} // namespace tp3::test
