// The one place where window messages are taken from the queue.
#pragma once

#include <windows.h>

namespace tavrel {

/// Thrown out of a wait when the program is told to end meanwhile; ends the running operation without a word.
struct ProgramEnds {};

/// A window that looks at each message first: shortcuts, dialog keys.
class MessageFilter {
  public:
    MessageFilter(const MessageFilter&) = delete;
    MessageFilter& operator=(const MessageFilter&) = delete;
    /// True when the message has been dealt with.
    virtual bool handleFirst(MSG& message) = 0;

  protected:
    MessageFilter();
    virtual ~MessageFilter();
};

/// Runs until WM_QUIT and gives back its exit code.
int runMessageLoop();

/// Handles what is in the queue now. On WM_QUIT puts it back for the main loop and throws ProgramEnds.
void pumpPendingMessages();

} // namespace tavrel
