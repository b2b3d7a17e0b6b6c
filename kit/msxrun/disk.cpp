#include "msxrun/disk.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace msxrun {

namespace {

constexpr unsigned firstCluster = 2;
/// So many host files stay open; programs open few, and no host allows so few.
constexpr std::ptrdiff_t openAtOnce = 64;

/// The folder's own lists must not follow a link out of it.
constexpr int fileFlags = O_NOFOLLOW | O_CLOEXEC;

struct DirectoryCloser {
    void operator()(DIR* directory) const { closedir(directory); }
};

bool isRegular(const struct stat& status) {
    return S_ISREG(status.st_mode);
}

std::uint16_t dosDate(const std::tm& time) {
    const int year = std::clamp(time.tm_year - 80, 0, 127);
    return static_cast<std::uint16_t>(year << 9 | (time.tm_mon + 1) << 5 | time.tm_mday);
}

std::uint16_t dosTime(const std::tm& time) {
    return static_cast<std::uint16_t>(time.tm_hour << 11 | time.tm_min << 5 | std::min(time.tm_sec, 59) / 2);
}

/// Writes all the bytes or says that it cannot.
bool writeAll(int descriptor, std::span<const std::uint8_t> bytes, std::uint64_t offset) {
    while (!bytes.empty()) {
        const ssize_t count = pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    return true;
}

} // namespace

Disk::Disk(const std::filesystem::path& folder, std::uint64_t freeBytes)
    : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), freeBytes_(freeBytes) {
    if (folder_ < 0) {
        throw std::system_error(errno, std::generic_category(), folder.string());
    }
    refreshDirectory();
}

Disk::~Disk() {
    closeDescriptors();
    ::close(folder_);
}

const Disk::File* Disk::fileAt(unsigned cluster) const {
    if (cluster < firstCluster || cluster - firstCluster >= files_.size()) {
        return nullptr;
    }
    const File& file = files_[cluster - firstCluster];
    return file.present ? &file : nullptr;
}

Disk::File* Disk::fileAt(unsigned cluster) {
    return const_cast<File*>(static_cast<const Disk*>(this)->fileAt(cluster));
}

