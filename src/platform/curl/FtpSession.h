#pragma once

#include <curl/curl.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/FtpClient.h"
#include "platform/curl/CurlFtpClients.h"
#include "platform/curl/FtpAddress.h"
#include "platform/curl/FtpStep.h"

namespace tessaloom {

/// One connection from its log-in to its end, with a thread of its own.
///
/// The functions that are not private are called by the engine's thread; none of them waits, but for the
/// destructor, which waits for the thread.
class FtpSession {
public:
    /// Throws when the system has no thread or no memory to give.
    FtpSession(const FtpTrust& trust, FtpAddress address, const FtpAccount& account);
    ~FtpSession();
    FtpSession(const FtpSession&) = delete;
    FtpSession& operator=(const FtpSession&) = delete;

    /// To be called again only when the outcome of the step before was taken.
    void Begin(FtpStep step);

    /// How the step under way ended; nothing while it goes on.
    std::optional<FtpOutcome> TakeOutcome();

    /// The server ended the connection between two steps, or spoke without being asked.
    bool Lost() const { return lost_; }

    /// Logs out when no step is under way, else breaks off; then the thread ends.
    void Leave();

    /// Cuts the connection, and with it the step under way; the thread ends within a moment.
    void Break();

    /// The thread is at its end: the destructor does not wait.
    bool Ended() const { return ended_; }

private:
    void Run();
    void Release();
    std::optional<FtpStep> NextStep();
    bool ServerStirs(int control) const;
    FtpOutcome Perform(const FtpStep& step);
    void Prepare(const FtpStep& step);
    void PrepareTrust();
    void PrepareCommands(const FtpStep& step);
    CURLcode Transfer();
    FtpOutcome OutcomeOf(const FtpStep& step, CURLcode result);
    std::string FailureOf(CURLcode result) const;
    void Set(CURLoption option, auto value) {
        const CURLcode result = curl_easy_setopt(easy_, option, value);
        if (result != CURLE_OK) refused_ = result;
    }

    static std::size_t TakeReply(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t GiveBytes(char* buffer, std::size_t size, std::size_t count, void* self);
    static std::size_t DropBytes(char*, std::size_t size, std::size_t count, void*) { return size * count; }
    static int CheckHostKey(CURL*, const curl_khkey*, const curl_khkey*, curl_khmatch match, void*);
    static curl_socket_t OpenSocket(void* self, curlsocktype, curl_sockaddr* address);
    static int CloseSocket(void* self, curl_socket_t socket);

    const FtpTrust trust_;
    const FtpAddress address_;
    const FtpAccount account_;

    std::mutex mutex_;  ///< For what follows.
    std::condition_variable wakeUp_;
    std::optional<FtpStep> next_;
    std::optional<FtpOutcome> outcome_;
    std::vector<curl_socket_t> sockets_;  ///< Open ones, but for those that carry data.
    bool busy_ = false;                   ///< From `Begin` until the outcome stands.
    bool leaving_ = false;

    std::atomic<bool> broken_ = false;
    std::atomic<bool> lost_ = false;
    std::atomic<bool> ended_ = false;

    // Of the session's own thread.
    CURLM* multi_;
    CURL* easy_;
    curl_slist* commands_ = nullptr;
    CURLcode refused_ = CURLE_OK;  ///< What libcurl said to a setting that it does not take.
    const FtpStep* step_ = nullptr;
    std::size_t given_ = 0;  ///< Bytes of the file that libcurl has taken.
    int controlPort_ = 0;
    bool serverLeft_ = false;
    std::size_t replyBytes_ = 0;        ///< Of the present step.
    std::vector<std::string> replies_;  ///< Last lines of the replies to the present step.
    char message_[CURL_ERROR_SIZE] = "";

    std::thread thread_;
};

}  // namespace tessaloom
