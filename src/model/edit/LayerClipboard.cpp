#include <algorithm>
#include <map>

#include "model/CanvasFile.h"
#include "model/LongText.h"
#include "model/edit/LayerKeys.h"
#include "model/edit/LayerParts.h"
#include "model/edit/Layers.h"

/// Layers as text: sections as in the canvas file. The table of transparent colours is one key.
namespace tessaloom::Layers {

namespace {

constexpr std::string_view LongPrefix = "X-";
constexpr std::string_view TextPrefix = "Text", GraphicPrefix = "Graphic";

std::string PieceKey(std::size_t index) { return index == 0 ? "Text" : "Text" + std::to_string(index + 1); }

void AppendLine(std::string& text, std::string_view key, std::string_view value) {
    text.append(key).append("=").append(value).append("\n");
}

template <typename Layer>
void AppendLayer(std::string& text, const std::string& section, Layer& layer) {
    text.append("[").append(section).append("]\n");
    std::string longText;
    LayerKeys::ForEach(layer, [&](const auto& key, const auto& owner) {
        std::string value = key.write(owner);
        const bool lines = LongText::Needed(value);
        AppendLine(text, key.name, lines ? LongText::PlainForm(value) : value);
        if (lines && key.name == "Text") longText = std::move(value);
    });
    if (longText.empty()) return;
    text.append("[").append(LongPrefix).append(section).append("]\n");
    std::size_t index = 0;
    for (const std::string& piece : LongText::Pieces(longText)) AppendLine(text, PieceKey(index++), piece);
}

struct Section {
    std::string name;
    std::map<std::string, std::string, std::less<>> keys;

    std::string_view Value(std::string_view key) const {
        const auto found = keys.find(key);
        return found == keys.end() ? std::string_view() : std::string_view(found->second);
    }
};

/// The next line of `text`, without its end; `text` loses it.
std::string_view TakeLine(std::string_view& text) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::vector<Section> SectionsOf(std::string_view text) {
    std::vector<Section> sections;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        const auto equals = line.find('=');
        if (line.starts_with('[') && line.ends_with(']'))
            sections.push_back({std::string(line.substr(1, line.size() - 2)), {}});
        else if (equals != line.npos && !sections.empty())
            sections.back().keys.emplace(line.substr(0, equals), line.substr(equals + 1));
    }
    return sections;
}

bool IsLayer(const Section& section, std::string_view prefix) {
    std::string_view name = section.name;
    if (!name.starts_with(prefix) || section.Value("Enabled").empty()) return false;
    name.remove_prefix(prefix.size());
    return !name.empty() && name.find_first_not_of("0123456789") == name.npos;
}

/// The text with line breaks that belongs to a layer's section; "" when its text has none.
std::string LongTextOf(const std::vector<Section>& sections, const Section& layer) {
    const auto found = std::ranges::find(sections, std::string(LongPrefix) + layer.name, &Section::name);
    if (found == sections.end()) return {};
    std::string joined;
    for (std::size_t index = 0; !found->Value(PieceKey(index)).empty(); ++index)
        joined += found->Value(PieceKey(index));
    return LongText::Unescaped(joined);
}

/// Sets the keys that the section has; what it has not, or what is no value, keeps its default.
template <typename Layer>
void Fill(Layer& layer, const Section& section) {
    LayerKeys::ForEach(layer, [&](const auto& key, auto& owner) {
        const auto found = section.keys.find(key.name);
        if (found != section.keys.end() && key.judge(found->second) == KeyFault::None)
            key.read(owner, found->second);
    });
}

int PassOf(const Section& section) {
    int pass = 1;
    if (const std::string text(section.Value("Layer")); !text.empty()) Whole::Parse(text, pass);
    return std::clamp(pass, 0, Canvas::Passes - 1);
}

LayerId PasteText(Canvas& canvas, const Section& section, const std::string& longText) {
    const LayerId layer = parts::AddOnTop(canvas, LayerId::Kind::Text, PassOf(section));
    if (Text* const text = parts::TextOf(canvas, layer)) {
        Fill(*text, section);
        if (!longText.empty()) text->SetValue(longText);
    }
    return layer;
}

LayerId PasteGraphic(Canvas& canvas, const Section& section) {
    const LayerId layer = parts::AddOnTop(canvas, LayerId::Kind::Graphic, PassOf(section));
    if (Graphic* const graphic = parts::GraphicOf(canvas, layer)) {
        Fill(*graphic, section);
        LayerKeys::FollowFeedName(canvas, *graphic);
    }
    return layer;
}

}  // namespace

std::string Copy(const Canvas& canvas, std::span<const LayerId> layers) {
    std::string text;
    for (const LayerId layer : parts::Ordered(canvas, layers)) {
        if (Text* const part = parts::TextOf(canvas, layer))
            AppendLayer(text, CanvasFile::TextSection(layer.slot), *part);
        else if (Graphic* const graphic = parts::GraphicOf(canvas, layer))
            AppendLayer(text, CanvasFile::GraphicSection(layer.slot), *graphic);
    }
    return text;
}

std::vector<LayerId> Paste(Canvas& canvas, std::string_view text, int offset) {
    const std::vector<Section> sections = SectionsOf(text);
    std::vector<LayerId> layers;
    for (const Section& section : sections) {
        LayerId layer;
        if (IsLayer(section, TextPrefix))
            layer = PasteText(canvas, section, LongTextOf(sections, section));
        else if (IsLayer(section, GraphicPrefix))
            layer = PasteGraphic(canvas, section);
        if (layer.slot != 0) layers.push_back(layer);
    }
    Move(canvas, layers, offset, offset);
    return layers;
}

}  // namespace tessaloom::Layers
