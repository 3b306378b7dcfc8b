#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "imaging/Alignment.h"
#include "model/edit/CanvasRecord.h"
#include "model/edit/LayerKeys.h"
#include "model/edit/LayerParts.h"
#include "model/edit/Layers.h"

namespace tessaloom::Layers {

namespace {

constexpr int White = 0xFFFFFF, Black = 0, Grey = 0x808080;
constexpr float FirstFontSize = 24;  // points
constexpr int Smooth = 1;            // Text::FontSmoothing

/// The lightness, 0 .. 255, of a colour 0x00BBGGRR; by ITU-R BT.601.
int Lightness(int colour) {
    return (299 * (colour & 0xFF) + 587 * (colour >> 8 & 0xFF) + 114 * (colour >> 16 & 0xFF)) / 1000;
}

/// The mean lightness of what the canvas shows where a text at `x`, `y` will lie.
int LightnessAt(const Canvas& canvas, int x, int y) {
    constexpr int Width = 160, Height = 32, Step = 4;  // pixels
    const DIB& picture = canvas.Picture();
    if (!picture.DIBPtr()) return Lightness(canvas.BackgroundColor());
    int sum = 0, count = 0;
    for (int row = std::max(y, 0); row < std::min(y + Height, picture.Height()); row += Step)
        for (int column = std::max(x, 0); column < std::min(x + Width, picture.Width()); column += Step) {
            sum += Lightness(picture.Pixel(column, row));
            ++count;
        }
    return count == 0 ? Lightness(canvas.BackgroundColor()) : sum / count;
}

/// Seconds between two refreshes of a new layer.
double FirstRate(Graphic::Source source) {
    switch (source) {
        case Graphic::VideoFeed:
            return 0.1;
        case Graphic::Address:
            return 60;
        case Graphic::OtherCanvas:
            return 1;
        default:
            return 10;
    }
}

void SetSource(Canvas& canvas, Graphic& graphic, Graphic::Source source, std::string_view name) {
    graphic.SetSourceType(source);
    graphic.SetRate(FirstRate(source));
    if (source == Graphic::VideoFeed) {
        graphic.SetSourceVideoFeedName(name);
        LayerKeys::FollowFeedName(canvas, graphic);
    } else if (source == Graphic::PictureFile) {
        graphic.SetSourceFileName(name);
    } else if (source == Graphic::Address) {
        graphic.SetSourceURL(name);
    } else if (source == Graphic::OtherCanvas) {
        int slot = 1;
        std::from_chars(name.data(), name.data() + name.size(), slot);
        graphic.SetSourceCanvas(slot);
    }
}

void StretchTo(Graphic& graphic, int width, int height) {
    if (graphic.SourceType() != Graphic::PlainBlock && !graphic.Stretched()) {
        graphic.SetStretched(true);
        graphic.SetStretchSmoothing(true);
    }
    graphic.SetStretchWidth(std::max(width, 1));
    graphic.SetStretchHeight(std::max(height, 1));
}

/// A picture larger than the canvas is made to fit; a block gets a part of it. known: 0 when the picture has
/// to be loaded for it.
void ChooseSize(const Canvas& canvas, Graphic& graphic, PixelSize known) {
    if (graphic.SourceType() == Graphic::PlainBlock) {
        graphic.SetBackgroundColor(Grey);
        StretchTo(graphic, canvas.Width() / 3, canvas.Height() / 4);
    }
    const bool later = graphic.SourceType() == Graphic::Address || known.width > 0;
    if (!later) graphic.UpdateImage();
    const int width = later ? known.width : graphic.Width(), height = later ? known.height : graphic.Height();
    if (width <= canvas.Width() && height <= canvas.Height()) return;
    const double scale = std::min(1.0 * canvas.Width() / width, 1.0 * canvas.Height() / height);
    StretchTo(graphic, static_cast<int>(width * scale + 0.5), static_cast<int>(height * scale + 0.5));
    if (!later) graphic.UpdateImage();
}

int Rounded(double position) {
    constexpr double Farthest = 100000;  // beyond all that layers can be set to
    return static_cast<int>(std::lround(std::clamp(position, -Farthest, Farthest)));
}

/// Puts the layer's upright frame, of that size, so that its middle pixel is `column`, `row`.
template <typename Layer>
void Centre(Layer& layer, PixelSize frame, int column, int row) {
    const Offset offset = AlignmentOffset(layer.Alignment(), frame.width, frame.height);
    layer.Setx(column - frame.width / 2 - offset.x);
    layer.SetY(row - frame.height / 2 - offset.y);
}

/// Where an extent of `size` begins that was asked for as `first` .. `first` + `asked`: an edge that stays
/// where it was (`oldFirst`, `oldSize`) stays.
double FirstOf(double size, double first, double asked, double oldFirst, double oldSize) {
    const double last = first + asked;
    const bool keepsLast = std::abs(last - oldFirst - oldSize) < std::abs(first - oldFirst);
    return keepsLast ? last - size : first;
}

void ResizeText(Text& text, const Geometry& before, double height) {
    if (before.height <= 0) return;
    constexpr double Steps = 10;  // of a point
    const double points = static_cast<double>(text.FontSize()) * height / before.height;
    text.SetFontSize(static_cast<float>(std::clamp(std::round(points * Steps) / Steps, 1.0, 1000.0)));
    text.UpdateImage();  // its new size is needed at once
}

std::vector<LayerId> AddCopies(Canvas& canvas, const std::vector<std::pair<LayerId, KeyTexts>>& originals) {
    std::vector<LayerId> copies;
    for (const auto& [original, texts] : originals) {
        const LayerId copy = parts::AddOnTop(canvas, original.kind, Pass(canvas, original));
        if (copy.slot == 0) continue;
        SetTexts(canvas, copy, texts);
        copies.push_back(copy);
    }
    return copies;
}

}  // namespace

std::optional<LayerId> AddText(Canvas& canvas, std::string_view value, int x, int y, int pass) {
    const LayerId layer = parts::AddOnTop(canvas, LayerId::Kind::Text, pass);
    Text* const text = parts::TextOf(canvas, layer);
    if (!text) return std::nullopt;
    constexpr int MiddleLightness = 140;
    text->SetValue(value);
    text->SetFontSize(FirstFontSize);
    text->SetFontSmoothing(Smooth);
    text->SetColor(LightnessAt(canvas, x, y) < MiddleLightness ? White : Black);
    text->Setx(x);
    text->SetY(y);
    text->ProcessText();
    text->UpdateImage();
    return layer;
}

std::optional<LayerId> AddGraphic(Canvas& canvas, Graphic::Source source, std::string_view sourceName, int x,
                                  int y, int pass, PixelSize known) {
    const LayerId layer = parts::AddOnTop(canvas, LayerId::Kind::Graphic, pass);
    Graphic* const graphic = parts::GraphicOf(canvas, layer);
    if (!graphic) return std::nullopt;
    graphic->Setx(x);
    graphic->SetY(y);
    SetSource(canvas, *graphic, source, sourceName);
    ChooseSize(canvas, *graphic, known);
    return layer;
}

void Remove(Canvas& canvas, std::span<const LayerId> layers) {
    for (const LayerId layer : layers) RemoveLayer(canvas, layer);
}

std::vector<LayerId> Duplicate(Canvas& canvas, std::span<const LayerId> layers, int offset) {
    std::vector<std::pair<LayerId, KeyTexts>> originals;
    for (const LayerId layer : parts::Ordered(canvas, layers))
        originals.emplace_back(layer, TextsOf(canvas, layer));
    const std::vector<LayerId> copies = AddCopies(canvas, originals);
    Move(canvas, copies, offset, offset);
    return copies;
}

void Move(Canvas& canvas, std::span<const LayerId> layers, int dx, int dy) {
    for (const LayerId layer : layers)
        parts::With(canvas, layer, [&](auto& part) {
            parts::ChangeLook(part, [&] {
                part.Setx(part.x() + dx);
                part.SetY(part.Y() + dy);
            });
        });
}

void Resize(Canvas& canvas, LayerId layer, double left, double top, double width, double height) {
    const auto before = GeometryOf(canvas, layer);
    if (!before || !(width > 0) || !(height > 0)) return;
    if (Text* const text = parts::TextOf(canvas, layer)) ResizeText(*text, *before, height);
    if (Graphic* const graphic = parts::GraphicOf(canvas, layer))
        graphic->ChangeLook([&] { StretchTo(*graphic, Rounded(width), Rounded(height)); });
    const Geometry now = *GeometryOf(canvas, layer);
    double centreX = left + width / 2, centreY = top + height / 2;
    if (now.angle == 0) {
        centreX = FirstOf(now.width, left, width, before->left, before->width) + now.width / 2;
        centreY = FirstOf(now.height, top, height, before->top, before->height) + now.height / 2;
    }
    const PixelSize frame{now.right - now.left, now.bottom - now.top};
    parts::With(canvas, layer, [&](auto& part) {
        parts::ChangeLook(part, [&] {
            Centre(part, frame, Rounded(centreX - frame.width / 2.0) + frame.width / 2,
                   Rounded(centreY - frame.height / 2.0) + frame.height / 2);
        });
    });
}

void Rotate(Canvas& canvas, LayerId layer, double degrees) {
    const auto before = GeometryOf(canvas, layer);
    if (!before || !std::isfinite(degrees)) return;
    double angle = std::fmod(degrees, 360.0);
    if (angle < 0) angle += 360;
    const int width = static_cast<int>(before->width), height = static_cast<int>(before->height);
    // The middle pixel, not the exact centre, so that many small turns do not shift the layer.
    const int column = before->left + (before->right - before->left) / 2;
    const int row = before->top + (before->bottom - before->top) / 2;
    parts::With(canvas, layer, [&](auto& part) {
        parts::ChangeLook(part, [&] { part.SetRotationAngle(static_cast<float>(angle)); });
        const auto set = std::fmod(static_cast<double>(part.RotationAngle()), 360.0);
        if (width == 0) return;
        const PixelSize frame = parts::TurnedSize(width, height, set);
        parts::ChangeLook(part, [&] { Centre(part, frame, column, row); });
    });
}

}  // namespace tessaloom::Layers
