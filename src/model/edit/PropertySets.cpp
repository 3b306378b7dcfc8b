#include <algorithm>

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "model/edit/JointSet.h"
#include "model/edit/KeySet.h"
#include "model/edit/LayerProperties.h"
#include "model/edit/OutputProperties.h"
#include "model/edit/PortfolioProperties.h"
#include "model/edit/PropertySet.h"

namespace tessaloom::PropertySets {

namespace {

using Set = std::unique_ptr<PropertySet>;
using Setting = std::function<void()>;

/// A rate or base time that a person sets counts from now on, not only from the next time on that lies ahead.
bool IsTiming(std::string_view name) {
    return name == "Interval" || name.ends_with("Rate") || name.ends_with("BaseTime");
}

/// A layer that is shown again, or shows something else, is to be asked at once.
bool IsLook(std::string_view name) { return name != "Enabled" && !name.starts_with("Source"); }

/// The canvas of `slot` while it is in use.
Canvas* CanvasOf(Portfolio& portfolio, int slot) {
    if (slot < 1 || slot > Portfolio::MaxCanvas) return nullptr;
    Canvas& canvas = portfolio.Canvas(slot);
    return canvas.Enabled() ? &canvas : nullptr;
}

VideoFeed* FeedOf(Portfolio& portfolio, int feed) {
    return feed >= 0 && feed < Portfolio::MaxFeed ? &portfolio.VideoFeed(feed) : nullptr;
}

template <typename Owner>
Schedule* OnlySchedule(Owner& owner) {
    return &owner.Schedule();
}

Set OfText(Portfolio& portfolio, int canvas, LayerId layer) {
    const auto find = [&portfolio, canvas, layer]() -> Text* {
        Canvas* const owner = CanvasOf(portfolio, canvas);
        return owner ? owner->Text(layer.slot) : nullptr;
    };
    const auto around = [find](std::string_view name, const Setting& set) {
        set();
        if (Text* const text = find(); text && IsTiming(name)) text->RestartTiming();
    };
    return std::make_unique<KeySet<Text>>(
        LayerProperties::OfText,
        std::initializer_list<KeySet<Text>::Keys>{LayerKeys::TextHead, CanvasKeys::TextBeforeSchedule,
                                                  CanvasKeys::TextAfterSchedule,
                                                  LayerProperties::TextSchedule},
        KeySet<Text>::Subject{find, &OnlySchedule<Text>, canvas, layer, around});
}

Set OfGraphic(Portfolio& portfolio, int canvas, LayerId layer) {
    const auto find = [&portfolio, canvas, layer]() -> Graphic* {
        Canvas* const owner = CanvasOf(portfolio, canvas);
        return owner ? owner->Graphic(layer.slot) : nullptr;
    };
    const auto around = [&portfolio, canvas, find](std::string_view name, const Setting& set) {
        if (IsLook(name))
            find()->ChangeLook(set);
        else
            set();
        Graphic* const graphic = find();
        if (!graphic) return;
        if (name == "SourceVideoFeedName") LayerKeys::FollowFeedName(portfolio.Canvas(canvas), *graphic);
        if (IsTiming(name)) graphic->RestartTiming();
    };
    return std::make_unique<KeySet<Graphic>>(
        LayerProperties::OfGraphic,
        std::initializer_list<KeySet<Graphic>::Keys>{
            LayerKeys::GraphicHead, CanvasKeys::GraphicBeforeSchedule, CanvasKeys::GraphicAfterSchedule,
            LayerKeys::GraphicColours, CanvasKeys::GraphicAfterTable, LayerProperties::GraphicSchedule},
        KeySet<Graphic>::Subject{find, &OnlySchedule<Graphic>, canvas, layer, around});
}

/// A set of a part of a canvas; `part` gives it for the canvas, `restart` computes its next times anew.
template <typename Owner>
Set OfCanvas(Portfolio& portfolio, int canvas, std::span<const Property> rows,
             std::initializer_list<std::span<const Key<Owner>>> keys, Owner& (*part)(Canvas&),
             Schedule* (*schedule)(Owner&) = nullptr, void (Owner::*restart)() = nullptr) {
    const auto find = [&portfolio, canvas, part]() -> Owner* {
        Canvas* const owner = CanvasOf(portfolio, canvas);
        return owner ? &part(*owner) : nullptr;
    };
    const auto around = [find, restart](std::string_view name, const Setting& set) {
        set();
        if (Owner* const owner = find(); owner && restart && IsTiming(name)) (owner->*restart)();
    };
    return std::make_unique<KeySet<Owner>>(
        rows, keys, typename KeySet<Owner>::Subject{find, schedule, canvas, {}, around});
}

/// A set of something that no canvas owns.
template <typename Owner>
Set OfPortfolio(std::span<const Property> rows, std::span<const Key<Owner>> keys,
                std::function<Owner*()> find) {
    return std::make_unique<KeySet<Owner>>(rows, std::initializer_list<std::span<const Key<Owner>>>{keys},
                                           typename KeySet<Owner>::Subject{std::move(find)});
}

CanvasSaves& SavesOf(Canvas& canvas) { return canvas.Saves(); }

}  // namespace

Set Layer(Portfolio& portfolio, int canvas, LayerId layer) {
    return layer.kind == LayerId::Kind::Text ? OfText(portfolio, canvas, layer)
                                             : OfGraphic(portfolio, canvas, layer);
}

Set Layers(Portfolio& portfolio, int canvas, std::span<const LayerId> layers) {
    std::vector<Set> sets;
    for (const LayerId layer : layers) sets.push_back(Layer(portfolio, canvas, layer));
    if (sets.size() == 1) return std::move(sets.front());
    const bool ofOneKind =
        std::ranges::all_of(layers, [&](LayerId layer) { return layer.kind == layers.front().kind; });
    const std::span<const Property> rows =
        ofOneKind ? sets.front()->Properties() : std::span<const Property>(LayerProperties::Shared);
    return std::make_unique<JointSet>(rows, std::move(sets));
}

Set CanvasGeneral(Portfolio& portfolio, int canvas) {
    return OfCanvas<Canvas>(portfolio, canvas, OutputProperties::General,
                            {CanvasKeys::General, CanvasKeys::BackgroundColor},
                            [](Canvas& owner) -> Canvas& { return owner; });
}

Set FixedSave(Portfolio& portfolio, int canvas) {
    return OfCanvas<CanvasSaves>(
        portfolio, canvas, OutputProperties::FixedSave,
        {CanvasKeys::Capture, OutputProperties::FixedSchedule}, &SavesOf,
        [](CanvasSaves& saves) { return &saves.FixedSchedule(); }, &CanvasSaves::RestartTimes);
}

Set SequentialSave(Portfolio& portfolio, int canvas) {
    return OfCanvas<CanvasSaves>(
        portfolio, canvas, OutputProperties::SequentialSave,
        {CanvasKeys::Capture, OutputProperties::SequentialSchedule}, &SavesOf,
        [](CanvasSaves& saves) { return &saves.SequentialSchedule(); }, &CanvasSaves::RestartTimes);
}

Set Wallpaper(Portfolio& portfolio, int canvas) {
    return OfCanvas<CanvasSaves>(
        portfolio, canvas, OutputProperties::Wallpaper,
        {CanvasKeys::Background, OutputProperties::BackgroundSchedule}, &SavesOf,
        [](CanvasSaves& saves) { return &saves.BackgroundSchedule(); }, &CanvasSaves::RestartTimes);
}

Set FTPUpload(Portfolio& portfolio, int canvas) {
    return OfCanvas<FTPPush>(
        portfolio, canvas, OutputProperties::FTPUpload,
        {CanvasKeys::FTPPushKeys, OutputProperties::UploadSchedule},
        [](Canvas& owner) -> FTPPush& { return owner.VideoStreaming().FTPPush(); }, &OnlySchedule<FTPPush>,
        &FTPPush::RestartTime);
}

Set WebPicture(Portfolio& portfolio, int canvas) {
    return OfCanvas<CanvasWebServer>(
        portfolio, canvas, OutputProperties::WebPicture,
        {CanvasKeys::WebServerKeys, OutputProperties::WebSchedule},
        [](Canvas& owner) -> CanvasWebServer& { return owner.VideoStreaming().CanvasWebServer(); },
        &OnlySchedule<CanvasWebServer>);
}

Set Feed(Portfolio& portfolio, int feed) {
    return OfPortfolio<VideoFeed>(PortfolioProperties::Feed, PortfolioKeys::Feed,
                                  [&portfolio, feed] { return FeedOf(portfolio, feed); });
}

Set Motion(Portfolio& portfolio, int feed) {
    return OfPortfolio<MotionDetect>(PortfolioProperties::Motion, PortfolioKeys::Motion,
                                     [&portfolio, feed]() -> MotionDetect* {
                                         VideoFeed* const owner = FeedOf(portfolio, feed);
                                         return owner ? &owner->MotionDetect() : nullptr;
                                     });
}

Set Web(Portfolio& portfolio) {
    return OfPortfolio<WebServer>(PortfolioProperties::Web, PortfolioKeys::Web,
                                  [&portfolio] { return &portfolio.WebServer(); });
}

Set Weather(Portfolio& portfolio) {
    return OfPortfolio<VWS>(PortfolioProperties::Weather, PortfolioKeys::Weather,
                            [&portfolio] { return &portfolio.VWS(); });
}

Set Scripting(Portfolio& portfolio) {
    return OfPortfolio<Script>(PortfolioProperties::Scripting, PortfolioKeys::Scripting,
                               [&portfolio] { return &portfolio.Script(); });
}

}  // namespace tessaloom::PropertySets
