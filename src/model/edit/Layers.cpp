#include "model/edit/Layers.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/Log.h"
#include "imaging/Alignment.h"
#include "imaging/pixelops/Rotation.h"
#include "model/Canvas.h"
#include "model/edit/LayerParts.h"
#include "platform/Ascii.h"
#include "platform/Paths.h"
#include "platform/TextEncoding.h"
#include "text/Text.h"

namespace tessaloom::Layers {

namespace {

constexpr std::size_t TitleLength = 60;  ///< Characters at most.

struct Size {
    int width = 0, height = 0;
};

Size UnturnedSize(Text& text) {
    if (text.Width() == 0) return {};
    const DIB& picture = text.Image().GetStretchedDIB();
    return {picture.Width(), picture.Height()};
}

/// What has been set but not yet drawn counts, where the settings alone tell the size.
Size UnturnedSize(Graphic& graphic) {
    const Size stretched = {std::max(graphic.StretchWidth(), 1), std::max(graphic.StretchHeight(), 1)};
    if (graphic.SourceType() == Graphic::PlainBlock) return stretched;
    const DIB& picture = graphic.Image().GetStretchedDIB();
    if (!picture.DIBPtr()) return {};
    return graphic.Stretched() ? stretched : Size{picture.Width(), picture.Height()};
}

template <typename Layer>
Geometry FindGeometry(Layer& layer) {
    const Size size = UnturnedSize(layer);
    const double angle = std::fmod(static_cast<double>(layer.RotationAngle()), 360.0);
    const PixelSize frame = size.width == 0 ? PixelSize() : parts::TurnedSize(size.width, size.height, angle);
    const Offset offset = AlignmentOffset(layer.Alignment(), frame.width, frame.height);
    Geometry geometry;
    geometry.left = layer.x() + offset.x;
    geometry.top = layer.Y() + offset.y;
    geometry.right = geometry.left + frame.width;
    geometry.bottom = geometry.top + frame.height;
    geometry.centreX = geometry.left + frame.width / 2.0;
    geometry.centreY = geometry.top + frame.height / 2.0;
    geometry.width = size.width;
    geometry.height = size.height;
    geometry.angle = angle;
    return geometry;
}

bool Hits(const Geometry& geometry, double x, double y) {
    const double radians = geometry.angle * std::numbers::pi / 180;
    const double dx = x - geometry.centreX, dy = y - geometry.centreY;
    const double across = dx * std::cos(radians) - dy * std::sin(radians);
    const double down = dx * std::sin(radians) + dy * std::cos(radians);
    return std::abs(across) <= geometry.width / 2 && std::abs(down) <= geometry.height / 2;
}

/// The first line with anything on it, cut at a whole character.
std::string FirstLine(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(ascii::WhiteSpace), text.size()));
    text = text.substr(0, text.find_first_of("\r\n"));
    const std::string_view title = FirstCharacters(text, TitleLength);
    return std::string(title) + (title.size() < text.size() ? "..." : "");
}

std::string Named(std::string_view kind, const std::string& name) {
    return name.empty() ? std::string(kind) : std::string(kind) + ": " + name;
}

std::string TitleOf(const Graphic& graphic) {
    switch (graphic.SourceType()) {
        case Graphic::VideoFeed:
            return Named("Camera", FirstLine(MaskSecrets(graphic.SourceVideoFeedName())));
        case Graphic::PictureFile:
            return Named("Picture", FirstLine(FileName(graphic.SourceFileName())));
        case Graphic::Address:
            return Named("Web", FirstLine(MaskSecrets(graphic.SourceURL())));
        case Graphic::OtherCanvas:
            return "Canvas " + std::to_string(graphic.SourceCanvas());
        default:
            return "Block";
    }
}

}  // namespace

bool Exists(const Canvas& canvas, LayerId layer) {
    return parts::With(canvas, layer, [](auto&) { return true; });
}

bool Enabled(const Canvas& canvas, LayerId layer) {
    return parts::With(canvas, layer, [](auto& part) { return part.Enabled(); });
}

int Pass(const Canvas& canvas, LayerId layer) {
    return parts::With(canvas, layer, [](auto& part) { return part.Layer(); });
}

std::string Title(const Canvas& canvas, LayerId layer) {
    if (const Graphic* graphic = parts::GraphicOf(canvas, layer)) return TitleOf(*graphic);
    const Text* const text = parts::TextOf(canvas, layer);
    if (!text) return {};
    const std::string line = FirstLine(text->Value());
    return line.empty() ? "Text" : line;
}

std::string Counted(std::span<const LayerId> layers) {
    const auto texts = std::ranges::count(layers, LayerId::Kind::Text, &LayerId::kind);
    const auto count = std::ssize(layers);
    const std::string_view kind = texts == count ? "text " : texts == 0 ? "picture " : "";
    return std::to_string(count).append(" ").append(kind).append(count == 1 ? "layer" : "layers");
}

std::vector<LayerId> InDrawingOrder(const Canvas& canvas) {
    std::vector<LayerId> layers;
    for (int pass = 0; pass < Canvas::Passes; ++pass)
        for (const LayerId::Kind kind : {LayerId::Kind::Graphic, LayerId::Kind::Text})
            for (const int slot : parts::SlotsOf(canvas, kind, pass)) layers.push_back({kind, slot});
    return layers;
}

std::optional<Geometry> GeometryOf(const Canvas& canvas, LayerId layer) {
    return parts::With(canvas, layer, [](auto& part) { return std::optional(FindGeometry(part)); });
}

std::vector<LayerId> At(const Canvas& canvas, double x, double y) {
    std::vector<LayerId> layers = InDrawingOrder(canvas);
    std::erase_if(layers, [&](LayerId layer) {
        return !Enabled(canvas, layer) || !Hits(*GeometryOf(canvas, layer), x, y);
    });
    std::ranges::reverse(layers);
    return layers;
}

std::vector<LayerId> Within(const Canvas& canvas, double left, double top, double right, double bottom) {
    std::vector<LayerId> layers = InDrawingOrder(canvas);
    std::erase_if(layers, [&](LayerId layer) {
        if (!Enabled(canvas, layer)) return true;
        const Geometry frame = *GeometryOf(canvas, layer);
        return frame.left < left || frame.top < top || frame.right > right || frame.bottom > bottom;
    });
    return layers;
}

}  // namespace tessaloom::Layers
