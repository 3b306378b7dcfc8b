#pragma once

#include <curl/curl.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/UrlTransfer.h"
#include "platform/curl/ResponseBody.h"

namespace tessaloom {

class CurlMulti;

/// One request and its response.
class CurlTransfer final : public UrlTransfer {
public:
    explicit CurlTransfer(CurlMulti& multi) : multi_(multi) {}
    ~CurlTransfer() override;
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    void OnStateChanged(StateChanged listener) override { listener_ = std::move(listener); }
    void Get(std::string_view address) override;
    void Send(const UrlRequest& request) override;
    const UrlResponse& Response() const override { return response_; }
    void Cancel() override;
    TransferState State() const override { return state_; }
    std::string GetChunk(std::size_t bytes) override;
    const std::string& Failure() const override { return failure_; }

    // For `CurlMulti`

    /// The request is over, one way or the other.
    void Ended(CURLcode result);

    /// Lets a response go on that was held up for the sake of the poll's length.
    void Resume() { curl_easy_pause(handle_, CURLPAUSE_CONT); }

    /// Tells the listener of the present state; it may destroy this object.
    void TellState();

private:
    static std::size_t TakeHeader(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t TakeBody(char* data, std::size_t size, std::size_t count, void* self);

    struct FreeList {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    void Begin(const UrlRequest& request, bool failOnErrorStatus);
    bool Prepare(const UrlRequest& request, const std::string& address, bool failOnErrorStatus);
    bool TakeHeaderLine(std::string_view line);
    void Enter(TransferState state);
    void Fail(std::string reason);
    void Release();
    void DropBody();
    std::string ReasonOf(CURLcode result) const;

    CurlMulti& multi_;
    CURL* handle_ = nullptr;  ///< While the request is under way.
    StateChanged listener_;
    TransferState state_ = TransferState::Idle;
    std::string failure_;
    std::string excess_;  ///< Why this side broke the transfer off.
    ResponseBody body_;
    UrlResponse response_;
    std::string sentBody_;  ///< While it is on the way.
    std::unique_ptr<curl_slist, FreeList> sentHeaders_;
    std::size_t headerBytes_ = 0;  ///< Over all redirects.
    TransferLimits limits_;
};

}  // namespace tessaloom
