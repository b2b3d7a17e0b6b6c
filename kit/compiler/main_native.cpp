// tp3: the compiler as a program of this system.
#include "native_command.h"

#include <cstdio>
#include <new>

int main(int count, char** words) {
    try {
        tp3::Report report;
        const int code = tp3::run({words + 1, words + count}, report);
        std::fwrite(report.errors.data(), 1, report.errors.size(), stderr);
        std::fwrite(report.output.data(), 1, report.output.size(), stdout);
        if (std::fflush(stdout) != 0) {
            std::fputs("tp3: the output could not be written\n", stderr);
            return 1;
        }
        return code;
    } catch (const std::bad_alloc&) {
        std::fputs("tp3: there is not enough memory\n", stderr);
        return 1;
    }
}
