#pragma once

#include "platform/Fonts.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

class DIB;

/// A word that is drawn as an arrow.
struct ArrowWord {
    std::string_view word;
    std::string_view arrow;  ///< UTF-8.
};
std::span<const ArrowWord> ArrowWords();

/// A text laid out in lines, ready to be drawn as coverage.
///
/// Lines end at CR, LF or both. The words "<TRENDUP>", "<TRENDDOWN>" and "<TRENDSTEADY>", in any case, are
/// drawn as arrows of the "Symbol" face in the text's height.
class TextBox {
public:
    static constexpr int LargestWidth = 3000;
    static constexpr int LargestHeight = 2000;

    /// `column`: the side along which the lines are aligned: 0 left, 1 centre, 2 right.
    TextBox(std::string_view text, const LogicalFont& font, int column, Fonts& fonts);

    /// The box of all lines, grown to hold glyphs that stick out, at most the largest size. 0 x 0 without
    /// text.
    int Width() const { return width_; }
    int Height() const { return height_; }

    /// Gives `coverage` the box's size and draws the text into it; false when there is nothing to draw.
    bool Draw(DIB& coverage) const;

private:
    /// A stretch of a line in one font.
    struct Piece {
        std::string text;
        bool arrow;
        int x = 0;  ///< From the line's left end.
        TextExtent extent;
    };
    struct Line {
        std::vector<Piece> pieces;
        int width = 0;
        int left = 0, baseline = 0;  ///< In the box.
    };

    void AddLine(std::string_view text);
    void AddPiece(Line& line, std::string_view text, bool arrow);
    void Arrange(int column);
    Font& FontOf(const Piece& piece) const { return piece.arrow ? *arrowFont_ : *font_; }

    Fonts& fonts_;
    std::shared_ptr<Font> font_;
    LogicalFont arrow_;
    std::shared_ptr<Font> arrowFont_;  ///< Made when the first arrow comes.
    std::vector<Line> lines_;
    TextExtent lineExtent_;
    int width_ = 0, height_ = 0;
};

}  // namespace tessaloom
