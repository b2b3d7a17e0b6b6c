// recorder.exe: stands in for an emulator. Writes its command line into recorder.txt beside itself.
#include <array>
#include <cstdio>
#include <string>
#include <windows.h>

int main() {
    std::array<char, MAX_PATH> path{};
    GetModuleFileNameA(nullptr, path.data(), MAX_PATH);
    const std::string folder = std::string(path.data()).substr(0, std::string(path.data()).rfind('\\') + 1);
    const std::string unfinished = folder + "recorder.new";
    std::FILE* const file = std::fopen(unfinished.c_str(), "wb");
    if (file == nullptr)
        return 1;
    const bool written = std::fprintf(file, "%s\n", GetCommandLineA()) > 0;
    if (std::fclose(file) != 0 || !written)
        return 1;
    // Whoever waits for the file finds it complete.
    return MoveFileExA(unfinished.c_str(), (folder + "recorder.txt").c_str(), MOVEFILE_REPLACE_EXISTING) != 0
               ? 0
               : 1;
}
