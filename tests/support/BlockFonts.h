#pragma once

#include "platform/Fonts.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// Fonts whose every character is a full block, half as wide as it is high. Notes what is drawn.
class BlockFonts : public Fonts {
public:
    struct Drawn {
        LogicalFont font;
        std::string line;
        int x, baseline;
    };

    std::shared_ptr<Font> Create(const LogicalFont& logical) override {
        return std::make_shared<Block>(*this, logical);
    }
    void SetClearType(const ClearTypeSettings& settings) override { settings_ = settings; }
    ClearTypeSettings ClearType() const override { return settings_; }
    std::vector<std::string> FaceNames() const override { return {"Block"}; }

    /// What was drawn since the last call.
    std::vector<Drawn> TakeDrawn() { return std::exchange(drawn_, {}); }

private:
    class Block : public Font {
    public:
        Block(BlockFonts& owner, LogicalFont logical) : owner_(owner), logical_(std::move(logical)) {}

        TextExtent Measure(std::string_view line) override {
            const auto characters =
                std::count_if(line.begin(), line.end(), [](char c) { return (c & 0xC0) != 0x80; });
            const int width = static_cast<int>(characters) * logical_.pixelHeight / 2;
            const int ascent = logical_.pixelHeight * 3 / 4;
            return {width, ascent, logical_.pixelHeight, 0, -ascent, width, logical_.pixelHeight - ascent};
        }

        void Render(std::string_view line, int x, int baseline, const CoverageTarget& target) override {
            owner_.drawn_.push_back({logical_, std::string(line), x, baseline});
            const TextExtent extent = Measure(line);
            for (int row = std::max(0, baseline - extent.ascent);
                 row < std::min(target.height, baseline + extent.height - extent.ascent); ++row)
                for (int i = std::max(0, x); i < std::min(target.width, x + extent.width); ++i)
                    std::fill_n(target.topRow + row * target.rowBytes + i * 3, 3, std::uint8_t{255});
        }

    private:
        BlockFonts& owner_;
        LogicalFont logical_;
    };

    ClearTypeSettings settings_;
    std::vector<Drawn> drawn_;
};

}  // namespace tessaloom::testing
