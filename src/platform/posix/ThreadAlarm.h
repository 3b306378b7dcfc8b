#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/Alarm.h"

namespace tessaloom {

/// An alarm on a thread of its own, which begins with the first `Set`.
///
/// Setting it again and again costs a lock, no switch of threads: the thread sleeps on until the moment that
/// it knows and looks then whether there is a later one.
class ThreadAlarm final : public Alarm {
public:
    ThreadAlarm() = default;
    ~ThreadAlarm() override;

    void Set(std::atomic<bool>& flag, double seconds) override;
    void Cancel() override;

private:
    using SteadyTime = std::chrono::steady_clock::time_point;

    void Watch();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::atomic<bool>* flag_ = nullptr;  ///< Null: nothing is set.
    SteadyTime moment_;
    SteadyTime wakes_ = SteadyTime::max();  ///< When the thread looks next.
    bool ended_ = false;
    std::thread thread_;
};

}  // namespace tessaloom
