#include "platform/capture/CaptureThreads.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <string>
#include <utility>

#include "platform/capture/FrameExchange.h"

namespace tessaloom {

namespace {

using namespace std::chrono_literals;

constexpr auto ShortestPause = 1s;
constexpr auto LongestPause = 30s;

/// How long the end of the program waits for threads that hang in a system call.
constexpr auto Farewell = 1s;

/// Nothing leaves the thread: the lack of memory for a frame, say, ends the connection alone.
std::string RunOnce(CaptureSource& source, FrameExchange& exchange) {
    try {
        return source.Run(exchange);
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

void KeepOpen(CaptureSource& source, FrameExchange& exchange) {
    std::chrono::milliseconds pause = ShortestPause;
    while (!exchange.Stopped()) {
        exchange.BeginConnection();
        const bool delivered = exchange.EndConnection(RunOnce(source, exchange));
        if (delivered) pause = ShortestPause;
        exchange.Pause(pause);
        pause = std::min<std::chrono::milliseconds>(2 * pause, LongestPause);
    }
}

}  // namespace

CaptureThreads::~CaptureThreads() {
    for (const Worker& worker : workers_) worker.exchange->Stop();
    const auto end = std::chrono::steady_clock::now() + Farewell;
    for (Worker& worker : workers_) {
        std::unique_lock lock(worker.shared->mutex);
        const bool ended = worker.shared->wake.wait_until(lock, end, [&] { return worker.shared->ended; });
        lock.unlock();
        if (ended) {
            worker.thread.join();
        } else {
            worker.thread.detach();
        }
    }
}

void CaptureThreads::Start(std::shared_ptr<FrameExchange> exchange, std::unique_ptr<CaptureSource> source) {
    CollectEnded();
    auto shared = std::make_shared<Shared>();
    std::thread thread([exchange, shared, source = std::move(source)]() mutable {
        KeepOpen(*source, *exchange);
        source.reset();
        const std::lock_guard lock(shared->mutex);
        shared->ended = true;
        shared->wake.notify_all();
    });
    workers_.push_back({std::move(exchange), std::move(shared), std::move(thread)});
}

void CaptureThreads::CollectEnded() {
    for (auto worker = workers_.begin(); worker != workers_.end();) {
        const bool ended = [&] {
            const std::lock_guard lock(worker->shared->mutex);
            return worker->shared->ended;
        }();
        if (ended) worker->thread.join();
        worker = ended ? workers_.erase(worker) : std::next(worker);
    }
}

}  // namespace tessaloom
