#pragma once

#include <QWidget>
#include <memory>

namespace tessaloom {

class DIB;
class Workspace;

/// Shows a canvas's picture, at its size or scaled to the widget, and lets its layers be edited in place:
/// selected, moved, resized, turned, dropped, copied. Every gesture is one step of the canvas's history.
class CanvasEditor : public QWidget {
    Q_OBJECT

public:
    CanvasEditor(Workspace& workspace, int canvas, QWidget* parent = nullptr);
    ~CanvasEditor() override;

    /// The freshly composed picture. Nothing is drawn, nor copied, while the widget cannot be seen.
    void ShowPicture(const DIB& picture);

    /// Scaled to the widget, else pixel for pixel within scroll bars of the owner.
    void SetScaled(bool scaled);
    bool Scaled() const;

    QSize sizeHint() const override;

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

    void AddText();
    void AddPictureFile();
    void AddFeed();
    void AddAddress();
    void AddBlock();
    void AddCanvas();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace tessaloom
