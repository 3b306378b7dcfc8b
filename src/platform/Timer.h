#pragma once

#include <functional>

namespace tessaloom {

/// A repeating timer of the program's one thread. A tick is never re-entered, and missed ticks are not made
/// up.
class Timer {
public:
    virtual ~Timer() = default;

    virtual void Start(int milliseconds, std::function<void()> tick) = 0;
    virtual void Stop() = 0;

    /// Runs `work` once, soon, between two ticks.
    virtual void Post(std::function<void()> work) = 0;
};

}  // namespace tessaloom
