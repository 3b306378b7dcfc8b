#include "platform/curl/CurlFtpClients.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string_view>
#include <utility>

#include "platform/curl/CurlFtpClient.h"

namespace tessaloom {

namespace {

std::string MakeProcessMark() {
    char host[256] = "";
    gethostname(host, sizeof host - 1);
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string mark = std::to_string(getpid()) + "-";
    std::size_t hash = std::hash<std::string_view>()(host);
    for (int i = 0; i < 4; ++i, hash >>= 4) mark += Digits[hash & 15];
    return mark;
}

FtpTrust Completed(FtpTrust trust) {
    const char* home = std::getenv("HOME");
    if (trust.sshFolder.empty() && home) trust.sshFolder = std::string(home) + "/.ssh";
    return trust;
}

}  // namespace

CurlFtpClients::CurlFtpClients(FtpTrust trust)
    : trust_(Completed(std::move(trust))), processMark_(MakeProcessMark()) {
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    (void)ready;
}

CurlFtpClients::~CurlFtpClients() {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(500);
    const auto stay = [](const auto& session) { return !session->Ended(); };
    while (std::ranges::any_of(leaving_, stay) && Clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    for (const auto& session : leaving_) session->Break();
}

std::unique_ptr<FtpClient> CurlFtpClients::MakeClient(FtpListener& listener) {
    auto client = std::make_unique<CurlFtpClient>(*this, listener);
    clients_.push_back(client.get());
    return client;
}

void CurlFtpClients::Poll() {
    for (CurlFtpClient* client : clients_) client->Poll();
    std::erase_if(leaving_, [](const auto& session) { return session->Ended(); });
}

void CurlFtpClients::Remove(CurlFtpClient& client) { std::erase(clients_, &client); }

void CurlFtpClients::TakeLeaving(std::unique_ptr<FtpSession> session) {
    leaving_.push_back(std::move(session));
}

}  // namespace tessaloom
