// dsktool: puts files on MSX disk images and takes them off.
#include "disk/commands.h"

#include <cstdio>
#include <new>
#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>

#include <shellapi.h> // stands on windows.h
#endif

namespace {

/// The arguments without the program's own name. On Windows the C library would put file names in the place
/// of patterns, and lose letters that the code page does not have.
std::vector<std::string> argumentsOf(int count, char** words) {
#ifdef _WIN32
    static_cast<void>(count);
    static_cast<void>(words);
    std::vector<std::string> arguments;
    int wideCount = 0;
    LPWSTR* const wide = CommandLineToArgvW(GetCommandLineW(), &wideCount);
    for (int i = 1; wide != nullptr && i < wideCount; ++i) {
        const int size = WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, nullptr, 0, nullptr, nullptr);
        std::string text(static_cast<std::size_t>(size), '\0');
        WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, text.data(), size, nullptr, nullptr);
        text.resize(text.find('\0'));
        arguments.push_back(text);
    }
    LocalFree(wide);
    return arguments;
#else
    return {words + 1, words + count};
#endif
}

} // namespace

int main(int count, char** words) {
    try {
        disk::Report report;
        const disk::ExitCode code = disk::run(argumentsOf(count, words), report);
        std::fwrite(report.errors.data(), 1, report.errors.size(), stderr);
        std::fwrite(report.output.data(), 1, report.output.size(), stdout);
        if (std::fflush(stdout) != 0) {
            std::fputs("dsktool: the output could not be written\n", stderr);
            return disk::failed;
        }
        return code;
    } catch (const std::bad_alloc&) { // not even for the message that says so
        std::fputs("dsktool: there is not enough memory\n", stderr);
        return disk::failed;
    }
}
