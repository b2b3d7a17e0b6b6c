#include "util/runtime_error.h"

#include <utility>

namespace tavrel {

std::string_view runtimeErrorText(RuntimeErrorNumber number) {
    switch (number) {
    case RuntimeErrorNumber::overflow:
        return "Overflow";
    case RuntimeErrorNumber::subscriptOutOfRange:
        return "Subscript out of range";
    case RuntimeErrorNumber::typeMismatch:
        return "Type mismatch";
    case RuntimeErrorNumber::badFileNameOrNumber:
        return "Bad file name or number";
    case RuntimeErrorNumber::fileNotFound:
        return "File not found";
    case RuntimeErrorNumber::deviceIoError:
        return "Device I/O error";
    case RuntimeErrorNumber::diskFull:
        return "Disk full";
    case RuntimeErrorNumber::inputPastEndOfFile:
        return "Input past end of file";
    case RuntimeErrorNumber::permissionDenied:
        return "Permission denied";
    case RuntimeErrorNumber::pathFileAccessError:
        return "Path/File access error";
    case RuntimeErrorNumber::pathNotFound:
        return "Path not found";
    }
    return "Application-defined or object-defined error";
}

RuntimeError::RuntimeError(RuntimeErrorNumber number, std::string detail)
    : std::runtime_error(std::string(runtimeErrorText(number))), number_(number), detail_(std::move(detail)) {
}

std::string RuntimeError::message() const {
    std::string message(text());
    if (!detail_.empty())
        message += "\r\n" + detail_;
    return message;
}

} // namespace tavrel
