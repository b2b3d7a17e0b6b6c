// Handing work to other programs through the Windows shell.
#pragma once

#include <string>

namespace tavrel {

/// What the shell is asked to open.
struct ShellRequest {
    std::string file;
    std::string operation = "Open";
    // Programs and pages have always been started with this parameter and folder; converters rely on the
    // parameter.
    std::string parameters = "1";
    std::string workingFolder = "1";
    int showState = 1; ///< SW_SHOWNORMAL

    bool operator==(const ShellRequest&) const = default;
};

/// The role of the shell; a test counts launches in its place. Failures are not reported.
class Shell {
  public:
    virtual ~Shell() = default;
    /// `owner` is the window handle that the shell's own messages belong to.
    virtual void execute(void* owner, const ShellRequest& request) = 0;
    /// Opens a compiled HTML help file at its default topic in a window without an owner.
    virtual void showHelp(const std::string& path) = 0;
};

} // namespace tavrel
