#include "native_files.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tp3 {

namespace {

namespace fs = std::filesystem;

struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closer>;

struct FolderCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

class FileReader : public SourceReader {
  public:
    FileReader(File file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}
    std::size_t read(char* buffer, std::size_t capacity) override {
        const std::size_t count = std::fread(buffer, 1, capacity, file_.get());
        if (count < capacity && std::ferror(file_.get()) != 0) {
            fail(path_); // what was read is not the whole program, though it may be one
        }
        return count;
    }

  private:
    File file_;
    std::string path_;
};

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::toupper(x) == std::toupper(y); });
}

} // namespace

fs::path findIgnoringCase(const fs::path& folder, std::string_view name) {
    fs::path place = folder.empty() ? fs::path(".") : folder;
    std::string rest(name);
    std::replace(rest.begin(), rest.end(), '\\', '/');
    for (const fs::path& part : fs::path(rest)) {
        fs::path found;
        if (part == "." || part == ".." || part == "/") {
            place /= part;
            continue;
        }
        // The standard library's iterator ends the program when memory runs out in it.
        const std::unique_ptr<DIR, FolderCloser> entries(opendir(place.c_str()));
        while (const dirent* const entry = entries == nullptr ? nullptr : readdir(entries.get())) {
            const std::string_view candidate = &entry->d_name[0];
            if (candidate == part.native()) {
                found = place / candidate;
                break; // the exact name wins where several differ only in case
            }
            if (equalIgnoringCase(candidate, part.native())) {
                found = place / candidate;
            }
        }
        if (found.empty()) {
            return {};
        }
        place = found;
    }
    return place;
}

std::unique_ptr<SourceReader> FolderHost::openSource(std::string_view name) {
    const fs::path path = findIgnoringCase(folder_, name);
    std::error_code error;
    if (path.empty() || !fs::is_regular_file(path, error)) {
        return nullptr;
    }
    File file(std::fopen(path.c_str(), "rb"));
    return file == nullptr ? nullptr : std::make_unique<FileReader>(std::move(file), path.string());
}

std::size_t FolderHost::stackLeft() {
    // Half of what the system allows: sanitizers and the callers above take their share too.
    rlimit limit{};
    constexpr std::size_t modest = 4U << 20U;
    std::size_t total = modest;
    if (getrlimit(RLIMIT_STACK, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
        total = std::min<std::size_t>(limit.rlim_cur / 2, std::size_t{64} << 20U);
    }
    const auto* here = reinterpret_cast<const char*>(__builtin_frame_address(0));
    const auto used = static_cast<std::size_t>(stackBase_ > here ? stackBase_ - here : here - stackBase_);
    return used < total ? total - used : 0;
}

} // namespace tp3