std::vector<std::string> Disk::hostNames() const {
    std::vector<std::string> names;
    // A descriptor of its own: reading a folder moves its position.
    const int descriptor = openat(folder_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return names;
    }
    const std::unique_ptr<DIR, DirectoryCloser> directory(fdopendir(descriptor));
    if (directory == nullptr) {
        ::close(descriptor);
        return names;
    }
    while (const dirent* entry = readdir(directory.get())) {
        if (entry->d_type == DT_REG || entry->d_type == DT_UNKNOWN) {
            names.emplace_back(entry->d_name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Brings the places of the directory up to date with the folder, in which others may have made and deleted
/// files.
void Disk::refreshDirectory() {
    std::vector<std::string> present = hostNames();
    for (std::string& place : directory_) {
        const auto known = std::lower_bound(present.begin(), present.end(), place);
        if (known != present.end() && *known == place) {
            present.erase(known);
        } else {
            place.clear();
        }
    }
    auto place = directory_.begin();
    for (std::string& name : present) {
        place = std::find(place, directory_.end(), "");
        if (place == directory_.end()) {
            place = directory_.insert(place, std::move(name));
        } else {
            *place = std::move(name);
        }
    }
}

void Disk::replaceInDirectory(const std::string& hostName, const std::string& newName) {
    std::replace(directory_.begin(), directory_.end(), hostName, newName);
}

std::optional<std::string> Disk::hostNameOf(const Name83& name) const {
    if (!isFileName(name)) {
        return std::nullopt;
    }
    // The usual spelling first: no need then to read the folder. Of several others the first one wins.
    struct stat status {};
    const std::string upper = nameForHost(name);
    if (fstatat(folder_, upper.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && isRegular(status)) {
        return upper;
    }
    for (const std::string& candidate : hostNames()) {
        if (nameFromHost(candidate) == name &&
            fstatat(folder_, candidate.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && isRegular(status)) {
            return candidate;
        }
    }
    return std::nullopt;
}

std::uint16_t Disk::clusterOf(const std::string& hostName) {
    const auto known = std::find_if(files_.begin(), files_.end(), [&](const File& file) {
        return file.present && file.hostName == hostName;
    });
    const auto index = known - files_.begin();
    if (known == files_.end()) {
        if (files_.size() >= 0xFFF0U - firstCluster) {
            throw std::length_error("the program has used more files than a disk can number");
        }
        files_.push_back(File{.hostName = hostName});
    }
    return static_cast<std::uint16_t>(index + firstCluster);
}

std::optional<DirectoryEntry> Disk::entryOf(const std::string& hostName, const Name83& name) {
    struct stat status {};
    if (fstatat(folder_, hostName.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 || !isRegular(status) ||
        status.st_size > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    std::tm local{};
    localtime_r(&status.st_mtime, &local);
    DirectoryEntry entry{.name = name,
                         .cluster = clusterOf(hostName),
                         .size = static_cast<std::uint32_t>(status.st_size),
                         .date = dosDate(local),
                         .time = dosTime(local)};
    if (const File* file = fileAt(entry.cluster); file != nullptr && file->unclosed) {
        entry.size = file->recordedSize;
    }
    return entry;
}

std::vector<DirectoryEntry> Disk::list(const Name83& pattern) {
    std::vector<DirectoryEntry> entries;
    if (!hasWildcards(pattern)) {
        if (const auto hostName = hostNameOf(pattern)) {
            if (const auto entry = entryOf(*hostName, pattern)) {
                entries.push_back(*entry);
            }
        }
        return entries;
    }
    refreshDirectory();
    for (const std::string& hostName : directory_) {
        const auto name = nameFromHost(hostName);
        const auto isListed = [&](const DirectoryEntry& entry) { return entry.name == *name; };
        // Two host names that differ in case only are one name here.
        if (name && matches(pattern, *name) && std::none_of(entries.begin(), entries.end(), isListed)) {
            if (const auto entry = entryOf(hostName, *name)) {
                entries.push_back(*entry);
            }
        }
    }
    return entries;
}

std::optional<DirectoryEntry> Disk::create(const Name83& name) {
    if (!isFileName(name)) {
        return std::nullopt;
    }
    const std::string hostName = hostNameOf(name).value_or(nameForHost(name));
    const int descriptor = openat(folder_, hostName.c_str(), O_RDWR | O_CREAT | O_TRUNC | fileFlags, 0666);
    if (descriptor < 0) {
        return std::nullopt;
    }
    ::close(descriptor);
    refreshDirectory();
    if (File* file = fileAt(clusterOf(hostName))) {
        file->unclosed = false;
    }
    return entryOf(hostName, name);
}

bool Disk::remove(const Name83& name) {
    const auto hostName = hostNameOf(name);
    if (!hostName || unlinkat(folder_, hostName->c_str(), 0) != 0) {
        return false;
    }
    replaceInDirectory(*hostName, "");
    for (File& file : files_) {
        if (file.present && file.hostName == *hostName) {
            file.present = false;
            if (file.descriptor >= 0) {
                ::close(file.descriptor);
                file.descriptor = -1;
            }
        }
    }
    return true;
}

bool Disk::rename(const Name83& from, const Name83& to) {
    const auto hostName = hostNameOf(from);
    if (!hostName || !isFileName(to) || hostNameOf(to)) {
        return false;
    }
    const std::string newName = nameForHost(to);
    if (renameat(folder_, hostName->c_str(), folder_, newName.c_str()) != 0) {
        return false;
    }
    replaceInDirectory(*hostName, newName);
    for (File& file : files_) {
        if (file.present && file.hostName == *hostName) {
            file.hostName = newName;
        }
    }
    return true;
}

void Disk::closeDescriptors() {
    for (File& file : files_) {
        if (file.descriptor >= 0) {
            ::close(file.descriptor);
            file.descriptor = -1;
        }
    }
}

bool Disk::openDescriptor(File& file) {
    if (file.descriptor >= 0) {
        return true;
    }
    const auto isOpen = [](const File& other) { return other.descriptor >= 0; };
    if (std::count_if(files_.begin(), files_.end(), isOpen) >= openAtOnce) {
        closeDescriptors();
    }
    file.descriptor = openat(folder_, file.hostName.c_str(), O_RDWR | fileFlags);
    if (file.descriptor < 0) {
        file.descriptor = openat(folder_, file.hostName.c_str(), O_RDONLY | fileFlags);
    }
    return file.descriptor >= 0;
}

std::optional<std::uint32_t> Disk::hostLength(File& file) {
    struct stat status {};
    if (!openDescriptor(file) || fstat(file.descriptor, &status) != 0 ||
        status.st_size > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(status.st_size);
}

std::optional<std::size_t> Disk::read(unsigned cluster, std::uint32_t offset, std::span<std::uint8_t> bytes) {
    File* file = fileAt(cluster);
    if (file == nullptr || !openDescriptor(*file)) {
        return std::nullopt;
    }
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = pread(file->descriptor, bytes.data() + done, bytes.size() - done,
                                    static_cast<off_t>(offset) + static_cast<off_t>(done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}

bool Disk::growTo(File& file, std::uint32_t oldLength, std::uint32_t newLength, std::uint8_t filler) {
    if (newLength <= oldLength) {
        return true;
    }
    const std::uint32_t growth = newLength - oldLength;
    if (growth > freeBytes_) {
        return false;
    }
    std::array<std::uint8_t, 4096> block;
    block.fill(filler);
    for (std::uint64_t position = oldLength; position < newLength;) {
        const std::size_t count = std::min<std::size_t>(block.size(), newLength - position);
        if (!writeAll(file.descriptor, std::span(block).first(count), position)) {
            return false;
        }
        position += count;
    }
    freeBytes_ -= growth;
    return true;
}

void Disk::noteWrite(File& file, std::uint32_t oldLength) {
    if (!file.unclosed) {
        file.unclosed = true;
        file.recordedSize = oldLength;
    }
}

bool Disk::write(unsigned cluster, std::uint32_t offset, std::span<const std::uint8_t> bytes,
                 std::uint8_t filler) {
    File* file = fileAt(cluster);
    if (file == nullptr || bytes.size() > std::numeric_limits<std::uint32_t>::max() - offset) {
        return false;
    }
    const auto oldLength = hostLength(*file);
    if (!oldLength) {
        return false;
    }
    noteWrite(*file, *oldLength);
    const auto end = static_cast<std::uint32_t>(offset + bytes.size());
    if (!growTo(*file, *oldLength, std::min(offset, end), filler)) {
        return false;
    }
    const std::uint32_t growth = end > std::max(*oldLength, offset) ? end - std::max(*oldLength, offset) : 0;
    if (growth > freeBytes_ || !writeAll(file->descriptor, bytes, offset)) {
        return false;
    }
    freeBytes_ -= growth;
    return true;
}

bool Disk::setLength(unsigned cluster, std::uint32_t length) {
    File* file = fileAt(cluster);
    if (file == nullptr) {
        return false;
    }
    const auto oldLength = hostLength(*file);
    if (!oldLength) {
        return false;
    }
    noteWrite(*file, *oldLength);
    if (length >= *oldLength) {
        return growTo(*file, *oldLength, length, 0);
    }
    freeBytes_ += *oldLength - length;
    return ftruncate(file->descriptor, static_cast<off_t>(length)) == 0;
}

bool Disk::close(unsigned cluster, std::uint32_t size) {
    File* file = fileAt(cluster);
    if (file == nullptr) {
        return false;
    }
    if (!file->unclosed) {
        return true;
    }
    const auto length = hostLength(*file);
    if (!length || (size < *length && ftruncate(file->descriptor, static_cast<off_t>(size)) != 0)) {
        return false;
    }
    file->unclosed = false;
    return true;
}

std::vector<std::string> Disk::settle() {
    std::vector<std::string> names;
    for (File& file : files_) {
        if (!file.present || !file.unclosed) {
            continue;
        }
        const auto length = hostLength(file);
        if (length && *length != file.recordedSize) {
            names.push_back(file.hostName);
            if (file.recordedSize < *length) {
                // A failure leaves the bytes that were written; the caller names the file either way.
                [[maybe_unused]] const int status =
                    ftruncate(file.descriptor, static_cast<off_t>(file.recordedSize));
            }
        }
        file.unclosed = false;
    }
    return names;
}

} // namespace msxrun
