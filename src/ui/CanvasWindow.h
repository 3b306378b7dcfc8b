#pragma once

#include <QMdiSubWindow>

class QScrollArea;

namespace tessaloom {

class Canvas;
class CanvasEditor;
class DIB;
class Workspace;

/// The child window of one canvas. Closing it only hides it: the canvas goes on.
///
/// Its caption, place and state are those of the canvas, in both directions; a place that the person never
/// chose is left to the frame and not written into the canvas.
class CanvasWindow final : public QMdiSubWindow {
    Q_OBJECT

public:
    CanvasWindow(Workspace& workspace, int slot);
    ~CanvasWindow() override;

    int Slot() const { return slot_; }
    CanvasEditor& Editor() const { return *editor_; }

    void ShowPicture(const DIB& picture);

    /// Takes over caption, size, place, state and kind of the canvas.
    void ReadCanvas();

    /// The caption, with the mark of unsaved changes.
    void ShowCaption();

    /// Where the window is in the frame, however far that is scrolled.
    QPoint FramePlace() const;

    /// Shows the window, and a minimized one at its size.
    void BringBack();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    bool Settled() const;
    QPoint Scrolled() const;
    void Place(const Canvas& canvas);
    void Fit(const Canvas& canvas);
    void FrameResized();
    void PutInSight();
    QSize FittingSize(const Canvas& canvas) const;

    Workspace& workspace_;
    const int slot_;
    QScrollArea* scroll_;
    CanvasEditor* editor_;
    QSize shownSize_;      ///< Of the canvas when the window was last fitted to it.
    QSize fitted_;         ///< Of the window then.
    QPoint knownPlace_;    ///< The canvas's place when it was last looked at.
    QPoint foundPlace_;    ///< Where the frame put the window at first.
    QPoint settledPlace_;  ///< Where the window was when it was last left alone.
    bool settled_ = false;
    bool placing_ = false;
};

}  // namespace tessaloom
