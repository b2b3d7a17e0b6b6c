// Any bytes as a project: a main file and, each behind a NUL, the include files A.INC and B.INC. Each line is
// read as a directive and the whole is loaded.
#include "fuzzer.h"
#include "project/include_directive.h"
#include "project/project_loading.h"
#include "tests/support/fakes.h"
#include "util/runtime_error.h"
#include "util/text.h"

#include <fstream>

using tavrel::fuzzing::require;

namespace {

/// More text only costs time: the stand-in for the editor looks for each line from the start.
constexpr std::size_t longestProject = 4096;

std::string_view upTo(std::string_view& text, char end) {
    const std::string_view part = text.substr(0, text.find(end));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    return part;
}

void readDirectives(std::string_view text) {
    while (!text.empty()) {
        const auto name = tavrel::includeName(upTo(text, '\n'));
        if (!name)
            continue;
        // What stood around a "{$I" may make a new one when it is gone: "{${$II". It is part of the name.
        require(name->find('}') == std::string::npos && *name == tavrel::upperCase(*name));
        require(name->empty() || (name->front() != ' ' && name->back() != ' '));
    }
}

void load(tavrel::test::TestWorkspace& project) {
    tavrel::Workspace& workspace = project.workspace;
    try {
        tavrel::LoadProject(workspace, project.folder.path() + "M.PAS");
    } catch (const tavrel::RuntimeError&) {
        return;
    }
    const tavrel::ProjectTree& tree = workspace.tree;
    require(tree.count() >= 2 && tree.selected() == 2 && !project.editor.modified());
    require(workspace.CaretPositions.size() == tree.count() + 1);
    require(workspace.project.Files.size() <= tree.count());
    for (std::size_t node = 2; node <= tree.count(); ++node)
        require(tree.node(node).parent < node);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static tavrel::test::TestWorkspace project;
    std::string_view bytes(reinterpret_cast<const char*>(data), std::min(size, longestProject));
    readDirectives(bytes);
    for (const char* const name : {"M.PAS", "A.INC", "B.INC"})
        std::ofstream(project.folder.native() / name, std::ios::binary) << upTo(bytes, '\0');
    project.messages.shown.clear();
    load(project);
    return 0;
}
