#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace tavrel::fuzzing {

/// A file for functions that read from a path; one for each process, in memory where the system offers that.
class ScratchFile {
  public:
    explicit ScratchFile(const std::string& ending) {
        const std::filesystem::path shared = "/dev/shm";
        std::error_code error;
        const auto folder =
            std::filesystem::is_directory(shared, error) ? shared : std::filesystem::temp_directory_path();
        path_ = (folder / ("tavrel-fuzz-" + std::to_string(getpid()) + ending)).string();
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() { std::remove(path_.c_str()); }

    /// Fills the file and gives back its path.
    const std::string& write(const std::uint8_t* data, std::size_t size) const {
        std::FILE* const file = std::fopen(path_.c_str(), "wb");
        if (file == nullptr || std::fwrite(data, 1, size, file) != size || std::fclose(file) != 0) {
            std::perror(path_.c_str());
            std::abort();
        }
        return path_;
    }

  private:
    std::string path_;
};

} // namespace tavrel::fuzzing
