#pragma once

namespace tessaloom {

class ErrorsFile;
class FileSystem;
class JpegCodec;
class PictureLoader;
class UrlTransfers;

/// What getting at pictures in files and at addresses takes. A plain set of references, copied by its users;
/// the parts outlive them.
struct PictureAccess {
    FileSystem& files;
    JpegCodec& jpeg;
    PictureLoader& pictures;
    ErrorsFile& errors;
    UrlTransfers& transfers;
};

}  // namespace tessaloom
