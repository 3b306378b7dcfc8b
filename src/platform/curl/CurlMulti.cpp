#include "platform/curl/CurlMulti.h"

#include <algorithm>
#include <utility>

#include "platform/curl/BrokenPipeGuard.h"
#include "platform/curl/CurlTransfer.h"

namespace tessaloom {

namespace {

/// Kept open for the next request, over all servers.
constexpr long MostConnections = 16;

/// What one poll takes in, so that it is over within a millisecond or two: 100 MB a second at the program's
/// rate.
constexpr std::size_t BytesPerPoll = 1 << 20;

CURLM* MakeMulti() {
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    return ready == CURLE_OK ? curl_multi_init() : nullptr;
}

}  // namespace

CurlMulti::CurlMulti(std::string certificateFile)
    : multi_(MakeMulti()), certificateFile_(std::move(certificateFile)) {
    if (multi_) curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, MostConnections);
}

CurlMulti::~CurlMulti() {
    const BrokenPipeGuard guard;
    if (multi_) curl_multi_cleanup(multi_);
}

bool CurlMulti::Start(CurlTransfer& transfer, CURL* handle) {
    if (!multi_ || !handle || curl_easy_setopt(handle, CURLOPT_PRIVATE, &transfer) != CURLE_OK ||
        curl_multi_add_handle(multi_, handle) != CURLM_OK)
        return false;
    ++running_;
    return true;
}

void CurlMulti::Remove(CurlTransfer& transfer, CURL* handle) {
    std::erase(heldUp_, &transfer);
    std::erase(untold_, &transfer);
    std::ranges::replace(telling_, &transfer, nullptr);
    if (!handle) return;
    const BrokenPipeGuard guard;
    curl_multi_remove_handle(multi_, handle);
    --running_;
}

void CurlMulti::TellLater(CurlTransfer& transfer) {
    if (std::ranges::find(untold_, &transfer) == untold_.end()) untold_.push_back(&transfer);
}

bool CurlMulti::MayTake(CurlTransfer& transfer, std::size_t bytes) {
    if (pollBytes_ < BytesPerPoll) {
        pollBytes_ += bytes;
        return true;
    }
    heldUp_.push_back(&transfer);
    return false;
}

void CurlMulti::Poll() {
    if (running_ > 0) {
        const BrokenPipeGuard guard;
        pollBytes_ = 0;
        for (CurlTransfer* transfer : std::exchange(heldUp_, {})) transfer->Resume();
        int running = 0;
        curl_multi_perform(multi_, &running);
        TakeCompletions();
    }
    if (!untold_.empty()) TellListeners();
}

void CurlMulti::Wait(int milliseconds) {
    if (running_ > 0 && heldUp_.empty() && untold_.empty())
        curl_multi_poll(multi_, nullptr, 0, milliseconds, nullptr);
}

void CurlMulti::TakeCompletions() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        const CURLcode result = message->data.result;
        char* transfer = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
        reinterpret_cast<CurlTransfer*>(transfer)->Ended(result);
    }
}

/// Listeners may start, cancel and destroy any transfer meanwhile.
void CurlMulti::TellListeners() {
    telling_ = std::exchange(untold_, {});
    for (std::size_t i = 0; i < telling_.size(); ++i)
        if (CurlTransfer* transfer = telling_[i]) transfer->TellState();
    telling_.clear();
}

}  // namespace tessaloom
