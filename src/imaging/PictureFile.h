#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "imaging/LoadJpegIntoDIB.h"
#include "imaging/Picture.h"
#include "imaging/PictureAccess.h"
#include "platform/FileSystem.h"

namespace tessaloom {

/// The picture file of one layer, read again only when it changed.
///
/// A fault goes to the common error report once for each file and reason, until the file has been read again.
/// A file that others may just be rewriting is given a second chance first: when it was good before, or
/// changes right now, only the second failure in a row is a fault.
class PictureFile {
public:
    enum class Outcome {
        Loaded,
        Failed,       ///< For the first time with this file and reason, or to be tried once more.
        FailedAgain,  ///< As before, so that nothing else needs to be done about it.
    };

    explicit PictureFile(const PictureAccess& access);

    /// Whether the file `name` is another one than was loaded last, or cannot be told from it, or failed.
    bool Stale(std::string_view name) const;

    /// Reads the file whatever its stamp. On failure `target` keeps its picture.
    ///
    /// origin: where this program fetched the file from, as reports may show it; what it fetched is whole.
    /// Empty for files that others write.
    Outcome Load(std::string_view name, DIB& target, std::string_view origin = {});

    /// Of the picture loaded last: 0 clear .. 255 solid, `Width` bytes a row, bottom row first; empty when it
    /// has no transparency. Lasts until `Release`.
    std::span<const std::uint8_t> Alpha() const { return surface_.Alpha(); }

    /// Frees what loading needed, once the picture has been taken over.
    void Release() { surface_.FreeMemory(); }

    /// Whether pictures of other formats than JPEG are taken at their own size.
    void SetAutoSize(bool autoSize) { autoSize_ = autoSize; }

private:
    std::optional<FileStamp> StampOf(std::string_view name) const;
    int LoadThroughSurface(std::string_view name, DIB& target);
    Outcome Fail(const std::string& source, int result, bool maybeUnfinished);
    std::string WhyUnreadable() const;

    PictureAccess access_;
    Picture surface_;
    LoadingBuffers buffers_;
    bool autoSize_ = true;
    std::string loadedName_;
    std::optional<FileStamp> loadedStamp_;
    std::string faultSource_;  ///< The file, and its origin.
    PictureRefusal refusal_ = PictureRefusal::None;
    int fault_ = Loaded;         ///< A `JpegLoad`; `Loaded` while there is no fault.
    bool secondChance_ = false;  ///< Given since the file was last loaded.
};

}  // namespace tessaloom
