#include "project/project_file.h"

#include "util/files.h"
#include "util/text.h"
#include "util/text_input.h"

namespace tavrel {

std::string encodeProjectFile(const ProjectFileContent& content) {
    return content.name + "\r\n" + hexOf16(content.startAddress) + "\r\n" + hexOf16(content.endAddress) +
           "\r\n" + content.mainFile + "\r\n";
}

ProjectFileContent readProjectFile(const std::string& path) {
    TextInput file = TextInput::open(path);
    ProjectFileContent content;
    content.name = file.line();
    content.startAddress = evaluateHex(file.line());
    content.endAddress = evaluateHex(file.line());
    content.mainFile = file.line();
    return content;
}

void writeProjectFile(const std::string& path, const ProjectFileContent& content) {
    writeWholeFile(path, encodeProjectFile(content));
}

} // namespace tavrel
