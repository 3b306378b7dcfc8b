#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "platform/FtpClient.h"
#include "platform/curl/FtpSession.h"

namespace tessaloom {

/// The engine's side of a connection.
class CurlFtpClient final : public FtpClient {
public:
    CurlFtpClient(CurlFtpClients& owner, FtpListener& listener) : owner_(owner), listener_(listener) {}
    ~CurlFtpClient() override;
    CurlFtpClient(const CurlFtpClient&) = delete;
    CurlFtpClient& operator=(const CurlFtpClient&) = delete;

    void LogIn(const FtpAccount& account) override;
    void StoreFile(Bytes bytes, std::string_view path) override;
    void DeleteFile(std::string_view path) override;
    void RenameFile(std::string_view from, std::string_view to) override;
    void NoOp() override;
    void LogOut() override;
    void Disconnect() override;
    bool Connected() const override { return connected_; }

    /// Tells the listener what has happened.
    void Poll();

private:
    void Begin(FtpStep step);
    void Fail(std::string_view why) { early_ = {.description = std::string(why)}; }
    void End(const FtpOutcome& outcome);
    void LoseConnection(bool expected);

    CurlFtpClients& owner_;
    FtpListener& listener_;
    std::unique_ptr<FtpSession> session_;
    std::optional<FtpStep::Kind> step_;  ///< The one under way.
    std::optional<FtpOutcome> early_;    ///< Of a step that ended before it began.
    bool connected_ = false;
};

}  // namespace tessaloom
