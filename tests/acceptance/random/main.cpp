// random_actions.exe: starts Tavrel and does with it, at random, what a user can do; counts before and after
// what the program holds of the system's resources. Exit codes: 0 all well, 1 a defect, 3 wrong use.
#include "tests/acceptance/random/counts.h"
#include "tests/acceptance/random/player.h"
#include "tests/acceptance/random/system_loss.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

namespace tavrel::random {
namespace {

struct Options {
    int actions = 0;
    std::uint32_t seed = 0; ///< 0: no play, but each command that often
    World world;
    std::string helpFile;
};

std::vector<std::string> linesOf(const std::string& path) {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    if (lines.empty())
        throw std::invalid_argument("no paths in " + path);
    return lines;
}

Options readOptions(int count, char** arguments) {
    if (count != 7)
        throw std::invalid_argument("six arguments are wanted");
    Options options;
    options.actions = std::stoi(arguments[1]);
    options.seed = static_cast<std::uint32_t>(std::stoul(arguments[2]));
    options.world = {arguments[3], arguments[4], linesOf(arguments[6])};
    options.helpFile = arguments[5];
    return options;
}

/// What a program may hold more after all that it did than before. Under Wine the GDI objects go up and down
/// by some thirty from one look to the next as windows come and go. What is lost with each use of a command
/// shows in a count of that command alone.
struct Slack {
    static constexpr int windows = 0;
    static constexpr int gdi = 64;
    static constexpr int user = 8;
    static constexpr int handles = 8;
};

/// One life of the program, from its start to its end.
class Life {
  public:
    Life(Player& player, const Options& options, const SystemLoss& loss) : player_(player), loss_(loss) {
        program_ = std::make_unique<Program>(options.world.executable, options.world.project);
        player_.rest(*program_);
        player_.tour(*program_);
        player_.warmUp(*program_, std::max(leastWarmUp, options.actions / 4));
        player_.rest(*program_);
        usesBefore_ = player_.uses();
        before_ = countResources(program_->process());
        std::printf("before: %s\n", describe(before_).c_str());
    }
    Program& program() { return *program_; }

    /// The same rest, the same count; then the end.
    void finish(int actions) {
        player_.rest(*program_);
        const Counts after = countResources(program_->process());
        const Uses uses = player_.uses() - usesBefore_;
        std::printf(
            "after %d actions: %s; meanwhile at most %d processes, %d file dialogs and %d help windows\n",
            actions, describe(after).c_str(), uses.processes, uses.fileDialogs, uses.helps);
        PostMessageA(program_->form(), WM_CLOSE, 0, 0);
        program_->requireGoodEnd();
        const auto allowed = [&](int Counts::*kind) {
            return before_.*kind + loss_.fileDialog.*kind * uses.fileDialogs + loss_.help.*kind * uses.helps;
        };
        require(after.windows <= before_.windows + Slack::windows, "windows");
        require(after.gdi <= allowed(&Counts::gdi) + Slack::gdi, "GDI objects");
        require(after.user <= allowed(&Counts::user) + Slack::user, "USER objects");
        // The handle of each started process's first thread stays open until the program ends.
        require(after.handles <= allowed(&Counts::handles) + uses.processes + Slack::handles, "handles");
    }

  private:
    static constexpr int leastWarmUp = 60; // actions

    static void require(bool condition, const char* what) {
        if (!condition)
            throw Defect(std::string("the program has lost ") + what);
    }

    Player& player_;
    SystemLoss loss_;
    std::unique_ptr<Program> program_;
    Counts before_;
    Uses usesBefore_;
};

void useEach(const Options& options) {
    Player player(options.world, Choices(options.seed));
    Program program(options.world.executable, options.world.project);
    player.rest(program);
    for (int i = 0; i < 2; ++i)
        player.tour(program);
    player.useEach(program, options.actions);
    PostMessageA(program.form(), WM_CLOSE, 0, 0);
    program.requireGoodEnd();
}

void play(const Options& options) {
    constexpr int actionsBetweenCounts = 10; // shows in the record from where on something is lost
    if (options.seed == 0)
        return useEach(options);
    const SystemLoss loss = measureSystemLoss(options.world.project, options.helpFile);
    std::printf("%s\n", describe(loss).c_str());
    Player player(options.world, Choices(options.seed));
    auto life = std::make_unique<Life>(player, options, loss);
    int lives = 1;
    int lived = 0;
    for (int action = 0; action < options.actions; ++action) {
        player.act(life->program());
        ++lived;
        if (lived % actionsBetweenCounts == 0 && life->program().alive())
            std::printf("     %s\n", describe(countResources(life->program().process())).c_str());
        if (life->program().alive() && IsWindow(life->program().form()) != FALSE)
            continue;
        life->program().requireGoodEnd();
        std::printf("the program has ended as it was told to, after %d actions\n", lived);
        life = std::make_unique<Life>(player, options, loss);
        ++lives;
        lived = 0;
    }
    life->finish(lived);
    for (const auto& [text, times] : player.boxes())
        std::printf("box, %d times: %s\n", times, text.c_str());
    std::printf("seed %u: %d actions, %d builds, %d starts of the program: no defect\n", options.seed,
                options.actions, player.uses().builds, lives);
}

} // namespace
} // namespace tavrel::random

int main(int count, char** arguments) {
    std::setvbuf(stdout, nullptr, _IONBF, 0); // what was done last is what matters after a crash
    try {
        tavrel::random::play(tavrel::random::readOptions(count, arguments));
        return 0;
    } catch (const tavrel::random::Defect& defect) {
        std::printf("DEFECT: %s\n", defect.what());
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(
            stderr,
            "random_actions: %s\nusage: random_actions ACTIONS SEED TAVREL PROJECT HELP-FILE LIST-OF-PATHS\n",
            error.what());
        return 3;
    }
}
