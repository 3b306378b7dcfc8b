#include "platform/text/SizedFace.h"

#include FT_OUTLINE_H
#include FT_SIZES_H
#include FT_SYNTHESIS_H
#include <hb-ft.h>

#include <algorithm>
#include <cstring>

namespace tessaloom {
namespace {

constexpr std::size_t MostKeptBytes = 16 << 20;

/// What the rasteriser is told for a quality. Shaping takes the same flags, else advances and glyphs
/// disagree.
struct Rendering {
    FT_Int32 loadFlags;
    FT_Render_Mode mode;
};

Rendering RenderingOf(FontQuality quality) {
    switch (quality) {
        case FontQuality::NonAntialiased:
            return {FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_MONO, FT_RENDER_MODE_MONO};
        case FontQuality::Antialiased:
            return {FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LIGHT, FT_RENDER_MODE_NORMAL};
        case FontQuality::ClearType:
            return {FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LCD, FT_RENDER_MODE_LCD};
    }
    return {FT_LOAD_NO_BITMAP, FT_RENDER_MODE_NORMAL};
}

void CopyRow(std::uint8_t* out, const unsigned char* row, unsigned bytes, bool bits) {
    if (!bits) {
        std::memcpy(out, row, bytes);
        return;
    }
    for (unsigned i = 0; i < bytes; ++i) out[i] = (row[i / 8] & (0x80U >> (i % 8))) ? 255 : 0;
}

Glyph Copied(const FT_GlyphSlot slot) {
    const FT_Bitmap& bitmap = slot->bitmap;
    const bool bits = bitmap.pixel_mode == FT_PIXEL_MODE_MONO;
    const unsigned thirds = bitmap.pixel_mode == FT_PIXEL_MODE_LCD ? 3 : 1;
    Glyph glyph{slot->bitmap_left,
                slot->bitmap_top,
                static_cast<int>(bitmap.width / thirds),
                static_cast<int>(bitmap.rows),
                {}};
    glyph.coverage.resize(std::size_t{bitmap.width} * bitmap.rows);
    for (unsigned y = 0; y < bitmap.rows; ++y)
        CopyRow(glyph.coverage.data() + std::size_t{y} * bitmap.width,
                bitmap.buffer + static_cast<std::ptrdiff_t>(y) * bitmap.pitch, bitmap.width, bits);
    return glyph;
}

}  // namespace

SizedFace::SizedFace(std::shared_ptr<FaceFile> file, const FaceStyle& style)
    : file_(std::move(file)), style_(style) {
    const FT_Face face = file_->Face();
    if (!face || FT_New_Size(face, &size_) != 0) return;
    FT_Activate_Size(size_);
    if (FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(std::clamp(style.pixelHeight, 1, 1000))) != 0)
        return;
    shaper_ = hb_ft_font_create_referenced(face);
    hb_ft_font_set_load_flags(shaper_, RenderingOf(style.quality).loadFlags);
}

SizedFace::~SizedFace() {
    if (shaper_) hb_font_destroy(shaper_);
    if (size_) FT_Done_Size(size_);
}

int SizedFace::Rounded(int fontUnits) const {
    return static_cast<int>((FT_MulFix(fontUnits, size_->metrics.y_scale) + 32) >> 6);
}

// The unrounded values are rounded here, because the rasteriser's own metrics round both away from the
// baseline and make lines a row too high.
int SizedFace::Ascent() const { return Usable() ? Rounded(file_->Face()->ascender) : 0; }
int SizedFace::Descent() const { return Usable() ? Rounded(-file_->Face()->descender) : 0; }

void SizedFace::Shape(hb_buffer_t* buffer) {
    if (!Usable()) return;
    FT_Activate_Size(size_);
    hb_shape(shaper_, buffer, nullptr, 0);
    if (!style_.embolden) return;
    unsigned count = 0;
    hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
    const int extra =
        std::max(64, (style_.pixelHeight * 64 / 24 + 32) & ~63);  // as much as the outline grows
    for (unsigned i = 0; i < count; ++i)
        if (positions[i].x_advance != 0) positions[i].x_advance += extra;
}

const Glyph& SizedFace::Drawn(std::uint32_t glyph) {
    if (const auto kept = glyphs_.find(glyph); kept != glyphs_.end()) return kept->second;
    if (keptBytes_ > MostKeptBytes) {
        glyphs_.clear();
        keptBytes_ = 0;
    }
    Glyph drawn = Usable() ? Draw(glyph) : Glyph{};
    keptBytes_ += sizeof(Glyph) + drawn.coverage.size();
    return glyphs_[glyph] = std::move(drawn);
}

Glyph SizedFace::Draw(std::uint32_t glyph) {
    const Rendering rendering = RenderingOf(style_.quality);
    const FT_Face face = file_->Face();
    FT_Activate_Size(size_);
    if (FT_Load_Glyph(face, glyph, rendering.loadFlags) != 0) return {};
    if (face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return {};
    if (style_.embolden) FT_GlyphSlot_Embolden(face->glyph);
    if (style_.slant) FT_GlyphSlot_Oblique(face->glyph);
    if (FT_Render_Glyph(face->glyph, rendering.mode) != 0) return {};
    return Copied(face->glyph);
}

}  // namespace tessaloom
