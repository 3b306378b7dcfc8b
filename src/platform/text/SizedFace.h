#pragma once

#include "platform/text/FontLibrary.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include <hb.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace tessaloom {

/// A drawn glyph. Its place is that of its top left corner from the pen, y upwards.
struct Glyph {
    int left = 0, top = 0, width = 0, rows = 0;
    std::vector<std::uint8_t> coverage;  ///< Row by row; one byte a pixel, or three (left third first).
};

/// How a face is drawn.
struct FaceStyle {
    int pixelHeight = 1;
    FontQuality quality = FontQuality::Antialiased;
    bool embolden = false;
    bool slant = false;
};

/// A face at one size and smoothing: shapes text and keeps its drawn glyphs.
class SizedFace {
public:
    SizedFace(std::shared_ptr<FaceFile> file, const FaceStyle& style);
    ~SizedFace();
    SizedFace(const SizedFace&) = delete;
    SizedFace& operator=(const SizedFace&) = delete;

    /// False when the font file cannot be used; the members below then do nothing.
    bool Usable() const { return shaper_ != nullptr; }

    /// Rows above and beneath the baseline that a line of this face takes.
    int Ascent() const;
    int Descent() const;

    /// Turns the characters in `buffer` into glyphs with positions in 1/64 pixel.
    void Shape(hb_buffer_t* buffer);

    /// Valid until the next call.
    const Glyph& Drawn(std::uint32_t glyph);

private:
    int Rounded(int fontUnits) const;
    Glyph Draw(std::uint32_t glyph);

    std::shared_ptr<FaceFile> file_;
    FaceStyle style_;
    FT_Size size_ = nullptr;
    hb_font_t* shaper_ = nullptr;
    std::unordered_map<std::uint32_t, Glyph> glyphs_;
    std::size_t keptBytes_ = 0;
};

}  // namespace tessaloom
