#pragma once

#include "core/SettingsOwner.h"
#include "publish/CanvasWebServer.h"
#include "publish/FTPPush.h"
#include "time/PresentTime.h"

namespace tessaloom {

/// Holds the activities by which a canvas's picture leaves this machine: its FTP upload and its web page.
class VideoStreaming {
public:
    VideoStreaming(SettingsOwner& owner, const PresentTime& present)
        : ftpPush_(owner, present), canvasWebServer_(owner) {}

    /// Called by the canvas on every tick, after its saves.
    void Refresh();

    /// Ends the upload and its connection.
    void UnloadClass() { ftpPush_.UnloadClass(); }

    /// Recomputes next times and voids reference times, after the clock was set back.
    void RestartTimes();

    tessaloom::FTPPush& FTPPush() { return ftpPush_; }
    const tessaloom::FTPPush& FTPPush() const { return ftpPush_; }
    tessaloom::CanvasWebServer& CanvasWebServer() { return canvasWebServer_; }
    const tessaloom::CanvasWebServer& CanvasWebServer() const { return canvasWebServer_; }

private:
    tessaloom::FTPPush ftpPush_;
    tessaloom::CanvasWebServer canvasWebServer_;
};

}  // namespace tessaloom
