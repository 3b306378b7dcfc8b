#pragma once

namespace tessaloom {

class FileSystem;
class JpegCodec;
class PictureLoader;

/// What reading a picture file takes. The parts outlive every user.
struct PictureAccess {
    FileSystem& files;
    JpegCodec& jpeg;
    PictureLoader& pictures;
};

}  // namespace tessaloom
