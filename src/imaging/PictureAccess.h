#pragma once

namespace tessaloom {

class ErrorsFile;
class FileSystem;
class JpegCodec;
class PictureLoader;

/// What reading a picture file takes. A plain set of references, copied by its users; the parts outlive them.
struct PictureAccess {
    FileSystem& files;
    JpegCodec& jpeg;
    PictureLoader& pictures;
    ErrorsFile& errors;
};

}  // namespace tessaloom
