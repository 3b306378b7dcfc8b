#pragma once

#include "platform/UrlTransfer.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Servers that answer when a test says so.
class FakeUrlTransfers : public UrlTransfers {
public:
    std::vector<std::string> requests;  ///< Addresses, in the order in which they were asked for.
    TransferLimits limits;
    int cancelled = 0;  ///< Transfers that were ended while under way.

    /// The next poll brings this response, or this failure, to every transfer that waits for `address`.
    void Answer(std::string_view address, std::string_view body) {
        answers_.push_back({std::string(address), std::string(body), ""});
    }
    void Fail(std::string_view address, std::string_view reason) {
        answers_.push_back({std::string(address), "", std::string(reason)});
    }

    void SetLimits(const TransferLimits& allowed) override { limits = allowed; }
    const TransferLimits& Limits() const override { return limits; }
    std::unique_ptr<UrlTransfer> MakeTransfer() override { return std::make_unique<Transfer>(*this); }
    void Wait(int) override {}
    void Poll() override {
        for (const Answered& response : std::exchange(answers_, {})) {
            const auto transfers = transfers_;
            for (Transfer* transfer : transfers)
                if (std::ranges::find(transfers_, transfer) != transfers_.end()) transfer->Take(response);
        }
    }

private:
    struct Answered {
        std::string address, body, failure;
    };

    class Transfer : public UrlTransfer {
    public:
        explicit Transfer(FakeUrlTransfers& owner) : owner_(owner) { owner_.transfers_.push_back(this); }
        ~Transfer() override {
            Cancel();
            std::erase(owner_.transfers_, this);
        }

        void OnStateChanged(StateChanged listener) override { listener_ = std::move(listener); }
        void Get(std::string_view address) override {
            Cancel();
            response_ = {std::string(address), "", ""};
            state_ = TransferState::Requesting;
            owner_.requests.emplace_back(address);
        }
        void Send(const UrlRequest& request) override { Get(request.address); }
        const UrlResponse& Response() const override { return head_; }
        void Cancel() override {
            if (StillExecuting()) ++owner_.cancelled;
            state_ = TransferState::Idle;
        }
        TransferState State() const override { return state_; }
        std::string GetChunk(std::size_t bytes) override {
            if (state_ != TransferState::ResponseCompleted) return {};
            const std::string chunk = response_.body.substr(0, bytes);
            response_.body.erase(0, chunk.size());
            return chunk;
        }
        const std::string& Failure() const override { return response_.failure; }

        void Take(const Answered& response) {
            if (!StillExecuting() || response.address != response_.address) return;
            response_ = response;
            for (const TransferState state :
                 {TransferState::Receiving,
                  response.failure.empty() ? TransferState::ResponseCompleted : TransferState::Failed}) {
                state_ = state;
                if (listener_) listener_(state);
            }
        }

    private:
        FakeUrlTransfers& owner_;
        StateChanged listener_;
        Answered response_;
        UrlResponse head_;
        TransferState state_ = TransferState::Idle;
    };

    std::vector<Transfer*> transfers_;
    std::vector<Answered> answers_;
};

}  // namespace tessaloom::testing
