#pragma once

#include "platform/Fonts.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include <fontconfig/fontconfig.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace tessaloom {

class FontLibrary;

/// One open face of a font file. Keeps its library alive.
class FaceFile {
public:
    FaceFile(std::shared_ptr<FontLibrary> library, const std::string& path, int index);
    ~FaceFile();
    FaceFile(const FaceFile&) = delete;
    FaceFile& operator=(const FaceFile&) = delete;

    /// Null when the file could not be opened.
    FT_Face Face() const { return face_; }

private:
    std::shared_ptr<FontLibrary> library_;
    FT_Face face_ = nullptr;
};

/// The rasteriser, the list of installed fonts and the smoothing settings, shared by all fonts.
///
/// Lives until the last font that was made from it is gone.
class FontLibrary : public std::enable_shared_from_this<FontLibrary> {
public:
    /// `configFile`: the font configuration to use instead of the machine's; "": the machine's.
    explicit FontLibrary(const std::string& configFile);
    ~FontLibrary();
    FontLibrary(const FontLibrary&) = delete;
    FontLibrary& operator=(const FontLibrary&) = delete;

    FT_Library Rasteriser() const { return rasteriser_; }
    FcConfig* Config() const { return config_; }

    /// The face at `index` of the file `path`, opened once while anybody holds it.
    std::shared_ptr<FaceFile> Open(const std::string& path, int index);

    const ClearTypeSettings& ClearType() const { return clearType_; }
    void SetClearType(const ClearTypeSettings& settings);

    /// Coverage by coverage: 255 * (c / 255) ^ (1000 / contrast).
    const std::array<std::uint8_t, 256>& ContrastTable() const { return contrastTable_; }

private:
    void FillContrastTable();

    FT_Library rasteriser_ = nullptr;
    FcConfig* config_ = nullptr;
    std::map<std::pair<std::string, int>, std::weak_ptr<FaceFile>> files_;
    ClearTypeSettings clearType_;
    std::array<std::uint8_t, 256> contrastTable_{};
};

}  // namespace tessaloom
