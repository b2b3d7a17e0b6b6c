// A folder of its own for each test.
#pragma once

#include "util/files.h"

#include <filesystem>
#include <string>

namespace tavrel::test {

/// Made empty, removed with all its content at the end. path() is a Windows path with its final backslash.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        static int counter = 10'000; // names of one length, since files hold the lengths of paths
        std::filesystem::path folder;
        do {
            folder = std::filesystem::temp_directory_path() / ("tavrel-test-" + std::to_string(++counter));
        } while (!std::filesystem::create_directory(folder));
        native_ = folder;
        path_ = native_.string();
        for (char& c : path_) {
            if (c == '/')
                c = '\\';
        }
        path_ += '\\';
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(native_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }
    const std::filesystem::path& native() const { return native_; }

    std::string write(const std::string& name, const std::string& bytes) const {
        writeWholeFile(path_ + name, bytes);
        return path_ + name;
    }
    std::string read(const std::string& name) const { return readWholeFile(path_ + name); }
    bool has(const std::string& name) const { return FileExists(path_ + name); }
    std::string makeFolder(const std::string& name) const {
        std::string portable = name;
        for (char& c : portable) {
            if (c == '\\')
                c = '/'; // every system takes it
        }
        std::filesystem::create_directories(native_ / portable);
        return path_ + name + "\\";
    }

  private:
    std::filesystem::path native_;
    std::string path_;
};

} // namespace tavrel::test
