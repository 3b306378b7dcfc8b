#include "publish/WebServer.h"

#include <algorithm>

#include "core/ErrorReport.h"
#include "core/Log.h"
#include "platform/Dialogs.h"
#include "platform/Timer.h"
#include "publish/WebConnection.h"
#include "time/modTime.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "WebServer.cls";
constexpr double Second = 1 / modTime::SecondsPerDay;

}  // namespace

WebServer::WebServer(SettingsOwner& owner, WebHost& host, Tools tools)
    : OwnedSettings(owner), host_(host), tools_(tools), listener_(tools.sockets.MakeListener(*this)) {}

WebServer::~WebServer() = default;

void WebServer::SetEnabled(bool enabled) {
    Trap({Module, "Enabled"}, [&] {
        if (enabled == enabled_) return;
        if (!enabled) Stop();
        Set(enabled_, enabled && Start());
    });
}

bool WebServer::Start() {
    while (pool_.size() < PoolSize)
        pool_.push_back(std::make_unique<WebConnection>(static_cast<int>(pool_.size()) + 1, tools_.sockets,
                                                        host_, tools_.files));
    failure_ = listener_->Listen(port_);
    if (failure_.empty()) {
        listeningPort_ = port_;
        Log(LogLevel::Info, "The web server listens on port " + std::to_string(port_));
        return true;
    }
    Log(LogLevel::Warning, "The web server cannot listen on port " + std::to_string(port_) + ": " + failure_);
    tools_.timer.Post([&dialogs = tools_.dialogs] {
        dialogs.MessageBox(
            "There was an error starting the web server.  Make sure the port is not already in use and the "
            "network is available.",
            "Web Start Error");
    });
    return false;
}

void WebServer::Stop() {
    listeningPort_ = 0;
    listener_->Close();
    for (const auto& connection : pool_) connection->ForceClose();
}

void WebServer::UnloadClass() {
    Trap({Module, "UnloadClass"}, [&] {
        Stop();
        enabled_ = false;
    });
}

void WebServer::Socket_ConnectionRequest(int requestID) {
    Trap({Module, "Socket_ConnectionRequest"}, [&] {
        WebConnection* const connection = Place();
        if (!connection) return;
        connection->SetWebPath(webPath_);
        connection->SetAllowNonCanvasServes(allowNonCanvasServes_);
        connection->TakeConnection(requestID);
    });
}

WebConnection* WebServer::Place() {
    const double silentSince = modTime::Clock() - TakeoverSeconds * Second;
    for (const auto& connection : pool_)
        if (connection->State() == 0) return connection.get();
    for (const auto& connection : pool_)
        if (connection->LastActivityTime() < silentSince) return connection.get();
    return nullptr;
}

void WebServer::Refresh(double now) {
    if (!enabled_ || now < nextLook_) return;
    nextLook_ = now + Second;
    for (const auto& connection : pool_) connection->CloseIfIdle(now);
}

void WebServer::RestartTimes(double now) {
    nextLook_ = now;
    for (const auto& connection : pool_) connection->RestartTimes(now);
}

int WebServer::Connections() const {
    return static_cast<int>(
        std::ranges::count_if(pool_, [](const auto& connection) { return connection->State() == 1; }));
}

std::uint64_t WebServer::Requests() const {
    std::uint64_t requests = 0;
    for (const auto& connection : pool_) requests += connection->Requests();
    return requests;
}

}  // namespace tessaloom
