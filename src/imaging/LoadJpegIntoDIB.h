#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "imaging/DIB.h"

namespace tessaloom {

class FileSystem;
class JpegCodec;
class PictureLoader;

/// Bytes of the largest picture file that is read.
inline constexpr std::int64_t MaximumPictureFileBytes = 256 * 1024 * 1024;

/// What one caller keeps between two loads, so that a picture of a steady size is reloaded without
/// allocating.
struct LoadingBuffers {
    DIB spare;  ///< Decoding goes here; it is exchanged with the target when the picture is whole.
};

/// What `LoadJpegIntoDIB` answers; the numbers are the contract.
enum JpegLoad : int {
    NotJpegName = 0,  ///< The name ends in neither ".JPG" nor ".JPEG"; nothing was read.
    Loaded = 1,       ///< The target holds the picture at its own size.
    Unreadable = 2,   ///< The file is there but could not be read, or decoded whole.
    Missing = 3,      ///< There is no such file.
};

/// Loads the JPEG file `name` into `target`. On any result but `Loaded` the target keeps its present picture.
///
/// A file that changes while it is read is `Unreadable` for now. A JPEG that `codec` has no way to convert
/// (CMYK) goes through `loader`. `buffers` is the caller's; without one a bitmap is allocated each time.
int LoadJpegIntoDIB(FileSystem& files, JpegCodec& codec, PictureLoader& loader, std::string_view name,
                    DIB& target, LoadingBuffers* buffers = nullptr);

/// Decodes the bytes of a JPEG file into `target`, by way of `spare`, with the same rules. True when it is
/// whole.
bool DecodeJpeg(JpegCodec& codec, PictureLoader& loader, std::span<const std::uint8_t> file, DIB& target,
                DIB& spare);

/// Whether these bytes begin as a JPEG file does.
bool LooksLikeJpeg(std::span<const std::uint8_t> file);

/// Reads all of a picture file; false when it is missing, too large, unreadable or changes meanwhile.
bool ReadPictureFile(FileSystem& files, std::string_view name, std::vector<std::uint8_t>& bytes);

}  // namespace tessaloom
