#pragma once

namespace tessaloom {

class Desktop;
class Dialogs;
class FileSystem;
class Fonts;
class JpegCodec;
class MainWindow;
class PictureLoader;
class PrivateProfile;
class SystemTime;
class Timer;
class UrlTransfers;
struct UserLocale;

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
};

}  // namespace tessaloom
