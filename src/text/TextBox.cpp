#include "text/TextBox.h"

#include "imaging/DIB.h"
#include "text/Replace.h"

#include <algorithm>

namespace tessaloom {
namespace {

constexpr ArrowWord Markers[] = {
    {"<TRENDUP>",     "\u2191"},
    {"<TRENDDOWN>",   "\u2193"},
    {"<TRENDSTEADY>", "\u2192"},
};

constexpr std::size_t MostPieces = 3000;  ///< Of a line: more than fit into the widest box.

/// The first marker in `text` and its place.
const ArrowWord* FirstMarker(std::string_view text, std::size_t& at) {
    const ArrowWord* first = nullptr;
    at = text.size();
    for (const ArrowWord& marker : Markers)
        if (const std::size_t found = FindTag(text.substr(0, at), marker.word); found < at) {
            first = &marker;
            at = found;
        }
    return first;
}

/// Cuts the first line off `text`.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = text.substr(0, end);
    const std::size_t marks = text.substr(end, 2) == "\r\n" ? 2 : 1;
    text.remove_prefix(std::min(end + marks, text.size()));
    return line;
}

}  // namespace

std::span<const ArrowWord> ArrowWords() { return Markers; }

TextBox::TextBox(std::string_view text, const LogicalFont& font, int column, Fonts& fonts)
    : fonts_(fonts),
      font_(fonts.Create(font)),
      arrow_{.faceName = "Symbol", .pixelHeight = font.pixelHeight, .quality = font.quality} {
    lineExtent_ = font_->Measure("");
    const std::size_t mostLines =
        static_cast<std::size_t>(LargestHeight / std::max(lineExtent_.height, 1)) + 1;
    while (!text.empty() && lines_.size() < mostLines) AddLine(TakeLine(text));
    Arrange(column);
}

void TextBox::AddLine(std::string_view text) {
    Line& line = lines_.emplace_back();
    while (!text.empty() && line.pieces.size() < MostPieces && line.width < LargestWidth) {
        std::size_t at = 0;
        const ArrowWord* marker = FirstMarker(text, at);
        if (at > 0) AddPiece(line, text.substr(0, at), false);
        if (marker) AddPiece(line, marker->arrow, true);
        text.remove_prefix(marker ? at + marker->word.size() : at);
    }
}

void TextBox::AddPiece(Line& line, std::string_view text, bool arrow) {
    if (arrow && !arrowFont_) arrowFont_ = fonts_.Create(arrow_);
    Piece piece{std::string(text), arrow, line.width, {}};
    piece.extent = FontOf(piece).Measure(text);
    line.width += piece.extent.width;
    line.pieces.push_back(std::move(piece));
}

void TextBox::Arrange(int column) {
    int widest = 0;
    for (const Line& line : lines_) widest = std::max(widest, line.width);
    int left = 0, top = 0, right = widest, bottom = static_cast<int>(lines_.size()) * lineExtent_.height;
    int lineTop = 0;
    for (Line& line : lines_) {
        line.left = (widest - line.width) * column / 2;
        line.baseline = lineTop + lineExtent_.ascent;
        lineTop += lineExtent_.height;
        for (const Piece& piece : line.pieces) {
            left = std::min(left, line.left + piece.x + piece.extent.inkLeft);
            right = std::max(right, line.left + piece.x + piece.extent.inkRight);
            top = std::min(top, line.baseline + piece.extent.inkTop);
            bottom = std::max(bottom, line.baseline + piece.extent.inkBottom);
        }
    }
    for (Line& line : lines_) {
        line.left -= left;
        line.baseline -= top;
    }
    width_ = std::min(right - left, LargestWidth);
    height_ = std::min(bottom - top, LargestHeight);
}

bool TextBox::Draw(DIB& coverage) const {
    if (width_ <= 0 || height_ <= 0) return false;
    coverage.SetWidthHeight(width_, height_);
    if (!coverage.DIBPtr()) return false;
    coverage.Clear(0);
    const CoverageTarget target{coverage.Row(0), width_, height_, -std::ptrdiff_t{coverage.Stride()}};
    for (const Line& line : lines_)
        for (const Piece& piece : line.pieces)
            FontOf(piece).Render(piece.text, line.left + piece.x, line.baseline, target);
    return true;
}

}  // namespace tessaloom
