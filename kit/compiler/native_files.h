#pragma once

#include "host.h"

#include <filesystem>
#include <string_view>

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

} // namespace tp3
