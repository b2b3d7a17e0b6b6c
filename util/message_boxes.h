// What the program asks and tells the user in modal boxes.
#pragma once

#include <string>

namespace tavrel {

enum class Icon { none, critical, question, information };
enum class Buttons { ok, yesNo, yesNoCancel };
enum class Answer { ok, yes, no, cancel };

/// The role of message boxes; a test answers in the user's place.
class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;
    /// Shows a modal box over the main window and gives back the button pressed (Esc is cancel).
    virtual Answer show(const std::string& text, const std::string& title, Icon icon, Buttons buttons) = 0;
};

} // namespace tavrel
