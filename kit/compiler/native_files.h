#pragma once

#include "host.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tp3 {

/// Sources as files of a folder, found whatever the case of their names, as DOS finds them.
class FolderHost : public Host {
  public:
    /// @param folder where the main file lies; all other names are relative to it
    explicit FolderHost(std::filesystem::path folder) : folder_(std::move(folder)) {}

    std::unique_ptr<SourceReader> openSource(std::string_view name) override;
    void progress(int, std::uint32_t) override {}
    std::size_t stackLeft() override;

  private:
    std::filesystem::path folder_;
    const char* stackBase_ = reinterpret_cast<const char*>(__builtin_frame_address(0));
};

/// The file in `folder` whose name equals `name` but for case; empty when there is none.
std::filesystem::path findIgnoringCase(const std::filesystem::path& folder, std::string_view name);

/// Reads a whole file. @throws std::system_error when it cannot be read
std::vector<std::uint8_t> readFile(const std::filesystem::path& path);

/// Writes a file so that at every moment either the old or the new content is there: beside it, flushed, then
/// renamed.
/// @throws std::system_error with the reason; nothing is left behind then
void writeFileSafely(const std::filesystem::path& path, const std::vector<std::uint8_t>& content);

} // namespace tp3
