// Any bytes as what the compiler leaves behind, and as lines and items by turns.
#include "build/compiler_results.h"
#include "fuzzer.h"
#include "util/runtime_error.h"
#include "util/text_input.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    try {
        tavrel::TextInput errors(bytes);
        tavrel::readCompilerErrors(errors);
    } catch (const tavrel::RuntimeError&) {
    }
    try {
        tavrel::TextInput sizes(bytes);
        tavrel::fuzzing::require(tavrel::readSizeLines(sizes).size() <= 3);
    } catch (const tavrel::RuntimeError&) {
    }
    try {
        tavrel::TextInput text(bytes);
        std::size_t taken = 0;
        for (bool line = true; !text.atEnd(); line = !line) {
            taken += (line ? text.line() : text.item()).size();
            tavrel::fuzzing::require(taken <= bytes.size());
        }
    } catch (const tavrel::RuntimeError&) {
    }
    return 0;
}
