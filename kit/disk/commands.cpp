#include "disk/commands.h"

#include "disk/command_line.h"
#include "disk/disk_image.h"
#include "disk/fat_time.h"
#include "disk/host_files.h"
#include "disk/msx_name.h"
#include "disk/packing.h"
#include "files/host_files.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <new>
#include <optional>
#include <set>
#include <system_error>

namespace disk {

namespace {

void tell(Report& report, const std::string& message) {
    report.errors += "dsktool: " + message + "\n";
}

/// Files of the host that were asked for and cannot be used; what() names them and says why.
class UnusableFiles : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

bool isSameFile(const Path& one, const Path& other) {
    std::error_code ignored;
    return std::filesystem::equivalent(one, other, ignored);
}

Bytes readFile(const Path& path, std::size_t atMost) {
    const std::string bytes = files::readWholeFile(path, atMost);
    return {bytes.begin(), bytes.end()};
}

/// A device in the place of a file is a slip of the pen: what it holds would be gone.
void writeFile(const Path& path, const Bytes& content, std::optional<std::time_t> time = {}) {
    files::writeWholeFile(path, content, {.devices = false, .time = time});
}

/// Beside an image, the text that names the files that it had no place for.
constexpr std::string_view leftOutEnding = ".txt";
constexpr std::string_view leftOutHeading = "Not on this disk image:\r\n";

/// Files that were asked for by a pattern and do not get onto the disk.
class LeftOutList {
  public:
    explicit LeftOutList(Report& report) : report_(report) {}

    void add(const std::string& message) {
        tell(report_, message + " (left out)");
        text_ += message + "\r\n";
    }
    bool empty() const { return text_.empty(); }
    /// Puts the text beside the image, or deletes that of an earlier image.
    void writeBeside(const std::string& image) const {
        const Path path = pathOf(image + std::string(leftOutEnding));
        if (!empty()) {
            const std::string text = std::string(leftOutHeading) + text_;
            writeFile(path, Bytes(text.begin(), text.end()));
        } else if (isOurs(path)) {
            std::error_code ignored;
            std::filesystem::remove(path, ignored);
        }
    }

  private:
    static bool isOurs(const Path& path) {
        std::string heading(leftOutHeading.size(), '\0');
        std::ifstream(path, std::ios::binary)
            .read(heading.data(), static_cast<std::streamsize>(heading.size()));
        return heading == leftOutHeading;
    }

    Report& report_;
    std::string text_;
};

/// A file of the host that was asked for.
struct Candidate {
    Path path;
    bool named = false; ///< and not found by a pattern
};

/// The files to add, each once.
std::vector<Candidate> findCandidates(const CommandLine& line) {
    std::vector<Candidate> found;
    const Path image = pathOf(line.image);
    const Path leftOutText = pathOf(line.image + std::string(leftOutEnding));
    const auto add = [&](const Path& path, bool named) {
        const auto isThis = [&](const Candidate& other) { return isSameFile(other.path, path); };
        if (std::none_of(found.begin(), found.end(), isThis))
            found.push_back({path, named});
    };
    for (const std::string& name : line.names) {
        std::error_code ignored;
        const Path path = pathOf(name);
        if (std::filesystem::is_directory(path, ignored))
            throw FileError(files::Reason::folder, path);
        // A system may take a pattern for a damaged name.
        if (hasWildcards(name) ? std::filesystem::exists(path, ignored) : isThere(path)) {
            if (isSameFile(path, image))
                throw UnusableFiles(name + ": this is the image itself");
            add(path, true);
            continue;
        }
        if (!hasWildcards(name))
            throw FileError(files::Reason::fileNotFound, path);
        const std::vector<Path> fitting = filesThatFit(name);
        if (fitting.empty())
            throw UnusableFiles(name + ": there are no such files");
        for (const Path& file : fitting) {
            if (!isSameFile(file, image) && !isSameFile(file, leftOutText))
                add(file, false);
        }
    }
    return found;
}

/// Gives each file its name on the disk. Files that were named come first, then those whose names are whole.
class NameGiver {
  public:
    NameGiver(Report& report, LeftOutList& leftOut) : report_(report), leftOut_(leftOut) {}

    /// @throws UnusableFiles when a file that was named cannot get a name of its own
    std::map<Name83, Candidate> give(const std::vector<Candidate>& candidates) {
        for (const bool named : {true, false}) {
            for (const bool cut : {false, true}) {
                for (const Candidate& candidate : candidates) {
                    const MsxName name = msxNameOf(textOf(candidate.path.filename()));
                    if (candidate.named == named && name.cut == cut)
                        give(candidate, name);
                }
            }
        }
        return std::move(given_);
    }

  private:
    void give(const Candidate& candidate, const MsxName& name) {
        const std::string path = textOf(candidate.path);
        if (!name.name)
            return refuse(candidate, path + ": not a name for an MSX disk: " + name.problem);
        const auto [place, isNew] = given_.try_emplace(*name.name, candidate);
        const std::string onDisk = displayName(*name.name);
        if (!isNew)
            return refuse(candidate, path + ": would be " + onDisk + " on the disk, as " +
                                         textOf(place->second.path) + " is");
        if (name.cut)
            report_.output += path + " becomes " + onDisk + "\n";
    }

    void refuse(const Candidate& candidate, const std::string& message) {
        if (candidate.named)
            throw UnusableFiles(message);
        leftOut_.add(message);
    }

