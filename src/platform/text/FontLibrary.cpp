#include "platform/text/FontLibrary.h"

#include FT_LCD_FILTER_H

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

FcConfig* LoadConfig(const std::string& file) {
    if (file.empty()) return FcConfigReference(nullptr);
    FcConfig* config = FcConfigCreate();
    if (!config) return nullptr;
    FcConfigParseAndLoad(config, reinterpret_cast<const FcChar8*>(file.c_str()), FcTrue);
    FcConfigBuildFonts(config);
    return config;
}

}  // namespace

FaceFile::FaceFile(std::shared_ptr<FontLibrary> library, const std::string& path, int index)
    : library_(std::move(library)) {
    if (FT_New_Face(library_->Rasteriser(), path.c_str(), index, &face_) != 0) face_ = nullptr;
}

FaceFile::~FaceFile() {
    if (face_) FT_Done_Face(face_);
}

FontLibrary::FontLibrary(const std::string& configFile) : config_(LoadConfig(configFile)) {
    if (FT_Init_FreeType(&rasteriser_) != 0) rasteriser_ = nullptr;
    // A rasteriser built without this filter has one of its own in place.
    if (rasteriser_) FT_Library_SetLcdFilter(rasteriser_, FT_LCD_FILTER_DEFAULT);
    FillContrastTable();
}

FontLibrary::~FontLibrary() {
    if (rasteriser_) FT_Done_FreeType(rasteriser_);
    if (config_) FcConfigDestroy(config_);
}

std::shared_ptr<FaceFile> FontLibrary::Open(const std::string& path, int index) {
    std::weak_ptr<FaceFile>& kept = files_[{path, index}];
    if (auto open = kept.lock()) return open;
    auto opened = std::make_shared<FaceFile>(shared_from_this(), path, index);
    kept = opened;
    return opened;
}

void FontLibrary::SetClearType(const ClearTypeSettings& settings) {
    clearType_ = settings;
    clearType_.contrast = std::clamp(settings.contrast, 1000, 2200);
    FillContrastTable();
}

void FontLibrary::FillContrastTable() {
    const double exponent = 1000.0 / clearType_.contrast;
    for (std::size_t c = 0; c < contrastTable_.size(); ++c)
        contrastTable_[c] =
            static_cast<std::uint8_t>(std::lround(255 * std::pow(static_cast<double>(c) / 255, exponent)));
}

}  // namespace tessaloom
