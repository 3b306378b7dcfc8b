#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// Where to upload, and as whom.
struct FtpAccount {
    /// A host name or address, with or without ":port". "ftps://" before it secures the connection (from the
    /// start at port 990, else after the greeting), "sftp://" takes the file transfer of a secure shell.
    std::string server;
    std::string userName;
    std::string password;
    /// We open the connections for the data, not the server. Secured connections are always passive.
    bool passive = false;

    bool operator==(const FtpAccount&) const = default;
};

/// Who is told how the steps of a client end, always from within `FtpClients::Poll`. It makes and ends no
/// clients meanwhile.
class FtpListener {
public:
    /// The connection was made or is gone. `expected` is false when nobody here asked for its end.
    virtual void FtpState(bool connected, bool expected) = 0;

    /// The step was done.
    virtual void FtpComplete() = 0;

    /// The step failed. number: the server's reply code, else that of the library; description: why, in words
    /// that hold no password.
    virtual void FtpError(int number, const std::string& description) = 0;

protected:
    ~FtpListener() = default;
};

/// One connection to a server, and one step on it at a time, that goes on while the program does.
///
/// A step begun while another one is under way fails. Paths are the server's, with "/"; relative ones begin
/// at the folder of the log-in. No step waits, and none has a time limit of its own: who waits in vain calls
/// `Disconnect`.
class FtpClient {
public:
    using Bytes = std::shared_ptr<const std::vector<std::uint8_t>>;

    virtual ~FtpClient() = default;

    virtual void LogIn(const FtpAccount& account) = 0;

    /// Stores `bytes` as the file `path`, in place of one that is there.
    virtual void StoreFile(Bytes bytes, std::string_view path) = 0;
    virtual void DeleteFile(std::string_view path) = 0;
    virtual void RenameFile(std::string_view from, std::string_view to) = 0;

    /// Tells the server that we are still here.
    virtual void NoOp() = 0;

    /// Ends the connection as the protocol wishes. Completes at once when there is none.
    virtual void LogOut() = 0;

    /// Drops the step and the connection. Nobody is told, and nothing is waited for.
    virtual void Disconnect() = 0;

    /// Logged in, as far as is known.
    virtual bool Connected() const = 0;
};

/// Makes clients and moves them along.
class FtpClients {
public:
    virtual ~FtpClients() = default;

    /// The client ends before this object does, and before `listener`. One that is destroyed while logged in
    /// and without a step logs out by itself.
    virtual std::unique_ptr<FtpClient> MakeClient(FtpListener& listener) = 0;

    /// Tells the listeners what has happened. Never waits.
    virtual void Poll() = 0;

    /// A text of letters and digits that no other program on this machine has now.
    virtual std::string ProcessMark() const = 0;
};

}  // namespace tessaloom
