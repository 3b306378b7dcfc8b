#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/PictureLimits.h"

namespace tessaloom {

/// Why a file was not loaded, as far as it can be told.
enum class PictureRefusal {
    None,
    NotSupported,      ///< It is of none of the known formats.
    Damaged,           ///< Or cut short.
    TooLarge,          ///< Beyond the limits.
    TooElaborate,      ///< A vector picture that would take too long to draw.
    NamesOtherFiles,   ///< A vector picture that holds pictures, or refers to other files.
    DeclaresEntities,  ///< A vector picture with declarations of its own in its document type.
};

/// For reports: what follows "... cannot be loaded: "; empty for `None`.
std::string_view Words(PictureRefusal refusal);

/// A decoded picture. The first row in memory is the bottom row.
struct LoadedPicture {
    int width = 0;                     ///< Pixels; 0 when nothing was loaded.
    int height = 0;                    ///< Pixels.
    std::vector<std::uint8_t> pixels;  ///< Blue, green, red; rows padded to a multiple of 4 bytes.
    std::vector<std::uint8_t> alpha;  ///< `width` bytes a row, 0 clear .. 255 solid; empty when all is solid.

    PictureRefusal refusal = PictureRefusal::None;  ///< Why nothing was loaded.

    explicit operator bool() const { return width > 0 && height > 0; }
};

/// What the beginning of a picture file says.
struct PictureHeader {
    int width = 0;  ///< Pixels; 0 when only loading can tell.
    int height = 0;
};

/// Decodes picture files of the formats of platform/PictureFormat.h, by their content and not by their name.
/// How long it takes and how much memory is bounded, whatever a file says.
class PictureLoader {
public:
    virtual ~PictureLoader() = default;

    /// What files may ask for from now on.
    virtual void SetLimits(const PictureLimits& limits) = 0;

    /// The picture in `file` (the first one, where it holds several); an empty one when it is damaged, cut
    /// short, beyond the limits or of an unknown format. Never a part of a picture.
    virtual LoadedPicture Load(std::span<const std::uint8_t> file) = 0;

    /// What a file that begins like this holds; nothing when it is no picture of a known format. Decodes
    /// nothing.
    virtual std::optional<PictureHeader> Header(std::span<const std::uint8_t> beginning) = 0;

    /// Another one with the same limits, for another thread.
    virtual std::shared_ptr<PictureLoader> Another() const = 0;
};

}  // namespace tessaloom
