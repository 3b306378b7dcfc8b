#pragma once

#include <QWidget>
#include <memory>

#include "model/edit/LayerId.h"

namespace tessaloom {

class DIB;
class Workspace;

/// Shows a canvas's picture, at its size or scaled to the widget, and lets its layers be edited in place:
/// selected, moved, resized, turned, dropped, copied. Every gesture is one step of the canvas's history.
///
/// The canvas is named by its slot and looked up at each use: it may go, or be changed by others, at any
/// time, even in the middle of a gesture.
class CanvasEditor : public QWidget {
    Q_OBJECT

public:
    CanvasEditor(Workspace& workspace, int canvas, QWidget* parent = nullptr);
    ~CanvasEditor() override;

    /// The freshly composed picture. Nothing is drawn, nor copied, while the widget cannot be seen.
    void ShowPicture(const DIB& picture);

    /// Scaled to the widget, else one pixel of the canvas on one of the screen: then the widget asks for
    /// that room as its least size, for the scroll bars of a resizing QScrollArea around it.
    void SetScaled(bool scaled);
    bool Scaled() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // The commands of the Edit menu, on the selection. Each does nothing where it makes no sense.
    void Cut();
    void Copy();
    void Paste();
    void Duplicate();
    void Delete();
    void SelectAll();
    void Raise();
    void Lower();
    void ToFront();
    void ToBack();

    // New layers in the middle of the canvas. Where a file, feed, canvas or address is to be chosen, it is
    // asked for without stopping anything.
    void AddText();
    void AddPictureFile();
    void AddFeed();
    void AddAddress();
    void AddBlock();
    void AddCanvas();

Q_SIGNALS:
    /// The layer's settings are wanted at hand: it was double-clicked or has just been made.
    void EditRequested(tessaloom::LayerId layer);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace tessaloom
