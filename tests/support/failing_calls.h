// Calls of the operating system that fail on demand. failing_calls.cpp takes their place in the whole
// program, for our sources and for the standard library, so a test that uses it is a program of its own.
#pragma once

namespace tavrel::test {

enum class CallFailure {
    before,  ///< nothing of the call happens
    after,   ///< renaming, writing, flushing do their work and then say that they failed
    partWise ///< writing takes half of its bytes
};

/// While it lives, calls that look for, open, read, write, flush, close, rename or delete files are counted
/// from 1; the call number `failAt` fails, and with `forEver` all after it too. There is one at a time.
class FailingCalls {
  public:
    FailingCalls(unsigned failAt, bool forEver, CallFailure failure);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
};

/// Whether the last FailingCalls, if need be one that lives no more, let a call fail.
bool callHasFailed();

/// Runs `attempt` with each call failing in turn, once and for ever, in each of the ways, until one comes
/// through without a failure. `attempt` is given what a FailingCalls takes, makes one around what it tests
/// and checks what is there afterwards; false ends it. Returns how many attempts there were.
template <typename Attempt> long withEveryFailingCall(const Attempt& attempt) {
    long attempts = 0;
    for (const CallFailure failure : {CallFailure::before, CallFailure::after, CallFailure::partWise}) {
        for (const bool forEver : {false, true}) {
            unsigned number = 1;
            bool goesOn = true;
            while (goesOn) {
                goesOn = attempt(number, forEver, failure) && callHasFailed();
                ++number;
                ++attempts;
            }
        }
    }
    return attempts;
}

} // namespace tavrel::test
