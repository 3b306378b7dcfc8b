#include "model/edit/LayerKeys.h"

#include <optional>
#include <vector>

namespace tessaloom::LayerKeys {

namespace {

constexpr int GroupSize = 4;
constexpr std::string_view Between = "; ";

using Group = std::array<int, GroupSize>;

/// The next word of `text`, which loses it.
std::string TakeWord(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const std::string word(text.substr(0, text.find(' ')));
    text.remove_prefix(word.size());
    return word;
}

struct Parsed {
    std::vector<Group> groups;
    KeyFault fault = KeyFault::None;
};

KeyFault ParseGroup(std::string_view text, Group& group) {
    for (int position = 0; position < GroupSize; ++position) {
        int& value = group[static_cast<std::size_t>(position)];
        const bool percent = Image::IsPercent(position);
        const KeyFault fault =
            percent ? Whole::Parse(TakeWord(text), value) : Colour::Parse(TakeWord(text), value);
        if (fault != KeyFault::None) return fault;
        const int clamped = Clamped(value, {0, percent ? 100 : Graphic::LargestColor});
        if (clamped != value) return KeyFault::OutOfRange;
    }
    return TakeWord(text).empty() ? KeyFault::None : KeyFault::NotANumber;
}

Parsed Parse(std::string_view text) {
    Parsed parsed;
    while (!text.empty() && parsed.groups.size() < static_cast<std::size_t>(Image::LargestColorCount)) {
        const auto end = std::min(text.find(Between.front()), text.size());
        Group group{};
        parsed.fault = ParseGroup(text.substr(0, end), group);
        if (parsed.fault != KeyFault::None) break;
        parsed.groups.push_back(group);
        text.remove_prefix(std::min(end + Between.size(), text.size()));
    }
    return parsed;
}

}  // namespace

KeyFault ColourTableText::Judge(const std::string& text) { return Parse(text).fault; }

KeyFault ColourTableText::Read(Graphic& graphic, const std::string& text) {
    const Parsed parsed = Parse(text);
    graphic.SetTransparentColorCount(static_cast<int>(parsed.groups.size()));
    int position = 0;
    for (const Group& group : parsed.groups)
        for (const int value : group) graphic.SetTransparentColorTable(position++, value);
    return parsed.fault;
}

std::string ColourTableText::Write(const Graphic& graphic) {
    std::string text;
    for (int position = 0; position < graphic.TransparentColorCount() * GroupSize; ++position) {
        if (position > 0) text += position % GroupSize == 0 ? Between : " ";
        const int value = graphic.TransparentColorTable(position);
        text += Image::IsPercent(position) ? Whole::Write(value) : Colour::Write(value);
    }
    return text;
}

void FollowFeedName(Canvas& canvas, Graphic& graphic) {
    if (graphic.SourceVideoFeedName().empty())
        graphic.SetSourceVideoFeed(0);
    else
        canvas.FindFeeds();
}

}  // namespace tessaloom::LayerKeys
