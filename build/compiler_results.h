// What the compiler leaves behind: "errors.txt" and "result.txt".
#pragma once

#include <string>
#include <vector>

namespace tavrel {

class TextInput;

struct CompilerError {
    std::string file; ///< of the first record, as written there
    double line = 0;  ///< of the first record, from 1
    std::string text; ///< what the progress window shows, lines ended by CR LF
};

/// Reads error records of five items each: file, line, column, number, text. Because the end is tested after
/// a record has been read, the last of several records is not shown. Throws RuntimeError 62 when the first
/// record is not whole.
CompilerError readCompilerErrors(TextInput& file);

/// The three size lines: the first item that begins with "Code" and the two items after it; as many of them
/// as there are before the file ends.
std::vector<std::string> readSizeLines(TextInput& file);

} // namespace tavrel
