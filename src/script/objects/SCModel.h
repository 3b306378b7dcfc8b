#pragma once

#include "script/objects/SCObject.h"

namespace tessaloom {

class Canvas;
class CanvasSaves;
class CanvasWebServer;
class FTPPush;
class Graphic;
class MotionDetect;
class Portfolio;
class Schedule;
class Text;
class VideoFeed;
class VWS;
class WebServer;

/// What lies at `place` in the open portfolio; null when nothing does. There is one for each class of model
/// objects that scripts reach.
template <typename Model>
Model* FindModel(const SCPlace& place);

template <>
Portfolio* FindModel(const SCPlace& place);
template <>
Canvas* FindModel(const SCPlace& place);
template <>
Text* FindModel(const SCPlace& place);
template <>
Graphic* FindModel(const SCPlace& place);
template <>
VideoFeed* FindModel(const SCPlace& place);
template <>
MotionDetect* FindModel(const SCPlace& place);
template <>
VWS* FindModel(const SCPlace& place);
template <>
WebServer* FindModel(const SCPlace& place);
template <>
CanvasSaves* FindModel(const SCPlace& place);
template <>
FTPPush* FindModel(const SCPlace& place);
template <>
CanvasWebServer* FindModel(const SCPlace& place);
template <>
Schedule* FindModel(const SCPlace& place);

/// The same; throws run-time error 91 where nothing lies.
template <typename Model>
Model& ModelAt(const SCPlace& place) {
    if (Model* const model = FindModel<Model>(place)) return *model;
    vbscript::Fail(vbscript::ErrorCode::ObjectNotSet);
}

}  // namespace tessaloom
