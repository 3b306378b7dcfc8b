#include "platform/text/FreeTypeFont.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>

namespace tessaloom {
namespace {

using ComponentTable = std::array<std::uint8_t, 256>;

/// The part of a glyph at (left, top) that lies on the target, in the glyph's own columns and rows.
struct Visible {
    int fromX, toX, fromY, toY;

    Visible(const Glyph& glyph, std::int64_t left, std::int64_t top, const CoverageTarget& target)
        : fromX(Cut(-left, glyph.width)),
          toX(Cut(target.width - left, glyph.width)),
          fromY(Cut(-top, glyph.rows)),
          toY(Cut(target.height - top, glyph.rows)) {}

    static int Cut(std::int64_t value, int size) {
        return static_cast<int>(std::clamp<std::int64_t>(value, 0, size));
    }
};

std::uint8_t* PixelAt(const CoverageTarget& target, std::int64_t x, std::int64_t y) {
    return target.topRow + static_cast<std::ptrdiff_t>(y) * target.rowBytes + x * 3;
}

void DrawGrey(const Glyph& glyph, std::int64_t left, std::int64_t top, const CoverageTarget& target) {
    const Visible part(glyph, left, top, target);
    for (int row = part.fromY; row < part.toY; ++row) {
        const std::uint8_t* in = glyph.coverage.data() + std::ptrdiff_t{row} * glyph.width + part.fromX;
        std::uint8_t* out = PixelAt(target, left + part.fromX, top + row);
        for (int i = part.fromX; i < part.toX; ++i, ++in, out += 3)
            for (int component = 0; component < 3; ++component)
                out[component] = std::max(out[component], *in);
    }
}

void DrawThirds(const Glyph& glyph, std::int64_t left, std::int64_t top, const CoverageTarget& target,
                const ComponentTable& contrast, SubPixelOrder order) {
    const Visible part(glyph, left, top, target);
    const int blue = order == SubPixelOrder::BGR ? 0 : 2;  // which third lights the blue component
    for (int row = part.fromY; row < part.toY; ++row) {
        const std::uint8_t* in = glyph.coverage.data() + (std::ptrdiff_t{row} * glyph.width + part.fromX) * 3;
        std::uint8_t* out = PixelAt(target, left + part.fromX, top + row);
        for (int i = part.fromX; i < part.toX; ++i, in += 3, out += 3) {
            out[0] = std::max(out[0], contrast[in[blue]]);
            out[1] = std::max(out[1], contrast[in[1]]);
            out[2] = std::max(out[2], contrast[in[2 - blue]]);
        }
    }
}

/// Tabs become blanks; other control characters vanish.
void CleanUp(std::u32string& line) {
    std::replace(line.begin(), line.end(), U'\t', U' ');
    std::erase_if(line, [](char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); });
}

int Rounded(std::int64_t sixtyFourths) { return static_cast<int>((sixtyFourths + 32) >> 6); }

}  // namespace

FreeTypeFont::FreeTypeFont(std::shared_ptr<FontLibrary> library, std::shared_ptr<FallbackList> fonts,
                           LogicalFont logical)
    : library_(std::move(library)),
      fonts_(std::move(fonts)),
      logical_(std::move(logical)),
      faces_(std::max<std::size_t>(fonts_->Size(), 1)),
      buffer_(hb_buffer_create()) {}

FreeTypeFont::~FreeTypeFont() { hb_buffer_destroy(buffer_); }

SizedFace& FreeTypeFont::Face(std::size_t font) {
    std::unique_ptr<SizedFace>& face = faces_[font];
    if (!face) {
        const FallbackFont& from = (*fonts_)[font];
        face = std::make_unique<SizedFace>(
            library_->Open(from.path, from.index),
            FaceStyle{logical_.pixelHeight, logical_.quality, from.embolden, from.slant});
    }
    return *face;
}

TextExtent FreeTypeFont::Measure(std::string_view line) {
    LayOut(line);
    return extent_;
}

void FreeTypeFont::Render(std::string_view line, int x, int baseline, const CoverageTarget& target) {
    LayOut(line);
    for (const Placed& at : placed_) {
        const Glyph& glyph = at.face->Drawn(at.glyph);
        const std::int64_t left = std::int64_t{x} + at.x + glyph.left;
        const std::int64_t top = std::int64_t{baseline} + at.y - glyph.top;
        if (logical_.quality == FontQuality::ClearType)
            DrawThirds(glyph, left, top, target, library_->ContrastTable(), library_->ClearType().order);
        else
            DrawGrey(glyph, left, top, target);
    }
}

void FreeTypeFont::LayOut(std::string_view line) {
    if (laidOut_ && line_ == line) return;
    laidOut_ = false;
    placed_.clear();
    extent_ = {};
    if (fonts_->Size() == 0) {  // no font at all: a line of the right height with nothing on it
        extent_.ascent = logical_.pixelHeight * 4 / 5;
        extent_.height = logical_.pixelHeight;
    } else {
        SizedFace& main = Face(0);
        extent_.ascent = main.Ascent();
        extent_.height = main.Ascent() + main.Descent();
        std::u32string characters = DecodeUtf8(line, MostCharacters);
        CleanUp(characters);
        std::int64_t pen = 0;
        for (const TextRun& run : SplitIntoRuns(characters, *fonts_)) AddRun(characters, run, pen);
        extent_.width = std::max(0, Rounded(pen));
    }
    line_ = line;
    laidOut_ = true;
}

void FreeTypeFont::AddRun(std::u32string_view line, const TextRun& run, std::int64_t& pen) {
    SizedFace& face = Face(run.font);
    if (!face.Usable()) return;
    hb_buffer_clear_contents(buffer_);
    hb_buffer_set_direction(buffer_, run.level % 2 != 0 ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer_, run.script);
    hb_buffer_add_utf32(buffer_, reinterpret_cast<const std::uint32_t*>(line.data()),
                        static_cast<int>(line.size()), static_cast<unsigned>(run.start),
                        static_cast<int>(run.length));
    face.Shape(buffer_);
    unsigned count = 0;
    const hb_glyph_info_t* glyphs = hb_buffer_get_glyph_infos(buffer_, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer_, &count);
    for (unsigned i = 0; i < count; ++i) {
        const Placed at{&face, glyphs[i].codepoint, Rounded(pen + positions[i].x_offset),
                        -Rounded(positions[i].y_offset)};
        GrowInk(face.Drawn(at.glyph), at);
        placed_.push_back(at);
        pen += positions[i].x_advance;
    }
}

void FreeTypeFont::GrowInk(const Glyph& glyph, const Placed& at) {
    if (glyph.width == 0 || glyph.rows == 0) return;
    const int left = at.x + glyph.left, top = at.y - glyph.top;
    extent_.inkLeft = std::min(extent_.inkLeft, left);
    extent_.inkTop = std::min(extent_.inkTop, top);
    extent_.inkRight = std::max(extent_.inkRight, left + glyph.width);
    extent_.inkBottom = std::max(extent_.inkBottom, top + glyph.rows);
}

}  // namespace tessaloom
