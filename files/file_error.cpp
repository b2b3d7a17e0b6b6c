#include "files/file_error.h"

#include <system_error>

namespace files {

namespace {

std::string whyOf(Reason reason, int systemCode) {
    switch (reason) {
    case Reason::badName:
        return "this is not a file name";
    case Reason::fileNotFound:
        return "there is no such file";
    case Reason::folderNotFound:
        return "there is no such folder";
    case Reason::folder:
        return "this is a folder";
    case Reason::link:
        return "this is a link; use the name of the file that it stands for";
    case Reason::notAFile:
        return "this is not an ordinary file";
    case Reason::writeProtected:
        return "the file is write-protected";
    case Reason::inUse:
        return "another program uses the file";
    case Reason::tooLarge:
        return "the file is too large";
    case Reason::diskFull:
        return "the disk is full";
    case Reason::device:
        return "the device reports an error";
    case Reason::refused:
        break;
    }
    return std::system_category().message(systemCode);
}

} // namespace

FileError::FileError(Reason reason, const Path& path, int systemCode)
    : std::runtime_error(textOf(path) + ": " + whyOf(reason, systemCode)), reason_(reason) {}

Path pathOf(const std::string& text) {
#ifdef _WIN32
    return {std::u8string(text.begin(), text.end())};
#else
    return {text};
#endif
}

std::string textOf(const Path& path) {
#ifdef _WIN32
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
#else
    return path.native();
#endif
}

} // namespace files
