#include "build/compiler_results.h"

#include "util/runtime_error.h"
#include "util/text.h"
#include "util/text_input.h"

#include <array>

namespace tavrel {

namespace {

using ErrorRecord = std::array<std::string, 5>;

ErrorRecord readRecord(TextInput& file) {
    ErrorRecord record;
    for (std::string& field : record)
        field = file.item();
    return record;
}

std::string shownText(const ErrorRecord& record) {
    return "file  : " + record[0] + ": line " + record[1] + ", column " + record[2] +
           "\r\nError : " + record[3] + " - " + record[4] + "\r\n";
}

} // namespace

CompilerError readCompilerErrors(TextInput& file) {
    ErrorRecord record = readRecord(file);
    CompilerError error;
    error.file = record[0];
    error.line = numericValue(record[1]);
    do {
        error.text += shownText(record);
        try {
            record = readRecord(file);
        } catch (const RuntimeError&) {
            break; // nothing more to read
        }
    } while (!file.atEnd());
    return error;
}

std::optional<std::vector<std::string>> readSizeLines(TextInput& file) {
    try {
        std::string item;
        while (!item.starts_with("Code"))
            item = file.item();
        std::vector<std::string> lines = {item};
        lines.push_back(file.item());
        lines.push_back(file.item());
        return lines;
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

} // namespace tavrel
