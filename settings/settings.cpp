#include "settings/settings.h"

#include "util/files.h"
#include "util/runtime_error.h"

#include <algorithm>
#include <utility>

namespace tavrel {

namespace {

class RecordWriter {
  public:
    void number(std::int16_t value) {
        const auto bits = static_cast<std::uint16_t>(value);
        bytes_ += static_cast<char>(bits & 0xFF);
        bytes_ += static_cast<char>(bits >> 8);
    }
    void text(const std::string& value) {
        const std::size_t length = std::min<std::size_t>(value.size(), 0xFFFF);
        number(static_cast<std::int16_t>(static_cast<std::uint16_t>(length)));
        bytes_.append(value, 0, length);
    }
    std::string take() { return std::move(bytes_); }

  private:
    std::string bytes_;
};

class RecordReader {
  public:
    explicit RecordReader(std::string_view bytes) : bytes_(bytes) {}

    std::int16_t number() {
        if (bytes_.size() < 2) { // half a number lies beyond the end too
            bytes_ = {};
            return 0;
        }
        const unsigned low = byte();
        const unsigned high = byte();
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(low | (high << 8)));
    }
    std::string text() {
        const std::size_t length = static_cast<std::uint16_t>(number());
        const std::string_view part = bytes_.substr(0, length);
        bytes_.remove_prefix(part.size());
        // A text that the file ends in the middle of lies beyond its end.
        return part.size() == length ? std::string(part) : std::string();
    }

  private:
    unsigned byte() {
        const auto value = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return value;
    }
    std::string_view bytes_;
};

} // namespace

Settings SetDefaultSettings(const std::string& AppDir) {
    Settings settings;
    settings.EmulatorArgs = "-diska %dsk -msx2";
    settings.DiskImageDir = AppDir + "dsk\\";
    settings.OpenNewProjectAtStart = storedTrue;
    settings.UseTooltips = storedTrue;
    settings.FontSize = 11;
    settings.FontName = "Terminal";
    return settings;
}

std::string encodeSettings(const Settings& settings) {
    RecordWriter writer;
    writer.text(settings.EmulatorPath);
    writer.text(settings.EmulatorArgs);
    for (const std::string& path : settings.Recent)
        writer.text(path);
    writer.text(settings.DiskImageDir);
    writer.number(settings.RegisterTpj);
    writer.number(settings.AutoSave);
    writer.number(settings.OpenNewProjectAtStart);
    writer.number(settings.UseTooltips);
    writer.number(settings.FontSize);
    writer.text(settings.FontName);
    return writer.take();
}

Settings decodeSettings(std::string_view bytes) {
    RecordReader reader(bytes);
    Settings settings;
    settings.EmulatorPath = reader.text();
    settings.EmulatorArgs = reader.text();
    for (std::string& path : settings.Recent)
        path = reader.text();
    settings.DiskImageDir = reader.text();
    settings.RegisterTpj = reader.number();
    settings.AutoSave = reader.number();
    settings.OpenNewProjectAtStart = reader.number();
    settings.UseTooltips = reader.number();
    settings.FontSize = reader.number();
    settings.FontName = reader.text();
    return settings;
}

std::string settingsPath(const std::string& AppDir) {
    return AppDir + "config.cfg";
}

Settings readSettings(const std::string& AppDir) {
    const std::string path = settingsPath(AppDir);
    return FileExists(path) ? decodeSettings(readWholeFile(path)) : SetDefaultSettings(AppDir);
}

std::optional<Settings> readStoredSettings(const std::string& AppDir) {
    const std::string path = settingsPath(AppDir);
    try {
        if (!FileExists(path))
            return std::nullopt;
        const std::string bytes = readWholeFile(path);
        Settings settings = decodeSettings(bytes);
        if (encodeSettings(settings).size() <= bytes.size())
            return settings;
    } catch (const RuntimeError&) {
        // Who writes it next hears of that.
    }
    return std::nullopt;
}

void writeSettings(const std::string& AppDir, const Settings& settings) {
    const std::string path = settingsPath(AppDir);
    std::string bytes = encodeSettings(settings);
    if (FileExists(path)) {
        const std::string old = readWholeFile(path);
        if (old.size() > bytes.size())
            bytes += old.substr(bytes.size());
    }
    writeWholeFile(path, bytes);
}

} // namespace tavrel
