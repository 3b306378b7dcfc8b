#pragma once

#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/CaptureSource.h"

namespace tessaloom {

class FrameExchange;

/// The threads of all sources that are open or about to end.
///
/// A source may take long to notice that it is to end (the look-up of a host's name cannot be broken off), so
/// nobody waits for it but this object's end, and that not for long.
class CaptureThreads {
public:
    CaptureThreads() = default;
    ~CaptureThreads();
    CaptureThreads(const CaptureThreads&) = delete;
    CaptureThreads& operator=(const CaptureThreads&) = delete;

    /// Keeps `source` open on a thread of its own, reopening it with growing pauses, until `exchange` is
    /// stopped.
    void Start(std::shared_ptr<FrameExchange> exchange, std::unique_ptr<CaptureSource> source);

private:
    /// What a thread that is left behind still finds alive.
    struct Shared {
        std::mutex mutex;
        std::condition_variable wake;
        bool ended = false;
    };
    struct Worker {
        std::shared_ptr<FrameExchange> exchange;
        std::shared_ptr<Shared> shared;
        std::thread thread;
    };

    void CollectEnded();

    std::list<Worker> workers_;
};

}  // namespace tessaloom
