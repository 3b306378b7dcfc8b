#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>

namespace tessaloom::vbscript {

class Host;

/// Ends a running script, past all its handlers: no RuntimeError, so nothing that catches those sees it.
struct TimeUp {
    int line = 0, column = 0;  ///< Where the script was, from 1; 0: not known yet.
};

/// How long a script may run.
///
/// An alarm of the host raises a flag when the time may be up; `Poll` asks the flag, which is one load.
/// Whoever does work that grows with what a script hands over polls at least once for every
/// `UnitsBetweenPolls` units of it. Once the time is up every poll throws, until the outermost run ends: a
/// part that catches the exception and goes on does not get far.
class TimeLimit {
public:
    static constexpr int IsUp = 18;  ///< The number of the error that a script ends with whose time is up.

    /// Some ten microseconds of simple work.
    static constexpr std::size_t UnitsBetweenPolls = std::size_t{1} << 14;

    explicit TimeLimit(Host& host) : host_(host) {}

    /// While it lives, a script runs that has `seconds` from now; 0 or less: without end.
    class Run {
    public:
        Run(TimeLimit& limit, double seconds);
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

    private:
        TimeLimit& limit_;
        TimeLimit* const outer_;
    };

    /// Throws TimeUp when the time of the script that runs on this thread is up.
    static void Poll() {
        if (MayBeOver()) [[unlikely]]
            Heed();
    }

    /// Whether a poll has anything to do.
    static bool MayBeOver() { return flag_.load(std::memory_order_relaxed); }

    /// Whether the next poll would throw.
    bool IsOver();

    /// Makes the time be up now.
    void Interrupt();

    /// The time during its life does not count when somebody may have been asked: no person answers within
    /// `ShortestAnswer`, so boxes that answer themselves at once give no script more time.
    class Pause {
    public:
        static constexpr double ShortestAnswer = 0.05;  ///< Seconds.

        explicit Pause(TimeLimit& limit);
        ~Pause();
        void Drop() { counts_ = true; }  ///< The time counts after all.
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        TimeLimit& limit_;
        double began_;
        bool counts_ = false;
    };

private:
    static void Heed();

    static inline thread_local constinit std::atomic<bool> flag_ = false;
    static inline thread_local constinit TimeLimit* running_ = nullptr;

    Host& host_;
    bool over_ = false;
    bool limited_ = false;
    double end_ = 0;  ///< By the host's steady clock.
};

/// Calls `work(begin, end)` for one stretch of `count` units after the other, and polls before each.
template <typename Work>
void InStretches(std::size_t count, Work&& work) {
    for (std::size_t begin = 0; begin < count; begin += TimeLimit::UnitsBetweenPolls) {
        TimeLimit::Poll();
        work(begin, std::min(count, begin + TimeLimit::UnitsBetweenPolls));
    }
}

}  // namespace tessaloom::vbscript
