#pragma once

namespace tessaloom {

class CaptureDrivers;
class Desktop;
class Dialogs;
class FileSystem;
class Fonts;
class FtpClients;
class JpegCodec;
class MainWindow;
class PictureLoader;
class PrivateProfile;
class Sockets;
class SystemTime;
class Timer;
class UrlTransfers;
struct UserLocale;

/// Sockets of a program that stays off the network (platform/Sockets.h).
Sockets& NoSockets();

/// Everything that the engine needs of the system it runs on. Filled once by the program, passed down by
/// reference; what it refers to outlives the engine.
struct Platform {
    FileSystem& fileSystem;
    PrivateProfile& profile;
    const UserLocale& locale;
    const SystemTime& systemTime;
    Fonts& fonts;
    PictureLoader& pictureLoader;
    JpegCodec& jpegCodec;
    Dialogs& dialogs;
    Desktop& desktop;
    MainWindow& mainWindow;
    Timer& timer;
    UrlTransfers& urlTransfers;
    Sockets& sockets = NoSockets();
    FtpClients* ftpClients = nullptr;          ///< Null: this program uploads nothing.
    CaptureDrivers* captureDrivers = nullptr;  ///< Null: there is no capture support at all.
};

}  // namespace tessaloom
