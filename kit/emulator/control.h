// openMSX's control connection: commands in XML to it, replies and log lines in XML from it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace emulator {

/// What is sent first.
constexpr std::string_view controlStart = "<openmsx-control>\n";

/// A command of openMSX's console (Tcl) as it is sent.
std::string controlCommand(std::string_view command);

/// One word of a Tcl command that stands for exactly this text, whatever it holds.
std::string tclWord(std::string_view text);

/// One thing that openMSX said.
struct Said {
    enum class Kind { reply, failure, log, update, plain };
    Kind kind =
        Kind::plain; ///< failure: the reply to a command that failed; plain: a line outside of the XML
    std::string text;

    bool operator==(const Said&) const = default;
};

/// Takes openMSX's output apart, which comes in pieces of any size.
class OutputReader {
  public:
    void add(std::string_view piece);
    /// The next whole thing, or nothing yet.
    std::optional<Said> next();

  private:
    std::string pending_;
};

} // namespace emulator
