// Project files and sources that nobody would write: whatever they hold, the program answers and goes on.
#include "project/file_switching.h"
#include "project/project_commands.h"
#include "project/project_loading.h"
#include "tests/support/fakes.h"
#include "util/runtime_error.h"
#include "util/text.h"

#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace tavrel {
namespace {

#ifdef _WIN32
constexpr int rounds = 1000; // the rules are the same ones; what differs is the system's answer to odd names
#else
constexpr int rounds = 10'000;
#endif

const std::vector<std::string>& hostileNames() {
    static const std::vector<std::string> names = {"..",
                                                   ".",
                                                   "..\\M.PAS",
                                                   "..\\..\\..\\..\\..\\etc\\passwd",
                                                   "\\",
                                                   "\\\\server\\share\\x.inc",
                                                   "C:\\",
                                                   "C:x.inc",
                                                   "CON",
                                                   "NUL",
                                                   "AUX.INC",
                                                   "PRN",
                                                   "COM1",
                                                   "LPT1:",
                                                   "CLOCK$",
                                                   "CON.INC",
                                                   "\\\\.\\C:",
                                                   "*.INC",
                                                   "?.INC",
                                                   "<A>.INC",
                                                   "|",
                                                   "\"A.INC\"",
                                                   "A.INC:stream",
                                                   "A.INC::$DATA",
                                                   "SUB\\X.INC",
                                                   "SUB",
                                                   "SUB\\",
                                                   "SUB\\..\\A.INC",
                                                   "A.INC.",
                                                   "A.INC   ",
                                                   "M.PAS",
                                                   "M.TPJ",
                                                   "a.inc",
                                                   "/dev/zero",
                                                   "..\\..\\..\\..\\..\\dev\\zero",
                                                   "%TEMP%",
                                                   "\xFF\x80\xE9.INC",
                                                   "\x81\x40.INC",
                                                   "\x1A",
                                                   "A.INC\x07",
                                                   "{$I A.INC",
                                                   "}}}}",
                                                   std::string("A.INC\0.TXT", 10),
                                                   std::string(300, 'A'),
                                                   std::string(300, 'A') + "\\A.INC",
                                                   std::string(40'000, '.'),
                                                   std::string(255, '\\'),
                                                   "~tav",
                                                   "\t",
                                                   "B.INC"};
    return names;
}

class HostileProject {
  public:
    explicit HostileProject(unsigned seed) : random_(seed) {
        test.folder.makeFolder("SUB");
        put("SUB\\X.INC", "procedure X;\r\n{$I A.INC}\r\n");
        put("B.INC", "function B: byte;\r\n{$I C.INC}\r\n");
        put("C.INC", "{$I M.PAS}\r\n");
    }

    test::TestWorkspace test;

    void makeFiles() {
        mainFile_ = mutated("program M;\r\n" + directives() + "begin\r\nend.\r\n");
        put("M.PAS", mainFile_);
        put("A.INC", mutated("procedure A;\r\n" + directives()));
        put("M.TPJ", mutated("Demo\r\n2E9B\r\nD200\r\n" + mainName() + "\r\n"));
    }

    /// Everything that hangs on a load, as it has to be whatever was loaded.
    void expectWhole() {
        const ProjectTree& tree = test.workspace.tree;
        ASSERT_GE(tree.count(), 2U);
        EXPECT_EQ(tree.node(1).key, "r");
        EXPECT_EQ(tree.node(2).text, upperCase(tree.node(2).text));
        std::set<std::string> keys;
        for (std::size_t node = 1; node <= tree.count(); ++node) {
            EXPECT_TRUE(keys.insert(tree.node(node).key).second) << tree.node(node).key;
            EXPECT_LT(tree.node(node).parent, node);
            if (node > 1) {
                EXPECT_EQ(tree.node(node).text.find('\\'), std::string::npos);
            }
        }
        const auto& files = test.workspace.project.Files;
        for (std::size_t i = 1; i < files.size(); ++i)
            EXPECT_EQ(tree.node(static_cast<std::size_t>(files[i].Index)).key, files[i].Key);
    }

    /// Clicks every node and reloads; only the runtime's own errors may come.
    void use() {
        for (std::size_t node = test.workspace.tree.count(); node > 0; --node)
            tolerant([&] {
                test.workspace.tree.selectedByUser(node);
                switchToNode(test.workspace, node);
            });
        tolerant([&] { RefreshProject(test.workspace); });
    }

    template <typename Operation> bool tolerant(const Operation& operation) {
        try {
            operation();
            return true;
        } catch (const RuntimeError&) {
            return false;
        }
    }

    const std::string& mainFile() const { return mainFile_; }

  private:
    unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
    std::string anyName() { return hostileNames()[below(hostileNames().size())]; }
    std::string mainName() { return below(3) == 0 ? anyName() : "M.PAS"; }
    std::string directives() {
        std::string lines;
        for (unsigned count = below(5); count > 0; --count)
            lines += (below(2) == 0 ? "{$I " : "{$i") + anyName() + "}" + (below(8) == 0 ? "\n" : "\r\n");
        return lines;
    }
    std::string mutated(std::string bytes) {
        for (unsigned count = below(4); count > 0 && !bytes.empty(); --count) {
            const unsigned place = below(bytes.size());
            switch (below(5)) {
            case 0:
                bytes[place] = static_cast<char>(below(256));
                break;
            case 1:
                bytes.erase(place, 1 + below(8));
                break;
            case 2:
                bytes.insert(place, 1 + below(8), static_cast<char>(below(256)));
                break;
            case 3:
                bytes.insert(place, "{$I ");
                break;
            default:
                bytes.resize(place);
            }
        }
        return bytes;
    }
    /// Without the care of a real save, which would take most of the time.
    void put(std::string name, const std::string& bytes) const {
        for (char& c : name) {
            if (c == '\\')
                c = '/';
        }
        std::ofstream(test.folder.native() / name, std::ios::binary) << bytes;
    }

    std::mt19937 random_;
    std::string mainFile_;
};

TEST(HostileProject, MutatedFilesAreLoadedOrRefused) {
    HostileProject hostile(11);
    Workspace& workspace = hostile.test.workspace;
    int loaded = 0;
    for (int round = 0; round < rounds; ++round) {
        hostile.makeFiles();
        hostile.test.messages.shown.clear();
        workspace.tree.clear();
        workspace.project = Project();
        hostile.test.editor.setText("former");
        const bool whole = hostile.tolerant([&] {
            if (openProjectFile(workspace, hostile.test.folder.path() + "M.TPJ") &&
                workspace.tree.count() > 0)
                ++loaded;
        });
        if (workspace.tree.count() == 0) {
            EXPECT_TRUE(hostile.test.editor.content == "former" || hostile.test.editor.content.empty());
            EXPECT_TRUE(!whole || !hostile.test.messages.shown.empty())
                << "nothing was loaded and nothing told";
        } else {
            hostile.expectWhole();
            hostile.use();
        }
        ASSERT_EQ(hostile.test.folder.read("M.PAS"), hostile.mainFile()) << "loading writes nothing";
        if (testing::Test::HasFailure())
            FAIL() << "in round " << round;
    }
    EXPECT_GT(loaded, rounds / 4) << "most of them must come as far as the tree";
}

TEST(HostileProject, EveryHostileDirectiveAlone) {
    HostileProject hostile(12);
    Workspace& workspace = hostile.test.workspace;
    workspace.settings.UseTooltips = storedFalse; // the index asks for files that lie in the folder itself
    for (const std::string& name : hostileNames()) {
        hostile.test.folder.write("A.INC", "a\r\n");
        hostile.test.folder.write("M.PAS", "{$I " + name + "}\r\n");
        LoadProject(workspace, hostile.test.folder.path() + "M.PAS");
        hostile.expectWhole();
        EXPECT_LE(workspace.tree.count(), 9U) << name;
    }
    for (const char* const device : {"CON", "NUL", "AUX", "COM1", "PRN", "LPT1", "CON.INC"}) {
        hostile.test.folder.write("M.PAS", "{$I " + std::string(device) + "}\r\n");
        LoadProject(workspace, hostile.test.folder.path() + "M.PAS");
        EXPECT_EQ(workspace.tree.count(), 2U) << device << " is no file of the project";
    }
}

} // namespace
} // namespace tavrel
