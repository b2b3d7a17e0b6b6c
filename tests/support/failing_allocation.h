// Memory that runs out on demand. failing_allocation.cpp replaces operator new of the whole program, so a
// test that uses it is a program of its own.
#pragma once

namespace tavrel::test {

/// While it lives, the request for memory number `failAt` (counted from 1) fails, and with `forEver` all
/// after it too. There is one at a time.
class FailingAllocation {
  public:
    FailingAllocation(long failAt, bool forEver);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};

/// Whether the last FailingAllocation, if need be one that lives no more, let a request fail.
bool allocationHasFailed();

/// Runs `attempt` with each request for memory failing in turn, once and then for ever, until one comes
/// through without a failure. `attempt` is given the number of the request and `forEver`, makes a
/// FailingAllocation of them around what it tests and checks what is there afterwards. Returns how many
/// attempts there were.
template <typename Attempt> long withEveryFailingAllocation(const Attempt& attempt) {
    long attempts = 0;
    for (const bool forEver : {false, true}) {
        long number = 1;
        bool goesOn = true;
        while (goesOn) {
            goesOn = attempt(number, forEver) && allocationHasFailed();
            ++number;
            ++attempts;
        }
    }
    return attempts;
}

} // namespace tavrel::test
