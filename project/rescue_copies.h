// Copies of texts that would be lost otherwise: unsaved ones that are about to go, and versions of a file
// that a save is about to replace.
#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tavrel {

/// Local time, as the names of the copies have it.
struct RescueTime {
    int year = 0;
    int month = 1; ///< from 1
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    auto operator<=>(const RescueTime&) const = default;
};

RescueTime localTimeNow();

/// How many copies a folder keeps.
constexpr std::size_t keptRescueCopies = 20;

/// What the name of a copy says: "2026-11-22 071233 MAIN.PAS", a second one within the second
/// "2026-11-22 071233-2 MAIN.PAS". The file's own name comes last, so that its ending stays.
struct RescueName {
    RescueTime time;
    unsigned number = 1; ///< among the copies of one second
    std::string fileName;
    bool operator==(const RescueName&) const = default;
};

std::string rescueFileName(const RescueName& name);

/// Reads such a name; nothing for any other, whose file is none of ours.
std::optional<RescueName> readRescueFileName(std::string_view name);

/// Of the names in a folder those that have to go so that the newest `kept` copies stay. Other files never
/// do.
std::vector<std::string> rescueCopiesToDelete(const std::vector<std::string>& names, std::size_t kept);

class RescueCopies {
  public:
    /// Replaced by tests.
    std::function<RescueTime()> now = localTimeNow;

    /// The folders that are tried in order, each made with its parent when it is missing; they end in a
    /// backslash.
    void setFolders(std::vector<std::string> folders) { folders_ = std::move(folders); }
    bool hasFolders() const { return !folders_.empty(); }

    /// Writes a copy of a file's text and gives back its path, or "" when no folder takes it.
    std::string keep(const std::string& fileName, std::string_view text);

    /// The copy of the text that is being typed: it takes the place of the one before. False when no folder
    /// takes it.
    bool keepWhileTyping(const std::string& fileName, std::string_view text);
    /// The text has been saved or kept otherwise, so its copy goes.
    void dropTypingCopy();
    const std::string& typingCopy() const { return typingCopy_; }

  private:
    enum class Durability { onDisk, soon };
    std::string write(const std::string& fileName, std::string_view text, Durability durability);
    static std::string writeInto(const std::string& folder, RescueName name, std::string_view text,
                                 Durability durability);

    std::vector<std::string> folders_;
    std::string typingCopy_; ///< path, empty when there is none
};

/// Decides when the text that is being typed is copied: only when it has changed since the last copy, and at
/// most every ten seconds.
class TypingWatch {
  public:
    static constexpr unsigned long long interval = 10'000; // milliseconds

    /// `changes` counts the changes of the text, `time` milliseconds.
    bool isDue(unsigned long long changes, unsigned long long time) const {
        return changes != copiedChanges_ && (!copiedAt_ || time - *copiedAt_ >= interval);
    }
    void copied(unsigned long long changes, unsigned long long time) {
        copiedChanges_ = changes;
        copiedAt_ = time;
    }
    /// The text as it is now needs no copy: it has just been loaded or saved.
    void settled(unsigned long long changes) { copiedChanges_ = changes; }

  private:
    unsigned long long copiedChanges_ = 0;
    std::optional<unsigned long long> copiedAt_;
};

} // namespace tavrel
