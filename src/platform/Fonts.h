#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// How glyphs are smoothed. The numbers are those of a logical font's quality.
enum class FontQuality {
    NonAntialiased = 3,  ///< Coverage is 0 or 255.
    Antialiased = 4,     ///< One grey coverage for all three components.
    ClearType = 5,       ///< A coverage of its own for each component (sub-pixels of a flat panel).
};

/// The font that a text asks for. What is really drawn is the nearest that is installed.
struct LogicalFont {
    std::string faceName;  ///< UTF-8; the first 31 characters count.
    int pixelHeight = 19;  ///< Em height in pixels, 1 .. 1000.
    bool bold = false;
    bool italic = false;
    FontQuality quality = FontQuality::NonAntialiased;

    bool operator==(const LogicalFont&) const = default;
};

/// Which end of a pixel its red third lies at. The numbers are those of the settings file.
enum class SubPixelOrder { BGR = 0, RGB = 1 };

/// What `FontQuality::ClearType` needs to know of the screen.
struct ClearTypeSettings {
    int contrast = 1400;  ///< 1000 (none) .. 2200 (strongest)
    SubPixelOrder order = SubPixelOrder::RGB;

    bool operator==(const ClearTypeSettings&) const = default;
};

/// The size of one line of text, in pixels. The origin is the left end of its baseline; y grows downwards.
struct TextExtent {
    int width = 0;   ///< The advance of the whole line.
    int ascent = 0;  ///< From the line's top to its baseline, by the font asked for.
    int height = 0;  ///< Of the line, likewise.
    /// What the glyphs really cover, which may stick out of the above (slanted letters, stacked accents).
    int inkLeft = 0, inkTop = 0, inkRight = 0, inkBottom = 0;
};

/// Where coverage is drawn: three bytes a pixel (blue, green, red), 0 none .. 255 full.
struct CoverageTarget {
    std::uint8_t* topRow = nullptr;
    int width = 0, height = 0;
    std::ptrdiff_t rowBytes = 0;  ///< From a row to the one beneath it; negative for a bottom-up bitmap.
};

/// One font, ready to draw. Lines are UTF-8; what is not valid becomes U+FFFD, control characters vanish.
///
/// A character that the face lacks comes from another installed one, else as that face's empty box.
class Font {
public:
    virtual ~Font() = default;

    virtual TextExtent Measure(std::string_view line) = 0;

    /// Draws `line` with its origin at (x, baseline). Pixels keep the larger coverage; all is clipped.
    virtual void Render(std::string_view line, int x, int baseline, const CoverageTarget& target) = 0;
};

/// The fonts of this machine. For one thread.
class Fonts {
public:
    virtual ~Fonts() = default;

    /// The font for `logical`. The ones asked for last are kept ready, so asking again is cheap.
    virtual std::shared_ptr<Font> Create(const LogicalFont& logical) = 0;

    /// Applies to what is drawn from now on, by fonts made before as well.
    virtual void SetClearType(const ClearTypeSettings& settings) = 0;
    virtual ClearTypeSettings ClearType() const = 0;

    /// The names of the installed faces, sorted, each once.
    virtual std::vector<std::string> FaceNames() const = 0;
};

}  // namespace tessaloom
