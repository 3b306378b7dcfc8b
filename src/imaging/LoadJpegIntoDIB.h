#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "imaging/DIB.h"

namespace tessaloom {

class FileSystem;
class JpegCodec;
class PictureLoader;
struct LoadedPicture;

/// Bytes of the largest picture file that is read.
inline constexpr std::size_t MaximumPictureFileBytes = std::size_t{256} << 20;

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

/// Puts a decoded picture into `target`; false, and the target as it was, when there is no memory for it.
bool TakePicture(const LoadedPicture& picture, DIB& target, DIB& spare);

/// Whether these bytes begin as a JPEG file does.
bool LooksLikeJpeg(std::span<const std::uint8_t> file);

/// Reads all of a picture file; nothing when it is missing, too large, unreadable or changes meanwhile.
std::optional<std::string> ReadPictureFile(FileSystem& files, std::string_view name);

}  // namespace tessaloom
