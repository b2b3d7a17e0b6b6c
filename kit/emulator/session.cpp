#include "emulator/session.h"

#include "emulator/wide_text.h"
#include "files/host_files.h"

#include <utility>

namespace emulator {

namespace {

constexpr DWORD exitLimit = 3'000; // milliseconds that the emulator has to write its settings
constexpr std::size_t keptLines = 12;
constexpr std::size_t largestSettings = 1U << 20;
constexpr std::size_t largestImage = 64U << 20; // a hard disk of MSX-DOS 1 has at most 32 MB

bool exists(const std::string& path) {
    return GetFileAttributesW(wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool isFolder(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(wide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void makeFolder(const std::string& path) {
    if (CreateDirectoryW(wide(path).c_str(), nullptr) == 0 && GetLastError() != ERROR_ALREADY_EXISTS)
        failWithLastError("The emulator's folder " + path + " cannot be made");
}

std::string environment(const wchar_t* name) {
    std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return narrow(value);
}

StarterSettings readSettings(const std::string& folder) {
    StarterSettings settings;
    try {
        const std::string path = folder + "\\msx.ini";
        if (exists(path))
            settings = parseStarterSettings(files::readWholeFile(files::pathOf(path), largestSettings));
    } catch (const SettingsError& error) {
        throw Failure(folder + "\\msx.ini, " + error.what());
    }
    const std::string program = environment(L"TAVREL_OPENMSX");
    if (!program.empty())
        settings.openmsx = program;
    return settings;
}

/// openMSX knows nothing of screens with more than 96 pixels per inch, so Windows enlarges its window.
unsigned scaleOfThisScreen() {
    RECT area = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    HDC const screen = GetDC(nullptr);
    const int density = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return scaleForScreen(MulDiv(area.right - area.left, 96, density),
                          MulDiv(area.bottom - area.top, 96, density));
}

/// openMSX finds its files through these. A relative path, since it does not read letters beyond ASCII from
/// there.
void setDataFolder(bool own) {
    if (!own)
        return;
    SetEnvironmentVariableW(L"OPENMSX_HOME", L".");
    SetEnvironmentVariableW(L"OPENMSX_USER_DATA", nullptr);
    SetEnvironmentVariableW(L"OPENMSX_SYSTEM_DATA", nullptr);
}

} // namespace

Session::Session(std::string folder, HWND window, UINT message)
    : folder_(std::move(folder)), data_(folder_ + "\\data"), window_(window), message_(message) {}

void Session::run(const Request& request) {
    const StarterSettings settings = readSettings(folder_);
    const bool same = request.machine == request_.machine && request.rest == request_.rest &&
                      settings == settings_ && !request.image.empty();
    if (process_ && !process_->ended() && same) {
        changeProgram(request);
        return;
    }
    stop();
    settings_ = settings;
    start(request);
}

void Session::start(const Request& request) {
    const bool own = settings_.openmsx.empty();
    const std::string program = own ? folder_ + "\\openmsx\\openmsx.exe" : settings_.openmsx;
    const bool unix = isUnixProgram(program);
    if (!unix && (!exists(program) || isFolder(program)))
        throw Failure("There is no " + program +
                      (own ? "." : ", which " + folder_ + "\\msx.ini names as openMSX."));
    makeFolder(data_);
    makeFolder(data_ + "\\share");
    CopyFileW(wide(folder_ + "\\imgui.ini").c_str(), wide(data_ + "\\share\\imgui.ini").c_str(), TRUE);
    setDataFolder(settings_.ownData);
    Surroundings surroundings = {folder_ + "\\start.tcl", "", copyImage(request.image)};
    if (unix) {
        startUnix(request, program, surroundings);
        return;
    }
    surroundings.pipe = Process::newPipeName();
    log_.clear();
    failure_.clear();
    request_ = request;
    process_ =
        std::make_unique<Process>(commandLine(program, openmsxArguments(request, settings_, surroundings)),
                                  data_, surroundings.pipe, window_, message_);
    const unsigned scale = settings_.scale != 0 ? settings_.scale : scaleOfThisScreen();
    process_->send("tavrel_show " + std::to_string(scale));
}

void Session::startUnix(const Request& request, const std::string& program,
                        const Surroundings& surroundings) {
    std::vector<std::string> arguments = openmsxArguments(request, settings_, surroundings);
    for (std::string& argument : arguments)
        argument = unixPath(argument);
    arguments.insert(arguments.end(), {"-command", "tavrel_full_speed"});
    startUnixProgram(commandLine(program, arguments), data_);
}

void Session::changeProgram(const Request& request) {
    const std::string copy = copyImage(request.image);
    if (!process_->send("tavrel_insert " + tclWord(copy)))
        throw Failure("The emulator does not answer any more. Close it and try again.");
    request_ = request;
    process_->show();
}

void Session::stop() {
    if (!process_)
        return;
    if (process_->send("exit"))
        WaitForSingleObject(process_->handle(), exitLimit);
    process_.reset();
}

/// The emulator holds its disk open, and the next build must be able to replace the original; so it gets a
/// copy. Not the one that it has. A folder, which openMSX takes for a disk too, is no such matter.
std::string Session::copyImage(const std::string& image) {
    if (image.empty() || isFolder(image))
        return image;
    const unsigned next = 1 - image_;
    const std::string copy = data_ + (next == 0 ? "\\disk-a.dsk" : "\\disk-b.dsk");
    files::WriteOptions options;
    options.flush = false; // it is made anew anyway
    files::writeWholeFile(files::pathOf(copy), files::readWholeFile(files::pathOf(image), largestImage),
                          options);
    image_ = next;
    return copy;
}

void Session::spoken() {
    if (!process_)
        return;
    for (const Said& said : process_->said()) {
        if (said.kind == Said::Kind::failure)
            failure_ = said.text;
        if (said.kind == Said::Kind::reply || said.kind == Said::Kind::update || said.text.empty() ||
            said.text.find("openmsx-output>") != std::string::npos)
            continue;
        log_.push_back(said.text);
        if (log_.size() > keptLines)
            log_.erase(log_.begin());
    }
    if (failure_.empty())
        return;
    process_.reset();
    throw Failure("The emulator cannot run the program:\n" + std::exchange(failure_, ""));
}

std::string Session::lastWords() const {
    std::string text;
    for (const std::string& line : log_)
        text += "\n" + line;
    return text;
}

void Session::finished() {
    process_->readToEnd();
    spoken();
    const DWORD code = process_->exitCode();
    process_.reset();
    if (code != 0)
        throw Failure("The emulator ended with an error (code " + std::to_string(code) + ")." + lastWords());
}

} // namespace emulator
