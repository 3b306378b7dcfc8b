#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "model/edit/LayerId.h"
#include "ui/canvas/Gesture.h"
#include "ui/canvas/ViewMap.h"

namespace tessaloom {

class Canvas;
class CanvasPicture;
class DIB;
class LayerCommands;
class NewLayers;
class Notice;
class Workspace;
struct Overlay;

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
    bool Scaled() const { return scaled_; }

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
    /// A camera was to be added, and none is set up.
    void FeedsWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct Choice {
        QString title;
        std::function<void()> chosen;
    };

    tessaloom::Canvas* TheCanvas() const;
    QSize CanvasSize() const;
    QRect PictureRect() const;                  ///< On the widget, in pixels of the screen.
    QRect OnWidget(const QRect& pixels) const;  ///< Pixels of the screen in the widget's units.
    ViewMap Map() const;
    Gesture::Pointer PointerOf(const QMouseEvent& event) const;
    void PaintHint(QPainter& painter, const QRectF& place) const;
    void RefreshOverlay();
    void SelectionMoved();
    void Describe();
    void ChooseCursor();
    void EndGesture();
    void Run(void (LayerCommands::*command)());
    void Choose(const QString& name, const std::vector<Choice>& choices, const QString& none);

    Workspace& workspace_;
    const int slot_;
    bool scaled_ = true;
    QSize canvasSize_;  ///< Of the picture that was shown last.
    QPointF pointer_;
    std::unique_ptr<CanvasPicture> picture_;
    std::unique_ptr<Gesture> gesture_;
    std::unique_ptr<LayerCommands> commands_;
    std::unique_ptr<Overlay> overlay_;  ///< As it was painted last.
    Notice* notice_;
    NewLayers* newLayers_;
};

}  // namespace tessaloom
