// A user who does anything that the program lets him do.
#pragma once

#include "app/command_table.h"
#include "tests/acceptance/random/program.h"

#include <map>
#include <string>
#include <vector>

namespace tavrel::random {

/// What the player's hands may reach: no other path is ever given to the program.
struct World {
    std::string executable;         ///< Tavrel.exe
    std::string project;            ///< the project that is open while things are counted
    std::vector<std::string> paths; ///< of files, there or missing, and folders, for any field
};

/// How often the player did what has a price.
struct Uses {
    int builds = 0;
    int processes = 0;   ///< that the program has started
    int fileDialogs = 0; ///< at most
    int helps = 0;

    Uses operator-(const Uses& other) const {
        return {builds - other.builds, processes - other.processes, fileDialogs - other.fileDialogs,
                helps - other.helps};
    }
};

class Player {
  public:
    Player(World world, Choices choices) : world_(std::move(world)), choices_(choices) {}

    /// One action; prints what it is. May end the program.
    void act(Program& program);

    /// Uses every command once, but Exit, and builds in each way.
    void tour(const Program& program);

    /// Some actions, Exit not among them, which bring what is made only once.
    void warmUp(Program& program, int actions);

    /// Uses each command that often, and prints what the program holds more afterwards.
    void useEach(Program& program, int times);

    /// Ends all that is under way: no dialog, no build, one pane, the tree shown, the world's project open.
    void rest(Program& program);

    /// Texts of the message boxes that were up, and how often.
    const std::map<std::string, int>& boxes() const { return boxes_; }
    const Uses& uses() const { return uses_; }

  private:
    void useOnce(const Program& program, const CommandRow& row);
    void command(Program& program);
    void build(Program& program);
    void awaitBuild(const Program& program);
    void typeSomething(const Program& program);
    void pressSomething(const Program& program);
    void clickNode(const Program& program);
    void clickEditor(const Program& program);
    void clickRight(const Program& program);
    void resize(const Program& program);
    void openMenu(const Program& program);
    void useDialog(const Program& program, HWND dialog);
    void useFileDialog(HWND dialog, HWND nameField);
    void fillSomething(HWND dialog);
    void pressButton(HWND dialog);
    void refuse(HWND dialog);
    void noteBox(HWND dialog);
    void choose(const Program& program, unsigned identifier, bool byKey);
    void note(const std::string& what);

    World world_;
    Choices choices_;
    std::map<std::string, int> boxes_;
    int actions_ = 0;
    bool mayExit_ = true;
    Uses uses_;
    HWND lastBox_ = nullptr;
};

} // namespace tavrel::random
