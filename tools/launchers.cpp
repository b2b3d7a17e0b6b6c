#include "tools/launchers.h"

#include "util/paths.h"

namespace tavrel {

ShellRequest calculator() {
    return {"calc.exe"};
}

ShellRequest imageConverter(const std::string& AppDir) {
    return {AddBackslash(AppDir) + "msximg.exe"};
}

std::string pascalReference(const std::string& AppDir) {
    return AddBackslash(AppDir) + "tp3reference.chm";
}

} // namespace tavrel