    Report& report_;
    LeftOutList& leftOut_;
    std::map<Name83, Candidate> given_;
};

DiskImage openImage(const std::string& image) {
    return DiskImage(readFile(pathOf(image), 2 * largestImage));
}

/// Reads the files. One that was not named and cannot be read is left out.
std::vector<PackedFile> readCandidates(const std::map<Name83, Candidate>& candidates, LeftOutList& leftOut) {
    std::vector<PackedFile> files;
    for (const auto& [name, candidate] : candidates) {
        try {
            const std::time_t written = files::timeOf(candidate.path);
            files.push_back({{name, readFile(candidate.path, largestImage), fatTimeOf(written)},
                             textOf(candidate.path),
                             candidate.named,
                             written});
        } catch (const FileError& error) {
            if (candidate.named)
                throw;
            leftOut.add(error.what());
        }
    }
    return files;
}

/// Adds all files, or those that the disk has room for.
void pack(DiskImage& image, const std::vector<PackedFile>& files, LeftOutList& leftOut) {
    std::vector<NewFile> all;
    for (const PackedFile& file : files)
        all.push_back(file.file);
    try {
        image.add(all);
    } catch (const DiskError&) {
        for (const LeftOut& file : addWhatFits(image, files))
            leftOut.add(file.path + ": " + file.reason);
    }
}

ExitCode add(const CommandLine& line, Report& report) {
    LeftOutList leftOut(report);
    const Path path = pathOf(line.image);
    // An image that only cannot be seen at the moment must not give way to a new one.
    const bool isNew = !isThere(path);
    DiskImage image = isNew ? DiskImage() : openImage(line.image);
    pack(image, readCandidates(NameGiver(report, leftOut).give(findCandidates(line)), leftOut), leftOut);
    if (std::error_code ignored; isNew && path.has_parent_path())
        std::filesystem::create_directories(path.parent_path(), ignored); // the image's write will tell
    writeFile(path, image.bytes());
    leftOut.writeBeside(line.image);
    return leftOut.empty() ? done : doneInPart;
}

ExitCode list(const CommandLine& line, Report& report) {
    const DiskImage image = openImage(line.image);
    const std::vector<FileEntry> files = image.list();
    for (const FileEntry& file : files) {
        std::string row = displayName(file.name);
        row.resize(std::max<std::size_t>(row.size(), 12), ' ');
        std::string size = file.isFolder ? "<folder>" : std::to_string(file.size);
        size.insert(0, size.size() < 11 ? 11 - size.size() : 0, ' ');
        report.output += row + size + "  " + textOf(file.written) + "\n";
    }
    report.output += std::to_string(files.size()) + (files.size() == 1 ? " file, " : " files, ") +
                     std::to_string(image.freeBytes()) + " bytes free\n";
    const std::vector<std::string> faults = image.faults();
    for (const std::string& fault : faults)
        tell(report, "the disk is damaged: " + fault);
    return faults.empty() ? done : doneInPart;
}

/// The files of the disk that the names and patterns ask for. Folders fit no pattern.
/// @throws DiskError when one of them fits nothing
std::vector<FileEntry> chooseFiles(const DiskImage& image, const std::vector<std::string>& names) {
    std::vector<FileEntry> chosen;
    std::set<unsigned> slots;
    for (const std::string& name : names) {
        const bool isPattern = name.find_first_of("*?") != std::string::npos;
        bool fits = false;
        for (const FileEntry& file : image.list()) {
            if ((file.isFolder && isPattern) || !fitsPattern(displayName(file.name), name))
                continue;
            fits = true;
            if (slots.insert(file.slot).second)
                chosen.push_back(file);
        }
        if (!fits)
            throw DiskError("the disk has no " + name);
    }
    return chosen;
}

ExitCode extract(const CommandLine& line, Report& report) {
    const DiskImage image = openImage(line.image);
    std::vector<FileEntry> files;
    if (!line.names.empty()) {
        files = chooseFiles(image, line.names);
    } else {
        files = image.list();
        std::erase_if(files, [](const FileEntry& file) { return file.isFolder; });
    }
    const Path folder = pathOf(line.folder);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw FileError(files::Reason::refused, folder, error.value());
    ExitCode code = done;
    std::set<std::string> taken;
    for (const FileEntry& file : files) {
        const std::string name = safeHostName(file.name);
        try {
            if (!taken.insert(name).second)
                throw DiskError("the disk holds two files that would be " + name);
            if (name != displayName(file.name))
                report.output += displayName(file.name) + " becomes " + name + "\n";
            writeFile(folder / pathOf(name), image.extract(file), hostTimeOf(file.written));
        } catch (const DiskError& fault) {
            tell(report, std::string(fault.what()) + " (left out)");
            code = doneInPart;
        }
    }
    return code;
}

ExitCode remove(const CommandLine& line) {
    DiskImage image = openImage(line.image);
    image.remove(chooseFiles(image, line.names));
    writeFile(pathOf(line.image), image.bytes());
    return done;
}

ExitCode perform(const CommandLine& line, Report& report) {
    switch (line.verb) {
    case Verb::help:
        break;
    case Verb::add:
        return add(line, report);
    case Verb::list:
        return list(line, report);
    case Verb::extract:
        return extract(line, report);
    case Verb::remove:
        return remove(line);
    }
    report.output += helpText;
    return done;
}

} // namespace

ExitCode run(const std::vector<std::string>& arguments, Report& report) {
    CommandLine line;
    try {
        line = parseCommandLine(arguments);
        return perform(line, report);
    } catch (const UsageError& error) {
        tell(report, error.what());
        return wrongUse;
    } catch (const DiskError& error) {
        tell(report, line.image + ": " + error.what());
    } catch (const FileError& error) {
        tell(report, error.what());
    } catch (const UnusableFiles& error) {
        tell(report, error.what());
    } catch (const std::filesystem::filesystem_error& error) {
        tell(report, error.what());
    } catch (const std::bad_alloc&) {
        tell(report, "there is not enough memory");
    }
    return failed;
}

} // namespace disk
