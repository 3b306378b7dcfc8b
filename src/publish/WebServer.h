#pragma once

#include <string>
#include <string_view>

#include "core/SettingsOwner.h"
#include "core/Store.h"

namespace tessaloom {

/// The settings of the portfolio's built-in web server. Nothing listens: switching it on only stores the
/// wish.
///
/// A new server has port 18080; a portfolio file without a port means 80. The two are kept apart.
class WebServer {
public:
    explicit WebServer(SettingsOwner& owner) : owner_(owner) {}

    /// The server is to run.
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { Set(enabled_, enabled); }

    /// The listening port, 1 .. 65535.
    int Port() const { return port_; }
    void SetPort(int port) { Set(port_, Clamped(port, {1, 65535})); }

    /// The folder of the files that are no canvases.
    const std::string& WebPath() const { return webPath_; }
    void SetWebPath(std::string_view folder) { Set(webPath_, std::string(folder)); }

    /// Files from `WebPath` may be served.
    bool AllowNonCanvasServes() const { return allowNonCanvasServes_; }
    void SetAllowNonCanvasServes(bool allow) { Set(allowNonCanvasServes_, allow); }

    /// Switches off as the portfolio goes, which is no change of a setting.
    void UnloadClass() { enabled_ = false; }

private:
    template <typename T>
    void Set(T& field, std::type_identity_t<T> value) {
        if (Store(field, std::move(value))) owner_.SettingChanged();
    }

    SettingsOwner& owner_;
    std::string webPath_ = "web";
    int port_ = 18080;
    bool enabled_ = false;
    bool allowNonCanvasServes_ = false;
};

}  // namespace tessaloom
