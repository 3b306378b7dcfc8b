#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/FtpClient.h"

namespace tessaloom {

class CurlFtpClient;
class FtpSession;

/// Whom to trust, and as whom to come.
struct FtpTrust {
    /// The authorities to trust, in place of the system's.
    std::string certificateFile;

    /// Holds "known_hosts", the keys of the hosts to trust, and our own keys for an account without a
    /// password. "": the user's ".ssh".
    std::string sshFolder;
};

/// Uploads by libcurl. Certificates and host keys are verified; proxies from the environment are not heeded.
///
/// Each connection has a thread: libcurl waits for the server at some places (the end of an upload, the end
/// of a connection), and a thread can do so without holding up a tick.
class CurlFtpClients final : public FtpClients {
public:
    explicit CurlFtpClients(FtpTrust trust = {});

    /// Gives connections that are logging out a moment to do so.
    ~CurlFtpClients() override;
    CurlFtpClients(const CurlFtpClients&) = delete;
    CurlFtpClients& operator=(const CurlFtpClients&) = delete;

    std::unique_ptr<FtpClient> MakeClient(FtpListener& listener) override;
    void Poll() override;

    /// The process number and a mark of the machine: containers often share the former.
    std::string ProcessMark() const override { return processMark_; }

    // For `CurlFtpClient`

    const FtpTrust& Trust() const { return trust_; }
    void Remove(CurlFtpClient& client);

    /// Waits for the end of a connection that its client has done with.
    void TakeLeaving(std::unique_ptr<FtpSession> session);

private:
    FtpTrust trust_;
    std::string processMark_;
    std::vector<CurlFtpClient*> clients_;
    std::vector<std::unique_ptr<FtpSession>> leaving_;
};

}  // namespace tessaloom
