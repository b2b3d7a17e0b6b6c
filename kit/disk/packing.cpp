#include "disk/packing.h"

#include "disk/msx_name.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace disk {

namespace {

enum class Rank { named, neededToStart, program, data, source };

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

Rank rankOf(const PackedFile& file, std::time_t newestProgram) {
    if (file.named)
        return Rank::named;
    const std::string name = displayName(file.file.name);
    if (isOneOf(name, {"MSXDOS.SYS", "COMMAND.COM", "MSXDOS2.SYS", "COMMAND2.COM", "AUTOEXEC.BAT"}))
        return Rank::neededToStart;
    const std::string ending = name.substr(std::min(name.find('.'), name.size()));
    if (ending == ".COM")
        return file.written == newestProgram ? Rank::neededToStart : Rank::program;
    if (isOneOf(ending, {".CHN", ".BAT"}))
        return Rank::program;
    return isOneOf(ending, {".PAS", ".INC", ".LIB", ".TPJ"}) ? Rank::source : Rank::data;
}

/// When the program that was compiled last was written.
std::time_t newestProgramOf(const std::vector<PackedFile>& files) {
    std::time_t newest = 0;
    for (const PackedFile& file : files) {
        const std::string name = displayName(file.file.name);
        if (name.ends_with(".COM") && !name.starts_with("COMMAND"))
            newest = std::max(newest, file.written);
    }
    return newest;
}

} // namespace

std::vector<LeftOut> addWhatFits(DiskImage& image, std::vector<PackedFile> files) {
    const std::time_t newest = newestProgramOf(files);
    std::stable_sort(files.begin(), files.end(), [newest](const PackedFile& one, const PackedFile& other) {
        return std::tuple(rankOf(one, newest), one.file.content.size()) <
               std::tuple(rankOf(other, newest), other.file.content.size());
    });
    DiskImage packed = image;
    std::vector<NewFile> named;
    for (const PackedFile& file : files) {
        if (file.named)
            named.push_back(file.file);
    }
    packed.add(named); // a damaged disk ends it here
    std::vector<LeftOut> leftOut;
    for (const PackedFile& file : files) {
        if (file.named)
            continue;
        try {
            packed.add({file.file});
        } catch (const DiskError& error) {
            leftOut.push_back({file.path, error.what()});
        }
    }
    if (!files.empty() && leftOut.size() == files.size())
        throw DiskError(leftOut.front().reason);
    image = std::move(packed);
    return leftOut;
}

} // namespace disk
