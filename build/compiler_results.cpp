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

std::vector<std::string> readSizeLines(TextInput& file) {
    constexpr std::size_t sizeLines = 3;
    std::vector<std::string> lines;
    try {
        std::string item;
        while (!item.starts_with("Code"))
            item = file.item();
        lines.push_back(item);
        while (lines.size() < sizeLines)
            lines.push_back(file.item());
    } catch (const RuntimeError&) {
        // The program has been compiled all the same; what is known of its sizes is shown.
    }
    return lines;
}

} // namespace tavrel
