#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Sockets.h"
#include "publish/RequestHead.h"

namespace tessaloom {

class CanvasWebServer;
class FileReader;
class FileSystem;
class WebHost;

/// One place in the web server's pool: takes a connection, reads requests off it and answers them, one after
/// the other.
///
/// A connection that asks for it is kept and may send requests ahead; any other is closed when the response
/// has gone, and what still comes in is no request. What cannot be understood closes it, without an answer.
class WebConnection final : public ConnectionEvents {
public:
    /// A client that neither asks anything nor takes anything for so long is sent away.
    static constexpr double IdleSeconds = 60;

    /// The same for one that has taken all and leaves a connection open which we have closed.
    static constexpr double FarewellSeconds = 5;

    /// Bytes of a file that are read and sent at a time: ticks wait for no more than that, however large it
    /// is.
    static constexpr std::size_t Portion = std::size_t{256} << 10;

    /// winSockIndex: the number of its socket, 1 for the first place. All else outlives the connection.
    WebConnection(int winSockIndex, Sockets& sockets, WebHost& host, FileSystem& files);
    ~WebConnection();

    /// Accepts a connection that is offered. False when it went away meanwhile.
    bool TakeConnection(int requestID);

    /// Closes at once, whatever is under way.
    void ForceClose();

    void Socket_DataArrival(std::string_view bytes) override;
    void Socket_SendComplete() override;
    void Socket_Close() override;
    void Socket_Error(std::string_view description) override;

    /// Sends the picture of a canvas, or `Send404` when it has none.
    void ReturnJPG(CanvasWebServer& canvas);
    void Send404();

    /// Closes a connection that is idle at moment `now`.
    void CloseIfIdle(double now);

    /// Begins its idle time anew, after the clock was set back.
    void RestartTimes(double now);

    int WinSockIndex() const { return winSockIndex_; }

    /// The folder of files, and whether they are served: as they were when the connection was taken.
    const std::string& WebPath() const { return webPath_; }
    void SetWebPath(std::string_view folder) { webPath_ = folder; }
    bool AllowNonCanvasServes() const { return allowNonCanvasServes_; }
    void SetAllowNonCanvasServes(bool allow) { allowNonCanvasServes_ = allow; }

    /// The moment of the last bytes received, or of the end of the last response.
    double LastActivityTime() const { return lastActivityTime_; }

    /// Requests that were understood, over all connections of this place.
    std::uint64_t Requests() const { return requests_; }

    /// 1 while there is a connection, else 0.
    int State() const { return socket_->Open() ? 1 : 0; }

private:
    std::size_t HeadEnd();
    void AnswerNext();
    void Answer(const RequestHead& request);
    void ServeFile(std::string_view path);
    void ServeOffSchedule(std::string_view path);
    void SendFile(std::string_view path, std::unique_ptr<FileReader> file);
    void SendPortion(std::string head);
    void Respond(std::string head, SharedBytes body);
    void Finish();

    /// Runs a routine of the above; when it fails the connection is closed.
    template <typename Body>
    void Guard(std::string_view procedure, Body&& body);

    const int winSockIndex_;
    WebHost& host_;
    FileSystem& files_;
    const std::unique_ptr<ConnectionSocket> socket_;
    std::string webPath_;
    std::string buffer_;                ///< Received and not answered yet.
    std::size_t searched_ = 0;          ///< Bytes of it in which no empty line begins.
    std::unique_ptr<FileReader> file_;  ///< On its way; null when all of it was handed to the socket.
    std::uint64_t fileSent_ = 0;        ///< Bytes of it that were.
    double lastActivityTime_ = 0;
    double lastArrivalTime_ = 0;  ///< When bytes were last seen to arrive at the client.
    std::uint64_t bytesArrived_ = 0;
    std::uint64_t bytesSent_ = 0;  ///< Handed to the socket.
    std::uint64_t requests_ = 0;
    unsigned uses_ = 0;  ///< Connections taken and closed by us: tells whether the same one is still there.
    bool allowNonCanvasServes_ = false;
    bool keepAlive_ = false;  ///< As the last request asked.
    bool closing_ = false;    ///< Nothing more is answered.
    bool answering_ = false;  ///< A script that is told of a request may show a box, which lets more come in.
};

}  // namespace tessaloom
