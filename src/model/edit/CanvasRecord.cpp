#include "model/edit/CanvasRecord.h"

#include <algorithm>

#include "model/Canvas.h"
#include "model/edit/LayerKeys.h"

namespace tessaloom {

namespace {

/// Long enough for all keys of a layer, so that a record of one takes memory once.
constexpr std::size_t UsualKeys = 56;

bool Exists(const Canvas& canvas, LayerId id) {
    return id.slot == 0 || (id.kind == LayerId::Kind::Text ? canvas.Text(id.slot) != nullptr
                                                           : canvas.Graphic(id.slot) != nullptr);
}

/// Calls `visit(key, owner)` for each key of a part that exists.
template <typename Visit>
void ForEachKey(Canvas& canvas, LayerId id, Visit visit) {
    if (id.slot == 0)
        LayerKeys::ForEach(canvas, visit);
    else if (id.kind == LayerId::Kind::Text)
        LayerKeys::ForEach(*canvas.Text(id.slot), visit);
    else
        LayerKeys::ForEach(*canvas.Graphic(id.slot), visit);
}

void FollowFeedName(Canvas& canvas, LayerId id) {
    if (id.kind == LayerId::Kind::Graphic && id.slot != 0)
        LayerKeys::FollowFeedName(canvas, *canvas.Graphic(id.slot));
}

void SetKeys(Canvas& canvas, const CanvasChange::Part& part, CanvasChange::Direction direction) {
    auto change = part.keys.begin();
    std::size_t index = 0;
    bool feedNamed = false;
    ForEachKey(canvas, part.id, [&](const auto& key, auto& owner) {
        if (change == part.keys.end() || index++ != change->index) return;
        key.read(owner, direction == CanvasChange::Direction::Back ? change->before : change->after);
        feedNamed |= key.name == "SourceVideoFeedName";
        ++change;
    });
    if (feedNamed) FollowFeedName(canvas, part.id);
}

std::vector<CanvasChange::KeyChange> Differences(const KeyTexts& before, const KeyTexts& after) {
    std::vector<CanvasChange::KeyChange> keys;
    for (std::size_t index = 0; index < std::min(before.size(), after.size()); ++index)
        if (before[index] != after[index]) keys.push_back({index, before[index], after[index]});
    return keys;
}

void AppendKeys(std::vector<CanvasChange::KeyChange>& keys, std::vector<CanvasChange::KeyChange> later) {
    for (CanvasChange::KeyChange& change : later) {
        const auto same = std::ranges::find(keys, change.index, &CanvasChange::KeyChange::index);
        if (same == keys.end())
            keys.push_back(std::move(change));
        else
            same->after = std::move(change.after);
    }
    std::erase_if(keys, [](const auto& change) { return change.before == change.after; });
    std::ranges::sort(keys, {}, &CanvasChange::KeyChange::index);
}

}  // namespace

KeyTexts TextsOf(const Canvas& canvas, LayerId layer) {
    KeyTexts texts;
    texts.reserve(UsualKeys);
    // Nothing is changed: the keys are visited for owners that may be, as loading does it.
    ForEachKey(const_cast<Canvas&>(canvas), layer,
               [&](const auto& key, const auto& owner) { texts.push_back(key.write(owner)); });
    return texts;
}

void SetTexts(Canvas& canvas, LayerId layer, const KeyTexts& texts) {
    auto text = texts.begin();
    ForEachKey(canvas, layer, [&](const auto& key, auto& owner) {
        if (text != texts.end()) key.read(owner, *text++);
    });
    FollowFeedName(canvas, layer);
}

void AddLayer(Canvas& canvas, LayerId layer) {
    if (layer.kind == LayerId::Kind::Text)
        canvas.AddText(layer.slot);
    else
        canvas.AddGraphic(layer.slot);
}

void RemoveLayer(Canvas& canvas, LayerId layer) {
    if (layer.kind == LayerId::Kind::Text)
        canvas.RemoveText(layer.slot);
    else
        canvas.RemoveGraphic(layer.slot);
}

CanvasRecord CanvasRecord::Of(const Canvas& canvas) {
    CanvasRecord record;
    for (const LayerId::Kind kind : {LayerId::Kind::Text, LayerId::Kind::Graphic})
        for (int slot = kind == LayerId::Kind::Text ? 0 : 1; slot <= Canvas::MaxText; ++slot)
            if (const LayerId id{kind, slot}; Exists(canvas, id))
                record.parts.push_back({id, TextsOf(canvas, id)});
    return record;
}

CanvasChange CanvasChange::Between(const CanvasRecord& before, const CanvasRecord& after) {
    CanvasChange change;
    auto old = before.parts.begin();
    auto now = after.parts.begin();
    while (old != before.parts.end() || now != after.parts.end()) {
        const bool went = now == after.parts.end() || (old != before.parts.end() && old->id < now->id);
        const bool came = old == before.parts.end() || (now != after.parts.end() && now->id < old->id);
        if (went) {
            change.parts.push_back({old->id, old->texts, std::nullopt, {}});
        } else if (came) {
            change.parts.push_back({now->id, std::nullopt, now->texts, {}});
        } else if (auto keys = Differences(old->texts, now->texts); !keys.empty()) {
            change.parts.push_back({now->id, std::nullopt, std::nullopt, std::move(keys)});
        }
        if (!came) ++old;
        if (!went) ++now;
    }
    return change;
}

bool CanvasChange::KeysOnly() const {
    return std::ranges::none_of(parts, [](const Part& part) { return part.before || part.after; });
}

void CanvasChange::Append(CanvasChange later) {
    for (Part& part : later.parts) {
        const auto same = std::ranges::find(parts, part.id, &Part::id);
        if (same == parts.end())
            parts.push_back(std::move(part));
        else
            AppendKeys(same->keys, std::move(part.keys));
    }
    std::erase_if(parts, [](const Part& part) { return part.keys.empty(); });
}

void CanvasChange::Apply(Canvas& canvas, Direction direction) const {
    for (const Part& part : parts) {
        const auto& wanted = direction == Direction::Back ? part.before : part.after;
        const bool exists = Exists(canvas, part.id);
        if (!part.keys.empty()) {
            if (exists) SetKeys(canvas, part, direction);
        } else if (!wanted) {
            RemoveLayer(canvas, part.id);
        } else if (!exists) {
            AddLayer(canvas, part.id);
            SetTexts(canvas, part.id, *wanted);
        }
    }
}

}  // namespace tessaloom
