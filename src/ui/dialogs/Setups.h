#pragma once

class QWidget;

namespace tessaloom {

class Workspace;

/// The pages of the canvas's properties.
enum class CanvasPage { General, FixedSave, SequentialSave, Wallpaper, FTPUpload, WebPicture };

// Each opens its set-up window, or brings it to the front.

/// canvas: 1 .. 20
void ShowCanvasSetup(Workspace& workspace, QWidget* parent, int canvas,
                     CanvasPage page = CanvasPage::General);
void ShowVideoFeedsSetup(Workspace& workspace, QWidget* parent);

/// feed: 0 .. 9
void ShowMotionDetectSetup(Workspace& workspace, QWidget* parent, int feed);
void ShowWebServerSetup(Workspace& workspace, QWidget* parent);
void ShowWeatherSetup(Workspace& workspace, QWidget* parent);
void ShowScriptSetup(Workspace& workspace, QWidget* parent);
void ShowPreferences(Workspace& workspace, QWidget* parent);

}  // namespace tessaloom
