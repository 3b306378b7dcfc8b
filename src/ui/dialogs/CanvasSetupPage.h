#pragma once

#include <memory>

#include "ui/dialogs/SetupPage.h"

namespace tessaloom {

/// One page of a canvas's properties. The canvas is looked up at each use; a page without one does nothing.
class CanvasSetupPage : public SetupPage {
    Q_OBJECT

public:
    /// canvas: its slot, 1 .. 20
    CanvasSetupPage(Workspace& workspace, int canvas, std::unique_ptr<PropertySet> set);

protected:
    virtual void ShowCanvas(Portfolio& portfolio, Canvas& canvas) = 0;

    int Slot() const { return canvas_; }
    Canvas* TheCanvas() const;

    /// "Harbour" of another canvas that does the same, in a sentence with "%1" in its place; "" for slot 0.
    static QString Clash(const Portfolio& portfolio, int slot, const QString& sentence);

    /// Adds a hint that a folder is missing, with a button that makes it and one that opens it. `folder`
    /// gives its path as the engine has it.
    void AddFolderActions(std::function<std::string(Canvas&)> folder);

    /// Shows or hides them; the hint for a missing folder, else "".
    QString FolderHint(Canvas& canvas);

private:
    void ShowFacts(Portfolio& portfolio) final;

    const int canvas_;
    std::function<std::string(Canvas&)> folder_;
    QPushButton* makeFolder_ = nullptr;
    QPushButton* openFolder_ = nullptr;
};

/// The pages, in the order of `CanvasPage`. Each is for the canvas in slot `canvas`.
namespace CanvasPages {

SetupPage* General(Workspace& workspace, int canvas);
SetupPage* FixedSave(Workspace& workspace, int canvas);
SetupPage* SequentialSave(Workspace& workspace, int canvas);
SetupPage* Wallpaper(Workspace& workspace, int canvas);
SetupPage* FTPUpload(Workspace& workspace, int canvas);
SetupPage* WebPicture(Workspace& workspace, int canvas);

}  // namespace CanvasPages
}  // namespace tessaloom
