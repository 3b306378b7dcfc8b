#include "platform/posix/ThreadAlarm.h"

#include <algorithm>

namespace tessaloom {

ThreadAlarm::~ThreadAlarm() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void ThreadAlarm::Set(std::atomic<bool>& flag, double seconds) {
    constexpr double Longest = 1e8;  // three years; more may not fit the clock
    const auto wait = std::chrono::duration<double>(std::clamp(seconds, 0.0, Longest));
    const SteadyTime moment = std::chrono::steady_clock::now() +
                              std::chrono::duration_cast<std::chrono::steady_clock::duration>(wait);
    bool mustWake = false;
    {
        const std::lock_guard lock(mutex_);
        flag_ = &flag;
        moment_ = moment;
        mustWake = moment < wakes_;
    }
    if (!thread_.joinable())
        thread_ = std::thread([this] { Watch(); });
    else if (mustWake)
        changed_.notify_one();
}

void ThreadAlarm::Cancel() {
    const std::lock_guard lock(mutex_);
    flag_ = nullptr;
}

void ThreadAlarm::Watch() {
    std::unique_lock lock(mutex_);
    while (!ended_) {
        if (flag_ && std::chrono::steady_clock::now() >= moment_) {
            flag_->store(true, std::memory_order_relaxed);
            flag_ = nullptr;
        }
        wakes_ = flag_ ? moment_ : SteadyTime::max();
        if (flag_)
            changed_.wait_until(lock, wakes_);
        else
            changed_.wait(lock);
    }
}

}  // namespace tessaloom
