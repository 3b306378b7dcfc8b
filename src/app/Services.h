#pragma once

#include <QSocketNotifier>

#include "app/SessionDesktop.h"
#include "platform/Platform.h"
#include "platform/UserLocale.h"
#include "platform/capture/CaptureList.h"
#include "platform/curl/CurlFtpClients.h"
#include "platform/curl/CurlTransfers.h"
#include "platform/ffmpeg/StreamSources.h"
#include "platform/jpeg/TurboJpegCodec.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixSockets.h"
#include "platform/profile/ProfileFiles.h"
#include "platform/qt/QtPictureLoader.h"
#include "platform/qt/QtSystemTime.h"
#include "platform/qt/QtTimer.h"
#include "platform/text/FreeTypeFonts.h"
#include "platform/v4l2/CameraSources.h"

namespace tessaloom {

/// The platform, with the given front end before it. Needs the application object.
class Services {
public:
    /// Both outlive this object.
    Services(Dialogs& dialogs, MainWindow& mainWindow);
    ~Services();
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;

    Platform& All() { return platform_; }

private:
    PosixFileSystem fileSystem_;
    ProfileFiles profile_;
    UserLocale locale_;
    QtSystemTime systemTime_;
    FreeTypeFonts fonts_;
    QtPictureLoader pictureLoader_;
    TurboJpegCodec jpegCodec_;
    SessionDesktop desktop_;
    QtTimer timer_;
    CurlTransfers urlTransfers_;
    CurlFtpClients ftpClients_;
    PosixSockets sockets_;
    CameraSources cameras_;
    StreamSources streams_;
    CaptureList captureDrivers_;
    Platform platform_;
    QSocketNotifier socketNotifier_;
};

}  // namespace tessaloom
