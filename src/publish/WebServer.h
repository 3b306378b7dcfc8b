#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/OwnedSettings.h"
#include "platform/Sockets.h"

namespace tessaloom {

class Dialogs;
class FileSystem;
class Timer;
class WebConnection;
class WebHost;

/// The portfolio's built-in web server: the pictures of published canvases and, where that is allowed, the
/// files of a folder. Answers come between two ticks.
///
/// A new server has port 18080; a portfolio file without a port means 80. The two are kept apart.
class WebServer final : public ListenerEvents, private OwnedSettings {
public:
    /// What the server works with. All of it outlives this object.
    struct Tools {
        Sockets& sockets;
        FileSystem& files;
        Dialogs& dialogs;
        Timer& timer;  ///< Boxes are shown between ticks, so that nobody's answer is waited for in one.
    };

    /// Connections that are served at a time.
    static constexpr int PoolSize = 128;

    /// When none is free, a new client takes the place of one that was silent for longer than this.
    static constexpr double TakeoverSeconds = 5;

    /// `owner` is told of changed settings.
    WebServer(SettingsOwner& owner, WebHost& host, Tools tools);
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    /// Gives the connection to the first free place, or to the first idle one; else it is refused.
    void Socket_ConnectionRequest(int requestID) override;

    /// To be called on every tick, with its moment: closes idle connections.
    void Refresh(double now);

    /// Begins all idle times anew, after the clock was set back.
    void RestartTimes(double now);

    /// The server listens. Switching on a server that cannot listen shows why and leaves it switched off;
    /// switching off closes all connections at once.
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);

    /// The listening port, 1 .. 65535. A change takes effect when the server is switched on the next time.
    int Port() const { return port_; }
    void SetPort(int port) { Set(port_, port, {1, 65535}); }

    /// The port on which the server listens now; 0: on none.
    int ListeningPort() const { return listeningPort_; }

    /// Why the server could not be switched on the last time, as the operating system words it; "" when it
    /// could.
    const std::string& Failure() const { return failure_; }

    /// The folder of the files that are no canvases.
    const std::string& WebPath() const { return webPath_; }
    void SetWebPath(std::string_view folder) { Set(webPath_, std::string(folder)); }

    /// Files from `WebPath` may be served.
    bool AllowNonCanvasServes() const { return allowNonCanvasServes_; }
    void SetAllowNonCanvasServes(bool allow) { Set(allowNonCanvasServes_, allow); }

    /// Switches off as the portfolio goes, which is no change of a setting.
    void UnloadClass();

    /// Places of the pool that have a connection.
    int Connections() const;

    /// Requests that came in since the server was made.
    std::uint64_t Requests() const;

private:
    bool Start();
    void Stop();
    WebConnection* Place();

    WebHost& host_;
    Tools tools_;
    std::unique_ptr<ListenerSocket> listener_;
    std::vector<std::unique_ptr<WebConnection>> pool_;  ///< Empty until the server is first switched on.
    double nextLook_ = 0;                               ///< For idle connections.
    std::string webPath_ = "web";
    std::string failure_;
    int listeningPort_ = 0;
    int port_ = 18080;
    bool enabled_ = false;
    bool allowNonCanvasServes_ = false;
};

}  // namespace tessaloom
