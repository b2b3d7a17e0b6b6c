// Any bytes as a project file. What was read is written and read again the same, unless a name holds what no
// line can.
#include "fuzzer.h"
#include "project/project_file.h"
#include "scratch_file.h"
#include "util/runtime_error.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavrel::fuzzing::ScratchFile file(".tpj");
    try {
        const tavrel::ProjectFileContent content = tavrel::readProjectFile(file.write(data, size));
        const std::string bytes = tavrel::encodeProjectFile(content);
        const auto again = tavrel::readProjectFile(
            file.write(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
        tavrel::fuzzing::require(again == content);
    } catch (const tavrel::RuntimeError&) {
    }
    return 0;
}
