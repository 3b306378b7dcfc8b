#include "script/objects/SCModel.h"

#include "core/main/modMain.h"
#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "publish/CanvasSaves.h"
#include "publish/VideoStreaming.h"
#include "publish/WebServer.h"
#include "text/Text.h"
#include "text/VWS.h"
#include "video/VideoFeed.h"

namespace tessaloom {

template <>
Portfolio* FindModel(const SCPlace&) {
    return modMain::OpenPortfolio();
}

template <>
Canvas* FindModel(const SCPlace& place) {
    Portfolio* const portfolio = modMain::OpenPortfolio();
    if (!portfolio || place.canvas < 1 || place.canvas > Portfolio::MaxCanvas) return nullptr;
    Canvas& canvas = portfolio->Canvas(place.canvas);
    return canvas.Enabled() ? &canvas : nullptr;
}

template <>
Text* FindModel(const SCPlace& place) {
    const Canvas* const canvas = FindModel<Canvas>(place);
    return canvas ? canvas->Text(place.index) : nullptr;
}

template <>
Graphic* FindModel(const SCPlace& place) {
    const Canvas* const canvas = FindModel<Canvas>(place);
    return canvas ? canvas->Graphic(place.index) : nullptr;
}

template <>
VideoFeed* FindModel(const SCPlace& place) {
    Portfolio* const portfolio = modMain::OpenPortfolio();
    if (!portfolio || place.index < 1 || place.index > Portfolio::MaxFeed) return nullptr;
    return &portfolio->VideoFeed(place.index - 1);
}

template <>
MotionDetect* FindModel(const SCPlace& place) {
    VideoFeed* const feed = FindModel<VideoFeed>(place);
    return feed ? &feed->MotionDetect() : nullptr;
}

template <>
VWS* FindModel(const SCPlace&) {
    Portfolio* const portfolio = modMain::OpenPortfolio();
    return portfolio ? &portfolio->VWS() : nullptr;
}

template <>
WebServer* FindModel(const SCPlace&) {
    Portfolio* const portfolio = modMain::OpenPortfolio();
    return portfolio ? &portfolio->WebServer() : nullptr;
}

template <>
CanvasSaves* FindModel(const SCPlace& place) {
    Canvas* const canvas = FindModel<Canvas>(place);
    return canvas ? &canvas->Saves() : nullptr;
}

template <>
FTPPush* FindModel(const SCPlace& place) {
    Canvas* const canvas = FindModel<Canvas>(place);
    return canvas ? &canvas->VideoStreaming().FTPPush() : nullptr;
}

template <>
CanvasWebServer* FindModel(const SCPlace& place) {
    Canvas* const canvas = FindModel<Canvas>(place);
    return canvas ? &canvas->VideoStreaming().CanvasWebServer() : nullptr;
}

namespace {

template <typename Owner>
Schedule* ScheduleOf(const SCPlace& place, Schedule& (Owner::*schedule)() = &Owner::Schedule) {
    Owner* const owner = FindModel<Owner>(place);
    return owner ? &(owner->*schedule)() : nullptr;
}

}  // namespace

template <>
Schedule* FindModel(const SCPlace& place) {
    switch (place.owner) {
        case SCKind::Text:
            return ScheduleOf<Text>(place);
        case SCKind::Graphic:
            return ScheduleOf<Graphic>(place);
        case SCKind::FTPPush:
            return ScheduleOf<FTPPush>(place);
        case SCKind::CanvasWebServer:
            return ScheduleOf<CanvasWebServer>(place);
        case SCKind::Wallpaper:
            return ScheduleOf<CanvasSaves>(place, &CanvasSaves::BackgroundSchedule);
        case SCKind::AutoSave:
            return place.part == 0 ? ScheduleOf<CanvasSaves>(place, &CanvasSaves::FixedSchedule)
                                   : ScheduleOf<CanvasSaves>(place, &CanvasSaves::SequentialSchedule);
        default:
            return nullptr;
    }
}

}  // namespace tessaloom
