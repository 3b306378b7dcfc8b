#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// Where a transfer stands. The number of the last one is fixed: those who listen act on it alone.
enum class TransferState {
    Idle = 0,        ///< Nothing was asked for, or it was cancelled.
    Requesting = 1,  ///< On the way to the server, or waiting for its answer.
    Receiving = 2,   ///< The response has begun to arrive.
    Failed = 3,      ///< `Failure` tells why.
    ResponseCompleted = 12,
};

/// What a transfer may take. Whatever goes beyond fails.
struct TransferLimits {
    std::size_t bytes = std::size_t{64} << 20;           ///< Of one response.
    std::size_t bytesTogether = std::size_t{256} << 20;  ///< Of all responses held at a time.
    int connectMilliseconds = 10'000;                    ///< Until the server is reached.
    int totalMilliseconds = 60'000;                      ///< From the request to the response's last byte.
    int stalledSeconds = 15;                             ///< With fewer than `stalledBytesPerSecond`.
    int stalledBytesPerSecond = 100;
    int redirects = 5;
};

/// A request in full.
struct UrlRequest {
    std::string method = "GET";        ///< Letters, as the protocol has them.
    std::string address;               ///< It may hold a user name and password.
    std::string user, password;        ///< In place of those in the address; both empty: of the address.
    std::vector<std::string> headers;  ///< "Name: value", without line breaks.
    std::string body;                  ///< Sent with any method but GET and HEAD.

    int connectMilliseconds = 0;  ///< 0: as the limits say; so below.
    int totalMilliseconds = 0;
    bool trustAnyServer = false;  ///< Certificates are not looked at.
};

/// What a server answered, whatever the status.
struct UrlResponse {
    int status = 0;     ///< 0: nothing came.
    bool late = false;  ///< It failed because it took too long.
    std::string statusText;
    std::string headers;  ///< Lines that end in CR LF; of the last of several answers (redirects).
};

/// One GET, or another request, at a time, over http or https, that goes on while the program does. Made by a
/// `UrlTransfers`, which outlives it. Destroying it ends a transfer under way.
class UrlTransfer {
public:
    using StateChanged = std::function<void(TransferState)>;

    virtual ~UrlTransfer() = default;

    /// Who is told of each new state, always from within `UrlTransfers::Poll`. The listener may start, cancel
    /// and destroy transfers, this one included.
    virtual void OnStateChanged(StateChanged listener) = 0;

    /// Asks for `address`, which may hold a user name and password; a transfer under way is cancelled first.
    /// An address that cannot be used fails as an unreachable one does.
    virtual void Get(std::string_view address) = 0;

    /// The same for any request. Here every answer completes, also one with the status of an error. A request
    /// that no line of its head may carry fails like an address that cannot be used.
    virtual void Send(const UrlRequest& request) = 0;

    /// Of the last transfer, as far as it has come.
    virtual const UrlResponse& Response() const = 0;

    /// Ends the transfer, if any, and drops what has arrived. Nobody is told.
    virtual void Cancel() = 0;

    virtual TransferState State() const = 0;
    bool StillExecuting() const {
        return State() == TransferState::Requesting || State() == TransferState::Receiving;
    }

    /// The next part of a completed response, `bytes` long at most; empty behind its end, and in every other
    /// state.
    virtual std::string GetChunk(std::size_t bytes) = 0;

    /// Why the last transfer failed, in words that hold no part of the address; "" when it did not.
    virtual const std::string& Failure() const = 0;
};

/// Makes transfers and moves them along.
class UrlTransfers {
public:
    virtual ~UrlTransfers() = default;

    /// For transfers that begin from now on.
    virtual void SetLimits(const TransferLimits& limits) = 0;
    virtual const TransferLimits& Limits() const = 0;

    virtual std::unique_ptr<UrlTransfer> MakeTransfer() = 0;

    /// Takes in what has arrived, sends what can be sent and tells the listeners. Never waits; costs nothing
    /// while no transfer is under way.
    virtual void Poll() = 0;

    /// Sleeps until there is something for `Poll` to do, so long at most.
    virtual void Wait(int milliseconds) = 0;
};

}  // namespace tessaloom
