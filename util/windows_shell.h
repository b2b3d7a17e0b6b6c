#pragma once

#include "util/shell.h"

namespace tavrel {

class WindowsShell : public Shell {
  public:
    void execute(void* owner, const ShellRequest& request) override;
    void showHelp(const std::string& path) override;
};

} // namespace tavrel
