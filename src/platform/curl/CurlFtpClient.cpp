#include "platform/curl/CurlFtpClient.h"

#include <system_error>
#include <utility>

namespace tessaloom {

namespace {

/// In a command they would begin another one.
bool HoldsLineBreak(std::string_view text) {
    constexpr std::string_view Breaks("\r\n\0", 3);
    return text.find_first_of(Breaks) != std::string_view::npos;
}

}  // namespace

CurlFtpClient::~CurlFtpClient() {
    Disconnect();
    owner_.Remove(*this);
}

void CurlFtpClient::LogIn(const FtpAccount& account) {
    Disconnect();
    const auto address = FtpAddress::Parse(account.server);
    if (!address) return Fail("This is no name of a server");
    for (const std::string* text : {&account.userName, &account.password})
        if (HoldsLineBreak(*text)) return Fail("The account holds a line break");
    try {
        session_ = std::make_unique<FtpSession>(owner_.Trust(), *address, account);
    } catch (const std::system_error& error) {
        return Fail(error.what());
    }
    Begin({.kind = FtpStep::Kind::LogIn, .bytes = {}, .path = {}, .newPath = {}});
}

void CurlFtpClient::StoreFile(Bytes bytes, std::string_view path) {
    Begin({FtpStep::Kind::Store, std::move(bytes), std::string(path), {}});
}

void CurlFtpClient::DeleteFile(std::string_view path) {
    Begin({FtpStep::Kind::Delete, {}, std::string(path), {}});
}

void CurlFtpClient::RenameFile(std::string_view from, std::string_view to) {
    Begin({FtpStep::Kind::Rename, {}, std::string(from), std::string(to)});
}

void CurlFtpClient::NoOp() { Begin({FtpStep::Kind::NoOp, {}, {}, {}}); }

void CurlFtpClient::LogOut() {
    if (session_) return Begin({FtpStep::Kind::LogOut, {}, {}, {}});
    early_ = {.done = true, .description = {}};
}

void CurlFtpClient::Begin(FtpStep step) {
    if (HoldsLineBreak(step.path) || HoldsLineBreak(step.newPath)) return Fail("The path holds a line break");
    if (!session_) return Fail("Not connected");
    if (step_) return Fail("Another step is under way");
    step_ = step.kind;
    session_->Begin(std::move(step));
}

void CurlFtpClient::Disconnect() {
    early_.reset();
    step_.reset();
    connected_ = false;
    if (!session_) return;
    session_->Leave();
    owner_.TakeLeaving(std::move(session_));
}

void CurlFtpClient::Poll() {
    if (const auto outcome = std::exchange(early_, {})) return End(*outcome);
    if (!session_) return;
    if (step_) {
        if (const auto outcome = session_->TakeOutcome()) {
            if (*step_ == FtpStep::Kind::LogIn && outcome->done) {
                connected_ = true;
                listener_.FtpState(true, true);
            }
            const bool leaving = std::exchange(step_, {}) == FtpStep::Kind::LogOut;
            End(*outcome);
            if (!outcome->connected && session_) LoseConnection(leaving || !outcome->serverLeft);
        }
    } else if (session_->Lost()) {
        LoseConnection(false);
    }
}

void CurlFtpClient::End(const FtpOutcome& outcome) {
    if (outcome.done)
        listener_.FtpComplete();
    else
        listener_.FtpError(outcome.number, outcome.description);
}

void CurlFtpClient::LoseConnection(bool expected) {
    const bool wasConnected = connected_;
    Disconnect();
    if (wasConnected) listener_.FtpState(false, expected);
}

}  // namespace tessaloom
