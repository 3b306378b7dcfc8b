#pragma once

#include "platform/Fonts.h"
#include "platform/text/FallbackList.h"
#include "platform/text/SizedFace.h"
#include "platform/text/TextRuns.h"

#include <hb.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// A logical font with its stand-ins, opened as they are needed.
class FreeTypeFont : public Font {
public:
    /// A longer line is cut: at the smallest sizes this still reaches across the widest canvas.
    static constexpr std::size_t MostCharacters = 8192;

    FreeTypeFont(std::shared_ptr<FontLibrary> library, std::shared_ptr<FallbackList> fonts,
                 LogicalFont logical);
    ~FreeTypeFont() override;
    FreeTypeFont(const FreeTypeFont&) = delete;
    FreeTypeFont& operator=(const FreeTypeFont&) = delete;

    TextExtent Measure(std::string_view line) override;
    void Render(std::string_view line, int x, int baseline, const CoverageTarget& target) override;

private:
    struct Placed {
        SizedFace* face;
        std::uint32_t glyph;
        int x, y;  ///< Of the pen, from the line's origin, y downwards.
    };

    SizedFace& Face(std::size_t font);
    void LayOut(std::string_view line);
    void AddRun(std::u32string_view line, const TextRun& run, std::int64_t& pen);
    void GrowInk(const Glyph& glyph, const Placed& at);

    std::shared_ptr<FontLibrary> library_;
    std::shared_ptr<FallbackList> fonts_;
    LogicalFont logical_;
    std::vector<std::unique_ptr<SizedFace>> faces_;
    hb_buffer_t* buffer_;

    // The line laid out last: it is measured first and then drawn.
    std::string line_;
    bool laidOut_ = false;
    TextExtent extent_;
    std::vector<Placed> placed_;
};

}  // namespace tessaloom
